// A controller's configuration into a file from the command line: a whole file or none.
#include <gtest/gtest.h>

#include <csignal>
#include <future>

#include "programs/TransferRun.h"
#include "programs/UserTerminal.h"

namespace qrv {
namespace {

constexpr const char* kQuestion =
    "WARNING  This Action Will Overwrite The Selected Configuration\n"
    "                       Do You Wish To Continue?\n";
constexpr const char* kReverted =
    "The transfer was not completed successfully.  The open config file will be reverted to its last saved state.\n";

/// The plant is in the controller.
struct UploadRun : TransferRun {
    UploadRun() {
        live.start();
        EXPECT_EQ(onLine("download plant.qrv --yes").exitCode, 0);
    }
    /// From here on the controller plays this.
    void play(const SimFaultPlan& plan) {
        live.stop();
        live.controller.play(plan);
        live.start();
    }
    /// A byte takes its time, so that something else can happen in the midst of a transfer.
    void slowDown() {
        live.stop();
        live.controller.setPace(SimPace{});
        live.start();
    }
    [[nodiscard]] std::uint64_t frames() {
        live.stop();
        const std::uint64_t count = live.controller.counters().frames;
        live.start();
        return count;
    }
};

TEST(qrvUpload, MakesAFileOfWhatTheControllerHolds) {
    UploadRun upload;
    const ProgramRun run = upload.onLine("upload found.qrv");
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(
        captured(run.err, R"(\nfound\.qrv made with what the controller holds: \d+ bytes in \d+\.\d s, 0 retries\.\n$)")
            .size(),
        1U)
        << run.err;
    EXPECT_EQ(run.err.find("WARNING"), std::string::npos) << run.err;
    const ProgramRun held = upload.run("compare --held plant.qrv found.qrv");
    EXPECT_EQ(held.exitCode, 0) << held.out;
    // Comments never leave the tool, nor do hidden constants.
    const ProgramRun all = upload.run("compare plant.qrv found.qrv");
    EXPECT_NE(all.out.find("Block List BlockNumber=10 Comment: \"Reset\" -> \"\""), std::string::npos) << all.out;
    EXPECT_NE(all.out.find("Constants BlockNumber=20 Offset=8 ConstantValue: 17 -> 0"), std::string::npos) << all.out;
}

TEST(qrvUpload, KeepsALogOfEveryExchange) {
    UploadRun upload;
    EXPECT_EQ(upload.onLine("upload found.qrv").exitCode, 0);
    EXPECT_TRUE(upload.bytesOfFile("QRVUploadLog.txt").starts_with(std::string(89, '-') + "\r\n"));
}

TEST(qrvUpload, AFileThatIsThereAsksForForce) {
    UploadRun upload;
    const std::string before = upload.bytesOfFile("plant.qrv");
    const std::uint64_t frames = upload.frames();
    const ProgramRun run = upload.onLine("upload plant.qrv --yes");
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_EQ(run.err, "qrv: plant.qrv exists already; --force uploads into it and keeps what isn't uploaded.\n");
    EXPECT_EQ(upload.bytesOfFile("plant.qrv"), before);
    EXPECT_EQ(upload.frames(), frames);
}

TEST(qrvUpload, WithForceTheRestOfTheFileStays) {
    UploadRun upload;
    std::string other = plantText("12", "OTHER");
    other.replace(other.find("The plant"), 9, "Old title");
    upload.make("other.qrv", other);
    const ProgramRun run = upload.onLine("upload other.qrv --force --yes");
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(run.err.starts_with(kQuestion)) << run.err;
    EXPECT_EQ(upload.run("compare --held plant.qrv other.qrv").exitCode, 0);
    const std::string dump = upload.run("dump other.qrv").out;
    EXPECT_NE(dump.find("Title=\"Old title\""), std::string::npos);
    EXPECT_NE(dump.find("Comment=\"Valve\""), std::string::npos);
}

TEST(qrvUpload, WithForceAndNobodyToAskTheFileStaysAsItIs) {
    UploadRun upload;
    const std::string before = upload.bytesOfFile("plant.qrv");
    const ProgramRun run = upload.onLine("upload plant.qrv --force");
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_EQ(run.err,
              std::string(kQuestion) +
                  "qrv: An upload into a file that is there asks first: give --yes where nobody can answer.\n");
    EXPECT_EQ(upload.bytesOfFile("plant.qrv"), before);
}

TEST(qrvUpload, AUserMayRefuse) {
    UploadRun upload;
    const std::string before = upload.bytesOfFile("plant.qrv");
    test::UserTerminal user("n\n");
    const ProgramRun run = upload.onLine("upload plant.qrv --force" + user.redirections());
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_EQ(user.shown(), std::string(kQuestion) + "Continue? [y/N] qrv: Not wanted. plant.qrv is as it was.\n");
    EXPECT_EQ(upload.bytesOfFile("plant.qrv"), before);
}

TEST(qrvUpload, AFaultInTheMiddleLeavesNoFile) {
    UploadRun upload;
    upload.garbleBlockTable();
    const ProgramRun run = upload.onLine("upload found.qrv");
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(run.err.find("\nError Occurred While Uploading - Please forward \n" +
                           upload.qrv.path("QRVUploadLog.txt") + "\nto Tessaly Instruments\n" + kReverted),
              std::string::npos)
        << run.err;
    EXPECT_NE(run.err.find("garbled: check baud rate and parity, and the cable for noise. No file was made. "),
              std::string::npos)
        << run.err;
    EXPECT_FALSE(upload.isThere("found.qrv"));
}

TEST(qrvUpload, AFaultInTheMiddleLeavesTheFileAsItWasByteForByte) {
    UploadRun upload;
    const std::string before = upload.bytesOfFile("plant.qrv");
    upload.garbleBlockTable();
    const ProgramRun run = upload.onLine("upload plant.qrv --force --yes");
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(run.err.find("plant.qrv is as it was. "), std::string::npos) << run.err;
    EXPECT_EQ(upload.bytesOfFile("plant.qrv"), before);
}

TEST(qrvUpload, CtrlCLeavesNoFile) {
    UploadRun upload;
    // Falls silent in the midst of the table, and stays so for longer than it takes to press Ctrl+C.
    upload.play(SimFaultPlan::from("silence", 30));
    const ProgramRun run = upload.interrupted("upload found.qrv", 30);
    EXPECT_EQ(run.exitCode, 6) << run.err;
    EXPECT_NE(run.err.find("\nCancelled.\n"), std::string::npos) << run.err;
    // The answer that was awaited didn't come, which is told as ever.
    EXPECT_NE(run.err.find("Error Occurred While Uploading - Please forward \n" + upload.qrv.path("QRVUploadLog.txt") +
                           "\nto Tessaly Instruments\n" + kReverted),
              std::string::npos)
        << run.err;
    EXPECT_TRUE(run.err.ends_with("qrv: Cancelled. No file was made.\n")) << run.err;
    EXPECT_FALSE(upload.isThere("found.qrv"));
}

TEST(qrvUpload, AReadOnlyFileIsToldBeforeTheLineIsTouched) {
    UploadRun upload;
    const std::uint64_t frames = upload.frames();
    std::filesystem::permissions(upload.qrv.path("plant.qrv"), std::filesystem::perms::owner_read);
    const ProgramRun run = upload.onLine("upload plant.qrv --force --yes");
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.err, "qrv: plant.qrv is read-only.\n");
    EXPECT_EQ(upload.frames(), frames);
}

TEST(qrvUpload, AFileThatCantBeWrittenLosesNoWork) {
    UploadRun upload;
    const ProgramRun run = upload.onLine("upload missing/found.qrv");
    EXPECT_EQ(run.exitCode, 3);
    const std::vector<std::string> kept =
        captured(run.err, R"(qrv: missing/found\.qrv could not be written: .*\. The work is kept as (.*)\.\n$)");
    ASSERT_EQ(kept.size(), 1U) << run.err;
    const ProgramRun held = upload.run("compare --held plant.qrv '" + kept[0] + "'");
    EXPECT_EQ(held.exitCode, 0) << held.err << held.out;
}

TEST(qrvUpload, AFileThatIsMadeMeanwhileIsNotOverwritten) {
    UploadRun upload;
    upload.slowDown();
    const ProgramRun run = upload.meanwhile("upload found.qrv", 30, "echo theirs > found.qrv");
    EXPECT_EQ(run.exitCode, 5) << run.err;
    EXPECT_EQ(upload.bytesOfFile("found.qrv"), "theirs\n");
    const std::vector<std::string> kept =
        captured(run.err, R"(qrv: found\.qrv was made meanwhile by somebody else\. The work is kept as (.*)\.\n$)");
    ASSERT_EQ(kept.size(), 1U) << run.err;
    EXPECT_EQ(upload.run("compare --held plant.qrv '" + kept[0] + "'").exitCode, 0);
}

TEST(qrvUpload, AFileThatChangesMeanwhileIsNotOverwritten) {
    UploadRun upload;
    upload.make("other.qrv", plantText("12", "OTHER"));
    upload.slowDown();
    const ProgramRun run = upload.meanwhile("upload plant.qrv --force --yes", 30, "cp other.qrv plant.qrv");
    EXPECT_EQ(run.exitCode, 5) << run.err;
    EXPECT_NE(run.err.find("\nqrv: plant.qrv has changed meanwhile. The work is kept as "), std::string::npos)
        << run.err;
    EXPECT_TRUE(upload.bytesOfFile("plant.qrv") == upload.bytesOfFile("other.qrv"));
}

TEST(qrvUpload, AFullDiskIsNoFaultOfTheController) {
    UploadRun upload;
    ASSERT_EQ(upload.run("load '" QRV_SAMPLES "/boiler_house.txt' sample.qrv").exitCode, 0);
    ASSERT_EQ(upload.onLine("download sample.qrv --yes").exitCode, 0);
    // In units of 512 bytes: enough for a new configuration and too little for this one.
    const ProgramRun run =
        upload.qrv.run("upload found.qrv --port " + upload.live.path(), "trap '' XFSZ; ulimit -f 640;");
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_NE(run.err.find(" has lost changes that could not be written. No file was made. "), std::string::npos)
        << run.err;
    EXPECT_EQ(run.err.find("What came back makes no program"), std::string::npos) << run.err;
    EXPECT_FALSE(upload.isThere("found.qrv"));
}

TEST(qrvUpload, ALogThatIsAnotherUsersKeepsNobodyFromIt) {
    UploadRun upload;
    writeFile(upload.qrv.path("theirs"), "theirs");
    std::filesystem::create_symlink("theirs", upload.qrv.path("QRVUploadLog.txt"));
    const ProgramRun run = upload.onLine("upload found.qrv --json");
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_EQ(ReadJson::of(run.out)["log"], upload.qrv.path("QRV_Edit/QRVUploadLog.txt"));
    EXPECT_TRUE(upload.bytesOfFile("QRV_Edit/QRVUploadLog.txt").starts_with(std::string(89, '-') + "\r\n"));
    EXPECT_EQ(upload.bytesOfFile("theirs"), "theirs");
}

TEST(qrvUpload, AnAdapterThatGoesWhileTheUserThinksIsNoFaultOfTheProgramInIt) {
    UploadRun upload;
    test::UserTerminal user("");
    user.whenShown("Continue? [y/N] ", [&] {
        upload.live.hangUp();
        user.type("y\n");
    });
    const ProgramRun run = upload.onLine("upload plant.qrv --force" + user.redirections());
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(user.shown().find("qrv: " + upload.live.path() + " is not there: "), std::string::npos) << user.shown();
}

// The version is asked for in vain for 18 seconds, and then the user is asked.
TEST(qrvUpload, AUserMayRefuseWhereTheVersionCouldNotBeRead) {
    UploadRun upload;
    upload.play(SimFaultPlan::from("silence", 2));
    test::UserTerminal user("n\n");
    const ProgramRun run = upload.onLine("upload plant.qrv --force" + user.redirections());
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_EQ(user.shown(), std::string(kQuestion) + "Continue? [y/N] qrv: Not wanted. plant.qrv is as it was.\n");
}

TEST(qrvUpload, NothingIsAskedAfterACancel) {
    UploadRun upload;
    upload.play(SimFaultPlan::always("silence"));
    const ProgramRun run = upload.interrupted("upload plant.qrv --force", 1);
    EXPECT_EQ(run.exitCode, 6);
    EXPECT_EQ(run.err, "qrv: Cancelled. plant.qrv is as it was.\n");
}

class QrvUploadSignal : public testing::TestWithParam<const char*> {
    const HangUpsTaken taken_{};
};

TEST_P(QrvUploadSignal, IsACancelAndLeavesNothingBehind) {
    UploadRun upload;
    upload.qrv.moveToOwnFolder();
    upload.play(SimFaultPlan::from("silence", 30));
    const ProgramRun run = upload.interrupted("upload found.qrv", 30, GetParam());
    EXPECT_EQ(run.exitCode, 6) << run.err;
    EXPECT_TRUE(run.err.ends_with("qrv: Cancelled. No file was made.\n")) << run.err;
    EXPECT_EQ(upload.qrv.workFiles(), std::vector<std::string>{});
}

INSTANTIATE_TEST_SUITE_P(Each, QrvUploadSignal, testing::Values("INT", "TERM", "HUP"),
                         [](const auto& row) { return std::string(row.param); });

/// Every attempt to read the second 32 constants brings noise. That takes 18 seconds for a line, so two lines share
/// them.
TEST(qrvUpload, GarbledConstantsAreToldAndVerifyComparesNothing) {
    struct Garbled : UploadRun {
        Garbled() {
            // Poll, version, poll, 47 reads of the table, the first constants.
            SimFaultPlan plan = SimFaultPlan::at("garbage", 3 + 47 + 2);
            plan.last = plan.first + 9;
            play(plan);
        }
    };
    const Garbled upload;
    const Garbled verify;
    auto other = std::async(std::launch::async, [&] { return verify.onLine("verify plant.qrv"); });
    const ProgramRun uploaded = upload.onLine("upload found.qrv --json");
    const ProgramRun verified = other.get();
    EXPECT_EQ(uploaded.exitCode, 1) << uploaded.out;
    const auto result = ReadJson::of(uploaded.out);
    EXPECT_EQ(result["failedReads"], 1);
    EXPECT_NE(result["text"].text().find("1 read of constants came to nothing, and what stands in their place is "
                                         "wrong; " +
                                         upload.qrv.path("QRVUploadLog.txt") + " tells which."),
              std::string::npos)
        << uploaded.out;
    EXPECT_TRUE(upload.isThere("found.qrv"));
    EXPECT_EQ(verified.exitCode, 4);
    EXPECT_EQ(verified.out, "");
    EXPECT_TRUE(
        verified.err.ends_with("qrv: Nothing was compared. 1 read of constants came to nothing, and what stands "
                               "in their place is wrong.\n"))
        << verified.err;
}

TEST(qrvUpload, JsonLinesAreWellFormed) {
    UploadRun upload;
    const ProgramRun run = upload.onLine("upload plant.qrv --force --yes --json");
    const auto lines = ReadJson::linesOf(run.err);
    ASSERT_GT(lines.size(), 30U);
    EXPECT_EQ(lines.front()["event"], "message");
    EXPECT_EQ(lines.back()["event"], "progress");
    EXPECT_EQ(lines.back()["section"], "Blocks");
    EXPECT_EQ(lines.back()["percent"], 100);
    const auto result = ReadJson::of(run.out);
    EXPECT_EQ(result["command"], "upload");
    EXPECT_EQ(result["exitCode"], 0);
    EXPECT_EQ(result["failedReads"], 0);
    EXPECT_EQ(result["log"], upload.qrv.path("QRVUploadLog.txt"));
}

TEST(qrvUpload, HelpNamesItsOptions) {
    const QrvProgram qrv;
    const ProgramRun help = qrv.run("upload --help");
    EXPECT_EQ(help.exitCode, 0);
    for (const char* word : {"FILE", "--port", "--trace", "--sections", "--yes", "--force", "--json"}) {
        EXPECT_NE(help.out.find(word), std::string::npos) << word;
    }
}

}  // namespace
}  // namespace qrv
