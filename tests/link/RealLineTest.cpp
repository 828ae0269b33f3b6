// A few rows once over a real pseudo-terminal in real time: our own port, the terminal program's pump, the machine's
// clock.
#include <gtest/gtest.h>

#include "LinkRig.h"
#include "LiveController.h"
#include "platform/posix/PollPump.h"
#include "platform/posix/PosixSerialPort.h"

namespace qrv::test {
namespace {

using namespace std::chrono_literals;

struct RealRig {
    explicit RealRig(SimSetup setup = {}) : live(std::move(setup)) {}
    /// From here on the controller answers.
    RealRig& started() {
        live.start();
        comm.Open_Comm_Port();
        return *this;
    }

    SystemClock clock;
    PollPump pump{clock};
    ScriptedBox boxes;
    ScriptedFileDialog dialogs;
    ScriptedHost host;
    MemorySettings settings;
    LiveController live;
    std::string path = live.path();
    PosixSerialPort port{[this](std::int16_t) { return path; }};
    Workbench bench{Platform{boxes, dialogs, host, settings, clock, pump, port}, {}};
    frmComm comm{bench};
};

TEST(RealLine, PollsAndReadsTheVersion) {
    RealRig rig({.versionText = "V6.73 SIMULATED QRV     "});
    rig.started();
    rig.comm.poll_qrm3();
    EXPECT_TRUE(rig.bench.xfer_ok);
    std::string version;
    rig.comm.get_version(version);
    EXPECT_EQ(version, "V6.73 SIMULATED QRV     ");
    rig.comm.Close_Comm_Port();
}

TEST(RealLine, WritesASectionReadsItBackAndCommits) {
    RealRig rig;
    rig.started();
    int index = rig.comm.put_write_head(Section::Pager, 60, 60);
    rig.comm.put_string(index, 60, "ATDT 555-0100");
    rig.comm.send_section_frame(60);
    ASSERT_TRUE(rig.bench.xfer_ok);
    rig.comm.put_read(Section::Pager, 60, 60);
    rig.comm.send_and_get(7, 67);
    ASSERT_TRUE(rig.bench.xfer_ok);
    EXPECT_EQ(std::string(rig.bench.rcv_bfr.begin() + 5, rig.bench.rcv_bfr.begin() + 18), "ATDT 555-0100");
    rig.comm.SendEE();
    EXPECT_TRUE(rig.bench.xfer_ok);
    rig.live.stop();
    EXPECT_EQ(rig.live.controller.counters().commits, 1U);
    EXPECT_EQ(rig.live.controller.committed().read(14, 60, 4), (Bytes{'A', 'T', 'D', 'T'}));
}

TEST(RealLine, CarriesTheLongestFramesManyTimes) {
    RealRig rig;
    rig.started();
    for (int round = 0; round < 200; ++round) {
        rig.comm.put_read(Section::Modbus, 192, 8);
        rig.comm.send_and_get(7, 199);
        ASSERT_TRUE(rig.bench.xfer_ok);
        ASSERT_EQ(rig.comm.retry_count(), 0);
    }
}

TEST(RealLine, ASilentAttemptIsRepeatedAndTheNextOneWaitsForQuiet) {
    RealRig rig;
    rig.live.controller.play(SimFaultPlan::once("silence"));
    rig.started();
    rig.comm.poll_qrm3();
    EXPECT_TRUE(rig.bench.xfer_ok);
    EXPECT_EQ(rig.comm.retry_count(), 1);
    rig.comm.poll_qrm3();
    EXPECT_TRUE(rig.bench.xfer_ok);
    EXPECT_EQ(rig.comm.retry_count(), 0);
}

TEST(RealLine, ABadChecksumIsRepeatedAfterTheFiller) {
    RealRig rig;
    rig.live.controller.play(SimFaultPlan::once("bad-checksum"));
    rig.started();
    rig.comm.poll_qrm3();
    EXPECT_TRUE(rig.bench.xfer_ok);
    EXPECT_EQ(rig.comm.retry_count(), 1);
    rig.live.stop();
    EXPECT_EQ(rig.live.controller.fillerCount(), 1025U);
}

TEST(RealLine, AnAdapterThatVanishesIsUsableAgainWhenItIsBack) {
    RealRig rig;
    rig.live.controller.play(SimFaultPlan::always("hang-up"));
    rig.started();
    rig.bench.xfer_abort = true;  // one attempt: the other nine are like it
    rig.comm.poll_qrm3();
    EXPECT_FALSE(rig.bench.xfer_ok);
    EXPECT_EQ(rig.port.fault(), SerialFault::Unplugged);
    rig.bench.xfer_abort = false;
    LiveController pluggedAgain;
    pluggedAgain.start();
    rig.path = pluggedAgain.path();
    rig.comm.Open_Comm_Port();
    ASSERT_TRUE(rig.comm.port_is_open);
    rig.comm.poll_qrm3();
    EXPECT_TRUE(rig.bench.xfer_ok);
    rig.comm.Close_Comm_Port();
}

// Our own port, but a clock that only waits move: the ten attempts take no time.
TEST(RealLine, AnAdapterThatVanishesIsOneEventAndEndsWithinTheTenAttempts) {
    FalseClock clock;
    FalsePump pump{clock};
    PseudoTerminal device;
    PosixSerialPort port{[&](std::int16_t) { return device.path(); }};
    ASSERT_TRUE(port.open(1, "38400,O,8, 1"));
    device.hangUp();
    Transaction transaction(port, pump, clock);
    LineRecord record(clock);
    transaction.observe(&record);
    Bytes reply;
    const bool aborted = false;
    EXPECT_EQ(transaction.run({.frame = Bytes{0x01, 0xFF, 0xFE}, .replyLength = 5, .reply = reply, .aborted = aborted}),
              Ending::Failed);
    EXPECT_EQ(record.sends.size(), 10U);
    EXPECT_EQ(record.verdicts, std::vector<Verdict>(10, Verdict::Silent));
    EXPECT_EQ(clock.elapsed(), 18000ms);
    // Each attempt pumps once and sleeps once, and nothing wakes it before its time is up.
    EXPECT_EQ(pump.pumps, 10);
    EXPECT_EQ(pump.waits, 10);
    EXPECT_EQ(port.descriptor(), -1);
    EXPECT_EQ(port.faultText(),
              "COM1 (" + device.path() + ") went away while it was open: plug it in again and repeat the action.");
}

}  // namespace
}  // namespace qrv::test
