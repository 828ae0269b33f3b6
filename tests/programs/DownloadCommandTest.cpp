// A configuration into a controller from the command line: asked for first, whole or not committed.
#include <gtest/gtest.h>

#include "programs/TransferRun.h"
#include "programs/UserTerminal.h"

namespace qrv {
namespace {

constexpr const char* kWarning =
    "WARNING: Put critical Outputs into MANUAL, ON, or OFF mode\n"
    "BEFORE downloading Logicset to prevent\n"
    "unexpected equipment start-up, shutdown or\n"
    "modulation\n"
    "Failure to do so can result in equipment damage,\n"
    "injury, or death\n"
    "Downloading Logicset into the QRV can cause\n"
    "QRV Relay and Analog Outputs to change suddenly.\n";

TEST(qrvDownload, WithConsentTheControllerHasTheProgram) {
    TransferRun transfer;
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --yes");
    transfer.live.stop();
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(run.err.starts_with(kWarning)) << run.err;
    EXPECT_EQ(captured(run.err, R"(\nplant\.qrv is in the controller: \d+ bytes in \d+\.\d s, 0 retries\.\n$)").size(),
              1U)
        << run.err;
    EXPECT_EQ(transfer.live.controller.counters().commits, 1U);
    EXPECT_EQ(transfer.live.controller.committed().functionOf(10), 12);
}

TEST(qrvDownload, WithoutConsentNothingIsSent) {
    TransferRun transfer;
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv");
    transfer.live.stop();
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_EQ(run.err, std::string(kWarning) + "qrv: A download asks first: give --yes where nobody can answer.\n");
    EXPECT_EQ(transfer.live.controller.counters().frames, 0U);
}

TEST(qrvDownload, AUserIsAskedAndMayRefuse) {
    TransferRun transfer;
    test::UserTerminal user("n\n");
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv" + user.redirections());
    transfer.live.stop();
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_EQ(user.shown(),
              std::string(kWarning) + "Continue? [y/N] qrv: Not wanted. Nothing was written to the controller.\n");
    EXPECT_EQ(transfer.live.controller.counters().frames, 0U);
}

TEST(qrvDownload, AUserWhoConsentsSeesABar) {
    TransferRun transfer;
    test::UserTerminal user("y\n");
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv" + user.redirections());
    transfer.live.stop();
    EXPECT_EQ(run.exitCode, 0);
    const std::string& shown = user.shown();
    EXPECT_NE(shown.find("Continue? [y/N] [..........]   0 %  Section 1 of 1, "), std::string::npos);
    EXPECT_NE(shown.find("\r\x1b[K[#####.....]  50 %  Section 1 of 1, "), std::string::npos);
    EXPECT_NE(shown.find("\r\x1b[K[##########] 100 %  Section 1 of 1, "), std::string::npos);
    EXPECT_NE(shown.find("\r\x1b[Kplant.qrv is in the controller: "), std::string::npos);
    EXPECT_EQ(transfer.live.controller.counters().commits, 1U);
}

TEST(qrvDownload, WithoutATerminalATenthIsALine) {
    TransferRun transfer;
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --yes");
    std::vector<int> tenths;
    for (const std::string& percent : captured(run.err, R"(\n *(\d+) %  Downloading Blocks\. Section 1 of 1, )")) {
        tenths.push_back(std::stoi(percent) / 10);
    }
    EXPECT_EQ(tenths, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10})) << run.err;
}

TEST(qrvDownload, DryRunPollsAndReadsTheVersionAndNoMore) {
    TransferRun transfer;
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --dry-run");
    transfer.live.stop();
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, "blocks\t36240 bytes\n");
    EXPECT_EQ(run.err, "The controller's firmware is 6.73. Nothing was written to the controller.\n");
    const SimCounters& counters = transfer.live.controller.counters();
    EXPECT_EQ(counters.frames, 2U);
    EXPECT_EQ(counters.obeyed,
              (std::map<SimCommandCode, std::uint64_t>{{SimCommandCode::Poll, 1}, {SimCommandCode::Read, 1}}));
    EXPECT_TRUE(transfer.live.controller.working() == SimMemory());
}

TEST(qrvDownload, DryRunAsJson) {
    TransferRun transfer;
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --dry-run --json");
    EXPECT_EQ(run.err, "");
    const auto json = ReadJson::of(run.out);
    EXPECT_EQ(json["command"], "download");
    EXPECT_EQ(json["exitCode"], 0);
    EXPECT_EQ(json["dryRun"], true);
    EXPECT_EQ(json["firmware"], "6.73");
    EXPECT_EQ(json["sections"], ReadJson::of(R"([{"section":"blocks","bytes":36240}])"));
}

TEST(qrvDownload, JsonLinesAreWellFormed) {
    TransferRun transfer;
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --yes --json");
    const auto lines = ReadJson::linesOf(run.err);
    ASSERT_GT(lines.size(), 50U);
    EXPECT_EQ(lines.front()["event"], "message");
    EXPECT_EQ(lines.front()["title"], "WARNING");
    int last = 0;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i]["event"], "progress");
        EXPECT_EQ(lines[i]["section"], "Downloading Blocks");
        EXPECT_GE(lines[i]["percent"].number(), last);
        last = lines[i]["percent"].number();
    }
    EXPECT_EQ(last, 100);
    const auto result = ReadJson::of(run.out);
    EXPECT_EQ(result["exitCode"], 0);
    EXPECT_EQ(result["committed"], true);
    EXPECT_EQ(result["retries"], 0);
    EXPECT_EQ(result["file"], "plant.qrv");
}

TEST(qrvDownload, RefusalAsJson) {
    TransferRun transfer;
    const ProgramRun run = transfer.onLine("download plant.qrv --json");
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_EQ(ReadJson::linesOf(run.err).size(), 1U);
    EXPECT_EQ(ReadJson::of(run.out), ReadJson::of(R"({"command":"download","exitCode":5,
                                        "text":"A download asks first: give --yes where nobody can answer."})"));
}

// Poll, version, announcement, 141 frames of the table: only the constants look at Cancel between two frames.
constexpr int kWithinConstants = 3 + 141 + 5;

TEST(qrvDownload, CtrlCCommitsNothingAndHasItsOwnCode) {
    TransferRun transfer;
    transfer.live.controller.setPace(SimPace{});
    transfer.live.start();
    const ProgramRun run = transfer.interrupted("download plant.qrv --yes", kWithinConstants);
    transfer.live.stop();
    EXPECT_EQ(run.exitCode, 6) << run.err;
    EXPECT_NE(run.err.find("qrv: Cancelled. Nothing was committed"), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find("ERROR"), std::string::npos) << run.err;
    const SimCounters& counters = transfer.live.controller.counters();
    EXPECT_GE(counters.obeyed.at(SimCommandCode::Write), 1U);
    EXPECT_EQ(counters.commits, 0U);
    EXPECT_TRUE(transfer.live.controller.committed() == SimMemory());
}

TEST(qrvDownload, AFaultInTheMiddleCommitsNothing) {
    TransferRun transfer;
    transfer.live.controller.play(SimFaultPlan::at("hang-up", 50));
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --yes");
    transfer.live.stop();
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(run.err.find("\nERROR DOWNLOADING BLOCKS\n"), std::string::npos) << run.err;
    EXPECT_NE(
        run.err.find("went away while it was open: plug it in again and repeat the action. Nothing was committed"),
        std::string::npos)
        << run.err;
    EXPECT_EQ(transfer.live.controller.counters().commits, 0U);
}

TEST(qrvDownload, ACommitThatIsNotConfirmedIsTold) {
    TransferRun transfer;
    // Poll, version, announcement, 141 frames of the table, 176 of constants, 100 strings and their end.
    transfer.live.controller.play(SimFaultPlan::at("hang-up", 3 + 141 + 176 + 101 + 1));
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --yes");
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(run.err.find("the commit was not confirmed: it may or may not have been done. Download again.\n"),
              std::string::npos)
        << run.err;
}

TEST(qrvDownload, FirmwareThatCantTakeTheBoardsIsTold) {
    TransferRun transfer({.versionText = "V6.10 OLD ONE"});
    transfer.make("plant.qrv",
                  "QRV configuration text, form 1\n\n[Slots]\nOffset=2 Description=\"TRIAC OUTPUT      "
                  "610033\"\n");
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --yes");
    transfer.live.stop();
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_EQ(run.err, std::string(kWarning) +
                           "TOUT Modules Require Firmware V6.20 or Higher. Download Aborted\n"
                           "qrv: The controller can't take what was chosen. Nothing was written to the controller.\n");
    EXPECT_EQ(transfer.live.controller.counters().obeyed.count(SimCommandCode::Write), 0U);
}

TEST(qrvDownload, AFaultOfTheFileIsNoFaultOfTheLine) {
    TransferRun transfer;
    std::string text = plantText();
    // A constant that its block's function doesn't take: those behind it are out of step.
    const std::string row = "BlockNumber=10 Offset=11 ConstantValue=0\n";
    text.replace(text.find(row), row.size(), row + "BlockNumber=10 Offset=12 ConstantValue=0\n");
    transfer.make("plant.qrv", text);
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --yes");
    transfer.live.stop();
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_NE(run.err.find("\nBlock = 20\n Constant = 10\nDatabase Sync Error\nDOWNLOAD ABORTED\n"), std::string::npos)
        << run.err;
    EXPECT_NE(run.err.find("qrv: plant.qrv can't be downloaded. Nothing was committed"), std::string::npos) << run.err;
    EXPECT_EQ(transfer.live.controller.counters().commits, 0U);
}

TEST(qrvDownload, StringsThatAreLeftOutAreCounted) {
    TransferRun transfer;
    // An AOUT has no texts.
    transfer.make("plant.qrv", plantText() + "BlockNumber=20 Offset=0 Pstring=\"STALE\"\n");
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --yes");
    EXPECT_EQ(run.exitCode, 1) << run.err;
    EXPECT_NE(run.err.find("\nBlock 20 has no string parameters\n"), std::string::npos) << run.err;
    EXPECT_TRUE(run.err.ends_with(" 0 retries. 1 string was not sent: qrv verify names them.\n")) << run.err;
    EXPECT_EQ(transfer.onLine("verify plant.qrv").out,
              "ParmString BlockNumber=20 Offset=0: only in the file: Pstring=\"STALE\"  # input 1 COMMAND INPUT\n");
    const ProgramRun json = transfer.onLine("download plant.qrv --yes --json");
    EXPECT_EQ(json.exitCode, 1);
    EXPECT_EQ(ReadJson::of(json.out)["exitCode"], 1);
    EXPECT_EQ(ReadJson::of(json.out)["unsentStrings"], 1);
}

TEST(qrvDownload, ATraceThatBreaksOffIsToldAndEndsNoTransfer) {
    TransferRun transfer;
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --yes --trace /dev/full");
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_TRUE(run.err.starts_with("qrv: /dev/full can't be written: the trace is not whole.\n")) << run.err;
    EXPECT_NE(run.err.find("\nplant.qrv is in the controller: "), std::string::npos) << run.err;
    const ProgramRun json = transfer.onLine("download plant.qrv --yes --json --trace /dev/full");
    EXPECT_EQ(ReadJson::linesOf(json.err).front(),
              ReadJson::of(R"({"event":"note","text":"/dev/full can't be written: the trace is not whole."})"));
    EXPECT_EQ(ReadJson::of(json.out)["exitCode"], 3);
    EXPECT_EQ(json.exitCode, 3);
}

TEST(qrvDownload, JsonHoldsForATraceToo) {
    TransferRun transfer;
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --dry-run --json --trace -");
    const auto lines = ReadJson::linesOf(run.err);
    ASSERT_EQ(lines.size(), 5U) << "the line's name, and two exchanges";
    for (const auto& line : lines) EXPECT_EQ(line["event"], "trace");
    EXPECT_NE(lines[1]["text"].text().find(" > poll, 3 bytes: 01 FF FE"), std::string::npos);
    EXPECT_EQ(ReadJson::of(run.out)["exitCode"], 0);
}

TEST(qrvDownload, JsonHoldsForACommandLineThatCantBeUnderstood) {
    const QrvProgram qrv;
    const ProgramRun run = qrv.run("download plant.qrv --json --sideways");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.err, "");
    const auto json = ReadJson::of(run.out);
    EXPECT_EQ(json["command"], "download");
    EXPECT_EQ(json["exitCode"], 2);
    EXPECT_NE(json["text"].text().find("--sideways"), std::string::npos) << run.out;
    EXPECT_EQ(qrv.run("download plant.qrv --sideways").out, "");
}

TEST(qrvDownload, JsonIsForTransfersThatAreAskedForByTheirCommand) {
    const QrvProgram qrv;
    for (const char* words : {"info download --json --sideways", "compare upload verify --json --sideways",
                              "sideways download --json", "download plant.qrv --sideways -- --json"}) {
        const ProgramRun run = qrv.run(words);
        EXPECT_EQ(run.exitCode, 2) << words;
        EXPECT_EQ(run.out, "") << words;
        EXPECT_NE(run.err, "") << words;
    }
    // In another's place a command's name is a file's.
    EXPECT_EQ(ReadJson::of(qrv.run("verify download --json --sideways").out)["command"], "verify");
}

TEST(qrvDownload, JsonHoldsForAnOutputThatTakesNoMore) {
    TransferRun transfer;
    const ProgramRun run = transfer.onLine("download plant.qrv --json >/dev/full");
    EXPECT_EQ(ReadJson::linesOf(run.err).back(),
              ReadJson::of(R"({"event":"note","text":"the output could not be written whole."})"));
}

TEST(qrvDownload, AReaderThatWentAwayEndsItOnlyWhenItIsCommitted) {
    const PipeNobodyReads output;
    TransferRun transfer;
    transfer.live.start();
    const ProgramRun run = transfer.onLine("download plant.qrv --yes --json" + output.redirection());
    EXPECT_EQ(run.exitCode, 141);
    for (const auto& line : ReadJson::linesOf(run.err)) EXPECT_NE(line["event"], "note") << line;
    transfer.live.stop();
    EXPECT_EQ(transfer.live.controller.counters().commits, 1U);
    EXPECT_EQ(transfer.run("verify plant.qrv --json --port /dev/no-such-port" + output.redirection()).exitCode, 4);
}

TEST(qrvDownload, NoControllerHasTheToldWordsAndTheCause) {
    TransferRun transfer;
    const ProgramRun run = transfer.run("download plant.qrv --yes --port /dev/no-such-port");
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(run.err.find("\nComm Error: Could Not Open Comm Port\nqrv: /dev/no-such-port is not there: "),
              std::string::npos)
        << run.err;
}

TEST(qrvDownload, WhatIsWrongWithTheCommandIsToldBeforeTheLineIsTouched) {
    TransferRun transfer;
    transfer.live.start();
    EXPECT_EQ(transfer.onLine("download other.qrv --yes").exitCode, 3);
    const ProgramRun unknown = transfer.onLine("download plant.qrv --yes --sections blocks,walls");
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_EQ(unknown.err, "qrv: There is no section \"walls\"; there are: blocks.\n");
    transfer.live.stop();
    EXPECT_EQ(transfer.live.controller.counters().frames, 0U);
}

TEST(qrvDownload, HelpNamesItsOptions) {
    const QrvProgram qrv;
    const ProgramRun help = qrv.run("download --help");
    EXPECT_EQ(help.exitCode, 0);
    for (const char* word :
         {"FILE", "--port", "--baud", "--parity", "--trace", "--sections", "blocks", "--yes", "--dry-run", "--json"}) {
        EXPECT_NE(help.out.find(word), std::string::npos) << word;
    }
}

}  // namespace
}  // namespace qrv
