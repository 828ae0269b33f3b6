// Is a controller as a file says? Told from the command line, and nothing is written to find out.
#include <gtest/gtest.h>

#include "programs/TransferRun.h"

namespace qrv {
namespace {

/// The plant is in the controller.
struct VerifyRun : TransferRun {
    VerifyRun() {
        live.start();
        EXPECT_EQ(onLine("download plant.qrv --yes").exitCode, 0);
    }
};

TEST(qrvVerify, FindsNothingAfterADownload) {
    VerifyRun verify;
    const ProgramRun run = verify.onLine("verify plant.qrv");
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "");
    // Two comments and a hidden constant.
    EXPECT_TRUE(run.err.ends_with("\nNo differences. Not held by a controller: 3 fields.\n")) << run.err;
}

TEST(qrvVerify, WritesNothing) {
    VerifyRun verify;
    verify.live.stop();
    const SimCounters before = verify.live.controller.counters();
    const SimMemory memory = verify.live.controller.working();
    verify.live.start();
    EXPECT_EQ(verify.onLine("verify plant.qrv").exitCode, 0);
    verify.live.stop();
    const SimCounters& after = verify.live.controller.counters();
    std::map<SimCommandCode, std::uint64_t> asked;
    for (const auto& [code, count] : after.obeyed) {
        const auto former = before.obeyed.find(code);
        const std::uint64_t more = count - (former == before.obeyed.end() ? 0 : former->second);
        if (more > 0) asked[code] = more;
    }
    // Poll and version, the section's poll; 47 reads of the table, 2 of the 47 constants, 103 of strings.
    EXPECT_EQ(asked, (std::map<SimCommandCode, std::uint64_t>{{SimCommandCode::Poll, 2}, {SimCommandCode::Read, 153}}));
    EXPECT_EQ(after.frames - before.frames, 155U);
    EXPECT_TRUE(verify.live.controller.working() == memory);
    EXPECT_TRUE(verify.live.controller.committed() == memory);
}

TEST(qrvVerify, NamesThePlacesThatDiffer) {
    VerifyRun verify;
    verify.make("other.qrv", plantText("601", "RESEX"));
    const ProgramRun run = verify.onLine("verify other.qrv");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out,
              "Constants BlockNumber=10 Offset=0 ConstantValue: 601 -> 600  # input 1 OUTDOOR AIR INPUT <- 601 AIN\n"
              "ParmString BlockNumber=10 Offset=3 Pstring: \"RESEX\" -> \"RESET\"  # parameter 1 OA RESET SP\n");
    EXPECT_TRUE(run.err.ends_with("\n2 differences. Not held by a controller: 3 fields.\n")) << run.err;
}

TEST(qrvVerify, SeesTheFunctionsOfTheCpuAsTheControllerHasThem) {
    VerifyRun verify;
    verify.live.stop();
    SimMemory memory = verify.live.controller.working();
    memory.write(1, 6001, std::vector<std::uint8_t>{127});
    verify.live.controller.load(memory);
    verify.live.start();
    const ProgramRun run = verify.onLine("verify plant.qrv");
    EXPECT_EQ(run.exitCode, 1) << run.err;
    EXPECT_NE(run.out.find("BlockNumber=600 FunctionNumber: "), std::string::npos) << run.out;
}

TEST(qrvVerify, SeesABlockTableThatDoesNotFitItsFunctions) {
    VerifyRun verify;
    verify.live.stop();
    SimMemory memory = verify.live.controller.working();
    const auto record = memory.read(1, 5 * 10, 10);
    const int index = record[4] * 256 + record[5];
    memory.write(1, 5 * 10 + 4, std::vector<std::uint8_t>{1, 44});
    verify.live.controller.load(memory);
    verify.live.start();
    const ProgramRun run = verify.onLine("verify plant.qrv");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "Block table, block 5: constant index " + std::to_string(index) +
                           " -> 300\nBlock table, block 6: constant index 300 -> " + std::to_string(index) + "\n");
    EXPECT_TRUE(run.err.ends_with("\n2 differences. Not held by a controller: 3 fields.\n")) << run.err;
    const auto json = ReadJson::of(verify.onLine("verify plant.qrv --json").out);
    EXPECT_EQ(json["equal"], false);
    EXPECT_EQ(json["blockTable"][0],
              ReadJson::of(R"({"block":5,"field":"constant index","a":)" + std::to_string(index) + R"(,"b":300})"));
}

TEST(qrvVerify, SeesASecondTextForTheSameParameter) {
    VerifyRun verify;
    verify.live.stop();
    SimMemory memory = verify.live.controller.working();
    memory.write(3, 22588, std::vector<std::uint8_t>{0, 10, 1, 'O', 'L', 'D', 0});
    verify.live.controller.load(memory);
    verify.live.start();
    const ProgramRun run = verify.onLine("verify plant.qrv");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "ParmString BlockNumber=10 Offset=3: a second text in the controller\n");
    EXPECT_TRUE(run.err.ends_with("\n1 difference. Not held by a controller: 3 fields.\n")) << run.err;
    const ProgramRun read = verify.onLine("upload found.qrv");
    EXPECT_EQ(read.exitCode, 1);
    EXPECT_TRUE(
        read.err.ends_with(" The controller has a second text for block 10 offset 3; the first one was taken.\n"))
        << read.err;
}

TEST(qrvVerify, KeepsNoLog) {
    VerifyRun verify;
    EXPECT_EQ(verify.onLine("verify plant.qrv").exitCode, 0);
    EXPECT_FALSE(verify.isThere("QRVUploadLog.txt"));
}

TEST(qrvVerify, ComparesNothingWhereTheCatalogueLacksAFunction) {
    VerifyRun verify;
    verify.live.stop();
    SimMemory memory = verify.live.controller.working();
    memory.write(1, 3001, std::vector<std::uint8_t>{200});
    verify.live.controller.load(memory);
    verify.live.start();
    const ProgramRun run = verify.onLine("verify plant.qrv");
    EXPECT_EQ(run.exitCode, 4) << run.err;
    EXPECT_NE(run.err.find("Nothing was compared. The catalogue lacks the function of block 300, "), std::string::npos)
        << run.err;
    const ProgramRun read = verify.onLine("upload found.qrv");
    EXPECT_EQ(read.exitCode, 1) << read.err;
    EXPECT_NE(read.err.find("The catalogue lacks the function of block 300, "), std::string::npos) << read.err;
}

TEST(qrvVerify, DifferencesAsJson) {
    VerifyRun verify;
    verify.make("other.qrv", plantText("601"));
    const ProgramRun run = verify.onLine("verify other.qrv --json");
    EXPECT_EQ(run.exitCode, 1);
    for (const auto& line : ReadJson::linesOf(run.err)) EXPECT_EQ(line["event"], "progress");
    const auto json = ReadJson::of(run.out);
    EXPECT_EQ(json["command"], "verify");
    EXPECT_EQ(json["exitCode"], 1);
    EXPECT_EQ(json["equal"], false);
    EXPECT_EQ(json["notHeld"], 3);
    ASSERT_EQ(json["differences"].size(), 1U);
    EXPECT_EQ(json["differences"][0]["table"], "Constants");
    EXPECT_EQ(json["differences"][0]["a"]["ConstantValue"], 601);
    EXPECT_EQ(json["differences"][0]["b"]["ConstantValue"], 600);
}

TEST(qrvVerify, AnEmptyControllerLacksAll) {
    TransferRun transfer;
    transfer.live.start();
    const ProgramRun run = transfer.onLine("verify plant.qrv");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.out.find("ParmString BlockNumber=10 Offset=3: only in the file: Pstring=\"RESET\""),
              std::string::npos)
        << run.out;
}

TEST(qrvVerify, AFaultInTheMiddleComparesNothing) {
    VerifyRun verify;
    verify.garbleBlockTable();
    const std::string before = verify.bytesOfFile("plant.qrv");
    const ProgramRun run = verify.onLine("verify plant.qrv");
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("cable for noise. Nothing was compared.\n"), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find("reverted"), std::string::npos) << run.err;
    EXPECT_EQ(verify.bytesOfFile("plant.qrv"), before);
}

TEST(qrvVerify, TheSampleGoesDownAndComesBackEqual) {
    TransferRun transfer;
    ASSERT_EQ(transfer.run("load '" QRV_SAMPLES "/boiler_house.txt' sample.qrv").exitCode, 0);
    transfer.live.start();
    EXPECT_EQ(transfer.onLine("download sample.qrv --yes").exitCode, 0);
    EXPECT_EQ(transfer.onLine("upload back.qrv").exitCode, 0);
    EXPECT_EQ(transfer.run("compare --held sample.qrv back.qrv").out, "");
    EXPECT_EQ(transfer.onLine("verify sample.qrv").exitCode, 0);
    EXPECT_EQ(transfer.onLine("verify back.qrv").exitCode, 0);
}

TEST(qrvVerify, HelpNamesItsOptions) {
    const QrvProgram qrv;
    const ProgramRun help = qrv.run("verify --help");
    EXPECT_EQ(help.exitCode, 0);
    for (const char* word : {"FILE", "--port", "--trace", "--sections", "--json"}) {
        EXPECT_NE(help.out.find(word), std::string::npos) << word;
    }
}

}  // namespace
}  // namespace qrv
