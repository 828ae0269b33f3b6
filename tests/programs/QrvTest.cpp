// `qrv` as a shell sees it: what goes to which stream, how it ends, what it leaves behind.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <ostream>
#include <thread>
#include <vector>

#include "programs/ProgramRun.h"
#include "programs/Reading.h"

namespace qrv {
namespace {

const std::string kMark = "QRV configuration text, form 1\n";
const std::string kSmallPlant = kMark +
                                "\n[Block List]\n"
                                "BlockNumber=4 FunctionNumber=3 Constants=1 TempRam=0 VolRam=0 Comment=\"Header set "
                                "point, \u00B0F\" VisioComment=\"\"  # ACONST\n"
                                "\n[Constants]\n"
                                "BlockNumber=4 Offset=0 ConstantValue=72500  # parameter 1 VALUE, %\n"
                                "\n[Comments]\n"
                                "Title=\"Small plant\" Comment=\"\" Config=\"SP-1\"\n";

TEST(qrv, MakesAFileThatItCanDescribe) {
    const QrvProgram qrv;
    const ProgramRun made = qrv.run("new plant.qrv");
    EXPECT_EQ(made.exitCode, 0);
    EXPECT_EQ(made.out, "");
    EXPECT_EQ(made.err, "plant.qrv made.\n");
    const ProgramRun info = qrv.run("info plant.qrv");
    EXPECT_EQ(info.exitCode, 0);
    EXPECT_EQ(info.err, "");
    EXPECT_NE(info.out.find("Constants               0 of 5632\n"), std::string::npos);
    EXPECT_NE(info.out.find("Retentive bytes         0 of 634\n"), std::string::npos);
}

TEST(qrv, LoadThenDumpIsIdentical) {
    const QrvProgram qrv;
    writeFile(qrv.path("plant.txt"), kSmallPlant);
    EXPECT_EQ(qrv.run("load plant.txt plant.qrv").exitCode, 0);
    const ProgramRun dump = qrv.run("dump plant.qrv");
    EXPECT_EQ(dump.exitCode, 0);
    EXPECT_EQ(dump.err, "");
    EXPECT_EQ(dump.out, kSmallPlant);
}

TEST(qrv, DumpsAnOldFileThatLacksItsLaterTables) {
    const QrvProgram qrv;
    ASSERT_EQ(qrv.run("new plant.qrv").exitCode, 0);
    ASSERT_EQ(std::system(("sqlite3 '" + qrv.path("plant.qrv") +
                           "' 'DROP TABLE Pager; DROP TABLE [Poll List]; DROP TABLE [mod comm]'")
                              .c_str()),
              0);
    const ProgramRun dump = qrv.run("dump plant.qrv");
    EXPECT_EQ(dump.exitCode, 0) << dump.err;
    EXPECT_NE(dump.err.find("no pager table"), std::string::npos);
    EXPECT_NE(dump.err.find("no poll list"), std::string::npos);
}

TEST(qrv, LoadsFromTheStandardInput) {
    const QrvProgram qrv;
    writeFile(qrv.path("plant.txt"), kSmallPlant);
    EXPECT_EQ(qrv.run("load - plant.qrv <plant.txt").exitCode, 0);
    EXPECT_EQ(qrv.run("dump plant.qrv").out, kSmallPlant);
    const ProgramRun empty = qrv.run("load - other.qrv");
    EXPECT_EQ(empty.exitCode, 3);
    EXPECT_EQ(empty.err, "qrv: standard input:1: The first line must be \"QRV configuration text, form 1\".\n");
}

TEST(qrv, LoadOverwritesNoFileThatCameWhileItRead) {
    const QrvProgram qrv;
    const std::string pipe = qrv.path("text");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::thread somebody([&] {
        // Should the program end early, that fails the test and not the whole run of tests.
        sigset_t brokenPipe;
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
        std::ofstream text(pipe, std::ios::binary);
        // More than a pipe holds: then the program reads, and has looked at the path already.
        text << kMark << std::string(std::size_t{1} << 20U, '#') << '\n' << std::flush;
        writeFile(qrv.path("plant.qrv"), "somebody else's");
        text << kSmallPlant.substr(kMark.size());
    });
    const ProgramRun run = qrv.run("load - plant.qrv <text");
    somebody.join();
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_EQ(run.err, "qrv: plant.qrv exists already; --force overwrites it.\n");
    EXPECT_EQ(bytesOf(qrv.path("plant.qrv")), "somebody else's");
}

TEST(qrv, AFileIsTheSameToEveryCommandWhateverItsPathLeadsThrough) {
    const QrvProgram qrv;
    std::filesystem::create_directories(qrv.path("real/deep"));
    std::filesystem::create_directory_symlink(qrv.path("real/deep"), qrv.path("link"));
    writeFile(qrv.path("plant.txt"), kSmallPlant);
    ASSERT_EQ(qrv.run("new plant.qrv").exitCode, 0);
    ASSERT_EQ(qrv.run("load plant.txt link/../plant.qrv").exitCode, 0);
    EXPECT_TRUE(std::filesystem::exists(qrv.path("real/plant.qrv")));
    EXPECT_EQ(qrv.run("dump link/../plant.qrv").out, kSmallPlant);
    EXPECT_EQ(qrv.run("new link/../plant.qrv").exitCode, 5);
    EXPECT_EQ(qrv.run("dump plant.qrv").out, kMark);
}

TEST(qrv, DumpThenLoadThenDumpIsIdenticalForRowsOfNulls) {
    const QrvProgram qrv;
    ASSERT_EQ(qrv.run("new plant.qrv").exitCode, 0);
    const std::string sql =
        "UPDATE Comments SET Title = NULL, Comment = NULL, Config = NULL;"
        "UPDATE [mod comm] SET Baud = NULL, Length = NULL, Parity = NULL, Stop = NULL, Protocol = NULL, Address = NULL;"
        "UPDATE [Screen Items] SET Type = NULL WHERE Offset = 1; UPDATE Pens SET Scale1 = NULL WHERE Offset = 2";
    ASSERT_EQ(std::system(("sqlite3 '" + qrv.path("plant.qrv") + "' '" + sql + "'").c_str()), 0);
    const ProgramRun dump = qrv.run("dump plant.qrv >plant.txt");
    ASSERT_EQ(dump.exitCode, 0) << dump.err;
    ASSERT_EQ(qrv.run("load plant.txt again.qrv").exitCode, 0);
    EXPECT_EQ(qrv.run("dump again.qrv").out, bytesOf(qrv.path("plant.txt")));
    EXPECT_EQ(qrv.run("compare plant.qrv again.qrv").err, "No differences.\n");
}

TEST(qrv, InfoAsJsonHasTheCounts) {
    const QrvProgram qrv;
    writeFile(qrv.path("plant.txt"), kSmallPlant);
    ASSERT_EQ(qrv.run("load plant.txt plant.qrv").exitCode, 0);
    const ProgramRun info = qrv.run("info plant.qrv --json");
    const auto json = ReadJson::of(info.out);
    EXPECT_EQ(json["title"], "Small plant");
    EXPECT_EQ(json["configuration"], "SP-1");
    EXPECT_EQ(json["readOnly"], false);
    EXPECT_EQ(json["blocks"]["used"], 5);
    EXPECT_EQ(json["blocks"]["most"], 705);
    EXPECT_EQ(json["constants"]["used"], 1);
    EXPECT_EQ(json["layoutRevision"], "5.01");
}

TEST(qrv, TellsAReadOnlyFileFromOthers) {
    const QrvProgram qrv;
    ASSERT_EQ(qrv.run("new plant.qrv").exitCode, 0);
    chmod(qrv.path("plant.qrv").c_str(), 0444);
    EXPECT_NE(qrv.run("info plant.qrv").out.find("Read-only               yes\n"), std::string::npos);
}

TEST(qrv, CompareNamesWhatDiffersAndEndsWithOne) {
    const QrvProgram qrv;
    writeFile(qrv.path("a.txt"), kSmallPlant);
    std::string changed = kSmallPlant;
    changed.replace(changed.find("72500"), 5, "73000");
    writeFile(qrv.path("b.txt"), changed);
    ASSERT_EQ(qrv.run("load a.txt a.qrv").exitCode, 0);
    ASSERT_EQ(qrv.run("load b.txt b.qrv").exitCode, 0);
    const ProgramRun same = qrv.run("compare a.qrv a.qrv");
    EXPECT_EQ(same.exitCode, 0);
    EXPECT_EQ(same.out, "");
    EXPECT_EQ(same.err, "No differences.\n");
    const ProgramRun differ = qrv.run("compare a.qrv b.qrv");
    EXPECT_EQ(differ.exitCode, 1);
    EXPECT_EQ(differ.out, "Constants BlockNumber=4 Offset=0 ConstantValue: 72500 -> 73000  # parameter 1 VALUE, %\n");
    EXPECT_EQ(differ.err, "1 difference.\n");
}

TEST(qrv, CompareAsJsonGivesFieldsAndMissingRows) {
    const QrvProgram qrv;
    writeFile(qrv.path("a.txt"), kSmallPlant);
    ASSERT_EQ(qrv.run("load a.txt a.qrv").exitCode, 0);
    ASSERT_EQ(qrv.run("new b.qrv").exitCode, 0);
    const ProgramRun run = qrv.run("compare a.qrv b.qrv --json");
    EXPECT_EQ(run.exitCode, 1);
    const auto json = ReadJson::of(run.out);
    EXPECT_EQ(json["equal"], false);
    ASSERT_EQ(json["differences"].size(), 3U);
    const ReadJson block = json["differences"][0];
    EXPECT_EQ(block["table"], "Block List");
    EXPECT_EQ(block["key"]["BlockNumber"], 4);
    EXPECT_EQ(block["a"]["FunctionNumber"], 3);
    EXPECT_EQ(block["b"]["FunctionNumber"], 127);
    EXPECT_EQ(block["a"]["Comment"], "Header set point, \u00B0F");
    const ReadJson constant = json["differences"][1];
    EXPECT_EQ(constant["a"]["ConstantValue"], 72500);
    EXPECT_TRUE(constant["b"].isNull());
}

TEST(qrv, OverwritesNothingWithoutForce) {
    const QrvProgram qrv;
    writeFile(qrv.path("plant.txt"), kSmallPlant);
    writeFile(qrv.path("there"), "mine");
    for (const char* command : {"new there", "load plant.txt there"}) {
        const ProgramRun run = qrv.run(command);
        EXPECT_EQ(run.exitCode, 5) << command;
        EXPECT_EQ(run.err, "qrv: there exists already; --force overwrites it.\n");
        EXPECT_EQ(bytesOf(qrv.path("there")), "mine");
    }
    EXPECT_EQ(qrv.run("load plant.txt there --force").exitCode, 0);
    EXPECT_EQ(qrv.run("dump there").out, kSmallPlant);
    EXPECT_EQ(qrv.run("new there --force").exitCode, 0);
    EXPECT_EQ(qrv.run("dump there").out, kMark);
}

TEST(qrv, ARefusedTextLeavesNothingBehind) {
    const QrvProgram qrv;
    writeFile(qrv.path("plant.txt"), kMark + "[Constants]\nBlockNumber=4 Offset=0 ConstantValue=x\n");
    const ProgramRun run = qrv.run("load plant.txt plant.qrv");
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.err, "qrv: plant.txt:3: ConstantValue must be a whole number from -2147483648 to 2147483647.\n");
    EXPECT_EQ(qrv.folder.names(), (std::vector<std::string>{".err", ".out", "plant.txt"}));
}

struct BadFile {
    const char* name;
    std::string bytes;
};
void PrintTo(const BadFile& file, std::ostream* out) { *out << file.name; }

class BadFileTest : public testing::TestWithParam<BadFile> {};

TEST_P(BadFileTest, IsRefusedInOneSentenceThatNamesIt) {
    const QrvProgram qrv;
    writeFile(qrv.path("bad.qrv"), GetParam().bytes);
    for (const char* command : {"info bad.qrv", "dump bad.qrv", "compare bad.qrv bad.qrv"}) {
        const ProgramRun run = qrv.run(command);
        EXPECT_EQ(run.exitCode, 3) << command;
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
        EXPECT_NE(run.err.find("bad.qrv"), std::string::npos) << run.err;
    }
    EXPECT_EQ(bytesOf(qrv.path("bad.qrv")), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(Edges, BadFileTest,
                         testing::Values(BadFile{"empty", ""}, BadFile{"text", "hello\n"},
                                         BadFile{"headerAlone", std::string("SQLite format 3\0", 16)},
                                         BadFile{"ownTextForm", kSmallPlant}),
                         [](const auto& row) { return row.param.name; });

TEST(qrv, NamesAFileThatIsNotThere) {
    const QrvProgram qrv;
    for (const char* command :
         {"info none.qrv", "dump none.qrv", "load none.txt new.qrv", "compare none.qrv none.qrv"}) {
        const ProgramRun run = qrv.run(command);
        EXPECT_EQ(run.exitCode, 3) << command;
        EXPECT_NE(run.err.find("none."), std::string::npos) << run.err;
    }
    EXPECT_EQ(qrv.run("new no/such/folder/plant.qrv").exitCode, 3);
    EXPECT_EQ(qrv.run("new .").exitCode, 3);
}

TEST(qrv, ABadCommandLineEndsWithTwo) {
    const QrvProgram qrv;
    for (const char* command : {"", "frobnicate", "new", "new a b", "info a.qrv --xml", "compare a"}) {
        const ProgramRun run = qrv.run(command);
        EXPECT_EQ(run.exitCode, 2) << command;
        EXPECT_EQ(run.out, "") << command;
        EXPECT_NE(run.err, "") << command;
    }
}

TEST(qrv, HelpAndVersionAreAnswers) {
    const QrvProgram qrv;
    const ProgramRun help = qrv.run("--help");
    EXPECT_EQ(help.exitCode, 0);
    for (const char* word : {"Usage:", "new", "info", "backups", "dump", "load", "compare", "Exit codes:"}) {
        EXPECT_NE(help.out.find(word), std::string::npos) << word;
    }
    const ProgramRun version = qrv.run("--version");
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out.substr(0, 9), "qrv 6.73\n");
    EXPECT_NE(version.out.find("\nFunction catalogue "), std::string::npos);
    EXPECT_NE(version.out.find("\nSQLite "), std::string::npos);
}

TEST(qrv, AFullOutputIsAFailure) {
    const QrvProgram qrv;
    ASSERT_EQ(qrv.run("new plant.qrv").exitCode, 0);
    for (const std::string command : {"info plant.qrv", "dump plant.qrv", "--help"}) {
        const ProgramRun run = qrv.run(command + " >/dev/full");
        EXPECT_EQ(run.exitCode, 3) << command;
        EXPECT_EQ(run.err, "qrv: the output could not be written whole.\n") << command;
    }
}

TEST(qrv, AReaderThatHasSeenEnoughIsToldNothing) {
    QrvProgram qrv;
    ASSERT_EQ(qrv.run("new plant.qrv").exitCode, 0);
    qrv.moveToOwnFolder();
    const PipeNobodyReads output;
    for (const std::string command : {"info plant.qrv", "info plant.qrv --json", "dump plant.qrv", "--help"}) {
        const ProgramRun run = qrv.run(command + output.redirection());
        EXPECT_EQ(run.exitCode, 141) << command;
        EXPECT_EQ(run.err, "") << command;
        EXPECT_EQ(qrv.workFiles(), std::vector<std::string>{}) << command;
    }
}

TEST(qrv, AReaderThatHasSeenEnoughTakesThePlaceOfFindingsAndOfNoFailure) {
    const QrvProgram qrv;
    writeFile(qrv.path("plant.txt"), kSmallPlant);
    ASSERT_EQ(qrv.run("new empty.qrv").exitCode, 0);
    ASSERT_EQ(qrv.run("load plant.txt plant.qrv").exitCode, 0);
    const PipeNobodyReads output;
    EXPECT_EQ(qrv.run("compare empty.qrv plant.qrv" + output.redirection()).exitCode, 141);
    const ProgramRun failed = qrv.run("dump other.qrv" + output.redirection());
    EXPECT_EQ(failed.exitCode, 3);
    EXPECT_NE(failed.err, "");
}

class QrvSignal : public testing::TestWithParam<const char*> {
    const HangUpsTaken taken_{};
};

TEST_P(QrvSignal, LeavesNoWorkFile) {
    QrvProgram qrv;
    ASSERT_EQ(qrv.run("new plant.qrv").exitCode, 0);
    qrv.moveToOwnFolder();
    // A work file is there for some hundredths of a second: looked for without a pause. Beside it there are two files.
    const std::string workFileIsThere = "for n in $(seq 20000); do set -- bin/*; [ $# -gt 2 ] && break; done; true";
    for (const char* command :
         {"dump plant.qrv", "info plant.qrv", "compare plant.qrv plant.qrv", "watch plant.qrv 4"}) {
        static_cast<void>(qrv.runMeanwhile(command, workFileIsThere, std::string("kill -") + GetParam() + " $pid"));
        EXPECT_EQ(qrv.workFiles(), std::vector<std::string>{}) << command;
    }
}

// Behind a shell that has no job control Ctrl+C is ignored by what runs in the background.
INSTANTIATE_TEST_SUITE_P(Each, QrvSignal, testing::Values("TERM", "HUP"),
                         [](const auto& row) { return std::string(row.param); });

TEST(qrv, ASignalDuringALoadLeavesTheTargetWholeAndNothingBesideIt) {
    const QrvProgram qrv;
    writeFile(qrv.path("plant.txt"), kSmallPlant);
    ASSERT_EQ(qrv.run("load plant.txt plant.qrv").exitCode, 0);
    const std::string before = bytesOf(qrv.path("plant.qrv"));
    writeFile(qrv.path("plant.txt"), kMark + "\n[Comments]\nTitle=\"Other\" Comment=\"\" Config=\"\"\n");
    ASSERT_EQ(qrv.run("load plant.txt other.qrv").exitCode, 0);
    const std::string after = bytesOf(qrv.path("other.qrv"));
    std::filesystem::create_directory(qrv.path("target"));
    for (const char* pauses : {"", "sleep 0.01", "sleep 0.02", "sleep 0.04"}) {
        writeFile(qrv.path("target/plant.qrv"), before);
        static_cast<void>(qrv.runMeanwhile("load --force plant.txt target/plant.qrv", std::string(pauses) + "\ntrue",
                                           "kill -TERM $pid"));
        const std::string now = bytesOf(qrv.path("target/plant.qrv"));
        EXPECT_TRUE(now == before || now == after) << pauses;
        const auto files = std::filesystem::directory_iterator(qrv.path("target"));
        EXPECT_EQ(std::distance(begin(files), end(files)), 1) << pauses;
    }
}

// A German and a Turkish locale are made and tried where the installation is tested.
TEST(qrv, SpeaksUtf8InTheCLocaleAndInOneThatIsNotThere) {
    const QrvProgram qrv;
    writeFile(qrv.path("plant.txt"), kSmallPlant + "\n[Version]\nRevLevel=5.25 Vtext=\"Describe\" Major=3 Minor=1\n");
    for (const char* locale : {"LC_ALL=C", "LC_ALL=no_SUCH"}) {
        ASSERT_EQ(qrv.run("load plant.txt plant.qrv --force", locale).exitCode, 0);
        const ProgramRun dump = qrv.run("dump plant.qrv", locale);
        EXPECT_NE(dump.out.find("RevLevel=5.25 "), std::string::npos) << locale;
        EXPECT_NE(dump.out.find("\u00B0F"), std::string::npos) << locale;
    }
}

TEST(qrv, AWordThatIsNoCommandIsNamed) {
    const QrvProgram qrv;
    const ProgramRun run = qrv.run("pol --port COM9");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "There is no command \"pol\". qrv --help lists them.\n");
    const ProgramRun bare = qrv.run("");
    EXPECT_EQ(bare.exitCode, 2);
    EXPECT_EQ(bare.err.find("There is no command"), std::string::npos) << bare.err;
}

TEST(qrv, ListsTheCopiesOfUnsavedWork) {
    const QrvProgram qrv;
    const std::string state = "XDG_STATE_HOME=" + qrv.path("state");
    const ProgramRun none = qrv.run("backups", state);
    EXPECT_EQ(none.exitCode, 0);
    EXPECT_EQ(none.out, "");
    EXPECT_EQ(none.err, "No copies of unsaved work are kept.\n");
    std::filesystem::create_directories(qrv.path("state/QRV_Edit/backups"));
    writeFile(qrv.path("state/QRV_Edit/backups/plant.qrv"), "work");
    writeFile(qrv.path("state/QRV_Edit/backups/plant.qrv.from"), "/plants/plant.qrv");
    const ProgramRun one = qrv.run("backups", state);
    EXPECT_EQ(one.exitCode, 0);
    EXPECT_EQ(one.err, "");
    EXPECT_EQ(one.out.substr(one.out.find("  ")),
              "  " + qrv.path("state/QRV_Edit/backups/plant.qrv") + "  of /plants/plant.qrv\n");
}

}  // namespace
}  // namespace qrv
