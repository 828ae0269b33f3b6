// The commands that talk to a controller: each fault of a line has its own words, the cause and the cure.
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "link/LiveController.h"
#include "platform/posix/FarEnd.h"
#include "programs/ProgramRun.h"
#include "programs/Reading.h"
#include "twins/WithoutPrivileges.h"

namespace qrv {
namespace {

struct LinkRun {
    explicit LinkRun(SimSetup setup = {}) : live(std::move(setup)) {}
    [[nodiscard]] ProgramRun run(const std::string& arguments) const { return qrv.run(arguments); }
    [[nodiscard]] std::string onLine() const { return " --port " + live.path(); }

    QrvProgram qrv;
    test::LiveController live;
};

TEST(qrvLink, PollsAController) {
    LinkRun link;
    link.live.start();
    const ProgramRun poll = link.run("poll" + link.onLine());
    EXPECT_EQ(poll.exitCode, 0);
    EXPECT_EQ(poll.out, "A controller answers on " + link.live.path() + " (38400,O).\n");
    EXPECT_EQ(poll.err, "");
}

TEST(qrvLink, ReadsTheVersion) {
    LinkRun link({.versionText = "V6.73 A CONTROLLER"});
    link.live.start();
    EXPECT_EQ(link.run("version" + link.onLine()).out.substr(0, 18), "V6.73 A CONTROLLER");
}

TEST(qrvLink, ReadsBytesOfASection) {
    LinkRun link;
    SimMemory memory;
    const std::array<std::uint8_t, 18> bytes{0x41, 0x54, 0xFF, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18};
    memory.write(14, 60, bytes);
    link.live.controller.load(memory);
    link.live.start();
    const ProgramRun read = link.run("read 14 60 60" + link.onLine());
    EXPECT_EQ(read.exitCode, 0);
    EXPECT_EQ(read.out.substr(0, 68), "003C  41 54 FF 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10\n004C  11 12 00");
}

TEST(qrvLink, ReadsABlocksOutputAsItsKindAsks) {
    LinkRun link;
    SimMemory memory;
    memory.write(1, 40, std::array<std::uint8_t, 10>{0, 3, 0, 0, 0, 0, 0, 0, 1, 0});
    memory.write(1, 50, std::array<std::uint8_t, 10>{0, 5, 0, 0, 0, 0, 0, 0, 2, 0});
    link.live.controller.load(memory);
    link.live.controller.fixAnalog(4, -1234);
    link.live.controller.fixDiscrete(5, true);
    link.live.start();
    EXPECT_EQ(link.run("read-block 4" + link.onLine()).out, "-12.34\n");
    EXPECT_EQ(link.run("read-block 5" + link.onLine()).out, "1\n");
    const ProgramRun empty = link.run("read-block 6" + link.onLine());
    EXPECT_EQ(empty.exitCode, 1);
    EXPECT_EQ(empty.err, "qrv: Block 6 is empty and has no output.\n");
}

TEST(qrvLink, TakesTheParityInEitherCase) {
    LinkRun link;
    link.live.start();
    for (const std::string parity : {"O", "o", "e", "n"}) {
        const ProgramRun poll = link.run("poll --parity " + parity + link.onLine());
        EXPECT_EQ(poll.exitCode, 0) << parity << ": " << poll.err;
    }
}

TEST(qrvLink, TracesEveryFrame) {
    LinkRun link;
    link.live.start();
    EXPECT_EQ(link.run("poll --trace frames.txt" + link.onLine()).exitCode, 0);
    const std::string trace = bytesOf(link.qrv.path("frames.txt"));
    EXPECT_NE(trace.find(" > poll, 3 bytes: 01 FF FE\n"), std::string::npos) << trace;
    EXPECT_NE(trace.find(" < checksum good, 5 bytes: 10 "), std::string::npos) << trace;
}

TEST(qrvLink, ATraceThatCantBeWrittenIsTold) {
    LinkRun link;
    link.live.start();
    const ProgramRun poll = link.run("poll --trace /dev/full" + link.onLine());
    EXPECT_EQ(poll.exitCode, 3);
    EXPECT_EQ(poll.out, "A controller answers on " + link.live.path() + " (38400,O).\n");
    EXPECT_EQ(poll.err, "qrv: /dev/full can't be written: the trace is not whole.\n");
}

TEST(qrvLink, TellsADeviceThatIsMissing) {
    LinkRun link;
    const ProgramRun poll = link.run("poll --port /dev/no-such-port");
    EXPECT_EQ(poll.exitCode, 4);
    EXPECT_EQ(poll.err, "qrv: /dev/no-such-port is not there: plug the adapter in, or choose another port.\n");
}

TEST(qrvLink, TellsAPortThatAnotherProcessHolds) {
    LinkRun link;
    const int holder = ::open(link.live.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(::flock(holder, LOCK_EX), 0);
    const ProgramRun poll = link.run("poll" + link.onLine());
    ::close(holder);
    EXPECT_EQ(poll.exitCode, 4);
    EXPECT_EQ(poll.err, "qrv: " + link.live.path() + " is held by another program: close that program first.\n");
}

TEST(qrvLink, NamesTheGroupOfAPortThatIsForbidden) {
    LinkRun link;
    ASSERT_EQ(::chmod(link.live.path().c_str(), 0), 0);
    // The build may lie where only root's privileges lead.
    link.qrv.moveToOwnFolder();
    struct stat status {};
    ASSERT_EQ(::stat(link.live.path().c_str(), &status), 0);
    const std::string group = ::getgrgid(status.st_gid)->gr_name;
    const int ended = withoutPrivileges([&] { return link.run("poll" + link.onLine()).exitCode; });
    EXPECT_EQ(ended, 4);
    EXPECT_EQ(bytesOf(link.qrv.path(".err")), "qrv: " + link.live.path() +
                                                  " may not be opened by you: become a member of the group \"" + group +
                                                  "\" and log in again.\n");
}

TEST(qrvLink, APortThatIsNamedByItsNumberIsCalledSo) {
    const LinkRun link;
    EXPECT_EQ(link.run("ports --map COM7=/dev/no-such-port").exitCode, 0);
    EXPECT_EQ(link.run("poll --port COM7").err,
              "qrv: COM7 (/dev/no-such-port) is not there: plug the adapter in, or choose another port.\n");
}

TEST(qrvLink, TellsWhatIsNoPort) {
    LinkRun link;
    const ProgramRun poll = link.run("poll --port /dev/null");
    EXPECT_EQ(poll.exitCode, 4);
    EXPECT_EQ(poll.err, "qrv: /dev/null is no serial port: name a terminal device.\n");
}

struct FaultWords {
    const char* name;
    const char* fault;
    const char* words;
};

class QrvLinkFaultTest : public testing::TestWithParam<FaultWords> {};

TEST_P(QrvLinkFaultTest, HasItsWords) {
    LinkRun link;
    link.live.controller.play(SimFaultPlan::always(GetParam().fault));
    link.live.start();
    const ProgramRun poll = link.run("poll" + link.onLine());
    EXPECT_EQ(poll.exitCode, 4);
    EXPECT_EQ(poll.out, "");
    EXPECT_EQ(poll.err, "qrv: " + link.live.path() + GetParam().words + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Faults, QrvLinkFaultTest,
    testing::Values(
        FaultWords{"silent", "silence", " (38400,O): no answer: check that the controller is on, and the cable."},
        FaultWords{"garbage", "garbage",
                   " (38400,O): what comes back is garbled: check baud rate and parity, and the cable for "
                   "noise."},
        FaultWords{"unplugged", "hang-up", " went away while it was open: plug it in again and repeat the action."},
        FaultWords{"noController", "wrong-status",
                   " (38400,O): what answers is no QRV controller that is ready: check what the cable leads "
                   "to."}),
    [](const auto& row) { return row.param.name; });

/// Answers the requests with these bytes in turn, whatever is asked; zeros are filler and draw no answer.
class BytesInTurn {
 public:
    explicit BytesInTurn(std::vector<std::vector<std::uint8_t>> answers)
        : answers_(std::move(answers)), thread_([this] { answer(); }) {}
    ~BytesInTurn() {
        isOver_ = true;
        thread_.join();
    }
    BytesInTurn(const BytesInTurn&) = delete;
    BytesInTurn& operator=(const BytesInTurn&) = delete;

    [[nodiscard]] std::string onLine() const { return " --port " + line_.path(); }

 private:
    void answer() const {
        for (const auto& bytes : answers_) {
            std::vector<std::uint8_t> first;
            while ((first.empty() || first.front() == 0) && !isOver_) first = line_.receive(1);
            // The rest of the request.
            static_cast<void>(line_.receive(first == std::vector<std::uint8_t>{1} ? 2 : 6));
            line_.send(bytes);
        }
    }

    std::vector<std::vector<std::uint8_t>> answers_;
    test::FarEnd line_;
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

constexpr const char* kGarbled = ": what comes back is garbled: check baud rate and parity, and the cable for noise.\n";
const std::vector<std::uint8_t> kThere{0x10, 0x00, 0x00, 0xFF, 0xEF};

TEST(qrvLink, AnotherStatusIsToldSoAfterARetryToo) {
    const LinkRun link;
    const BytesInTurn far({{0x10, 0x00, 0x00, 0xFF, 0xEE}, {0x11, 0x00, 0x00, 0xFF, 0xEE}});
    EXPECT_NE(link.run("poll" + far.onLine()).err.find(": what answers is no QRV controller that is ready"),
              std::string::npos);
}

TEST(qrvLink, GarbageWhoseSumOverflowsIsGarbage) {
    const LinkRun link;
    const BytesInTurn far({std::vector<std::uint8_t>(200, 0xFF)});
    const ProgramRun poll = link.run("poll --trace -" + far.onLine());
    EXPECT_EQ(poll.exitCode, 4);
    EXPECT_NE(poll.err.find(" < checksum overflows, 200 bytes: FF FF"), std::string::npos) << poll.err;
    EXPECT_NE(poll.err.find(kGarbled), std::string::npos) << poll.err;
}

TEST(qrvLink, AReplyThatIsSoundButShortIsToldSo) {
    const LinkRun link;
    const BytesInTurn far({kThere, {0x05, 0xFF, 0xFA}});
    const ProgramRun version = link.run("version" + far.onLine());
    EXPECT_EQ(version.exitCode, 4);
    EXPECT_NE(version.err.find(": the answer is of another length than what was asked for.\n"), std::string::npos)
        << version.err;
}

TEST(qrvLink, TellsABlockThatDoesNotAnswer) {
    LinkRun link;
    SimMemory memory;
    memory.write(1, 40, std::array<std::uint8_t, 10>{0, 3, 0, 0, 0, 0, 0, 0, 1, 0});
    link.live.controller.load(memory);
    link.live.controller.play(SimFaultPlan::from("silence", 3));  // after the poll and the block's record
    link.live.start();
    const ProgramRun read = link.run("read-block 4" + link.onLine());
    EXPECT_EQ(read.exitCode, 4);
    EXPECT_EQ(read.err,
              "qrv: " + link.live.path() + " (38400,O): no answer: check that the controller is on, and the cable.\n");
}

TEST(qrvPorts, KeepsWhatIsMappedByHand) {
    const LinkRun link;
    const ProgramRun mapped = link.run("ports --json --map COM7=/not/there");
    EXPECT_EQ(mapped.exitCode, 0);
    const auto later = ReadJson::of(link.run("ports --json").out).elements();
    const auto entry =
        std::find_if(later.begin(), later.end(), [](const auto& port) { return port["name"] == "COM7"; });
    ASSERT_NE(entry, later.end());
    EXPECT_EQ((*entry)["path"], "/not/there");
    EXPECT_EQ((*entry)["present"], false);
    EXPECT_EQ(link.run("ports --unmap COM7").exitCode, 0);
    EXPECT_EQ(link.run("ports --unmap COM7").exitCode, 1);
}

TEST(qrvPorts, ANumberThatIsNoneIsRefused) {
    const LinkRun link;
    for (const char* map : {"COM0=/dev/x", "COM100=/dev/x", "LPT1=/dev/x", "COM7", "COM7="}) {
        EXPECT_EQ(link.run(std::string("ports --map ") + map).exitCode, 2) << map;
    }
    EXPECT_EQ(link.run("poll --port COM").exitCode, 2);
}

}  // namespace
}  // namespace qrv
