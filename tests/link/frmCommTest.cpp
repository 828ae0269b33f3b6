// The protocol's face: the port, the counters, and single commands.
#include "link/frmComm.h"

#include <gtest/gtest.h>

#include "LinkRig.h"

namespace qrv::test {
namespace {

using namespace std::chrono_literals;

const Bytes kShort{0x10, 0x00, 0x00};

// --- the port ---

TEST(frmComm, OpensThePortThatTheSettingsName) {
    LineRig rig;
    rig.bench.comm_port = 7;
    rig.bench.baud_rate = "9600";
    rig.bench.parity = "E";
    rig.comm.Open_Comm_Port();
    EXPECT_TRUE(rig.comm.port_is_open);
    EXPECT_EQ(rig.line.opened, (std::vector<std::pair<std::int16_t, std::string>>{{7, "9600,E,8, 1"}}));
}

TEST(frmComm, OpeningAnOpenPortClosesItFirst) {
    LineRig rig;
    rig.opened().opened();
    EXPECT_TRUE(rig.comm.port_is_open);
    EXPECT_EQ(rig.line.opened.size(), 2U);
}

TEST(frmComm, OpeningDropsWhatWaits) {
    LineRig rig;
    rig.opened();
    rig.line.send({1, 2, 3});
    rig.opened();
    EXPECT_EQ(rig.line.waitingCount(), 0U);
}

TEST(frmComm, SaysThatAPortIsNotAvailable) {
    LineRig rig;
    rig.line.opens = false;
    rig.boxes.expect("COM1: not available. Change the setting to another port.");
    rig.comm.Open_Comm_Port();
    EXPECT_FALSE(rig.comm.port_is_open);
}

TEST(frmComm, SaysThatAPortIsInUseIfItWouldNotClose) {
    LineRig rig;
    rig.opened();
    rig.line.closes = false;
    rig.boxes.expect("COM1: in use. Change the setting to another port.");
    rig.comm.Open_Comm_Port();
    EXPECT_FALSE(rig.comm.port_is_open);
    EXPECT_EQ(rig.line.opened.size(), 1U);
}

TEST(frmComm, ClosesThePort) {
    LineRig rig;
    rig.opened();
    rig.comm.Close_Comm_Port();
    EXPECT_FALSE(rig.comm.port_is_open);
    EXPECT_FALSE(rig.line.isOpen());
}

// --- a transaction ---

TEST(frmComm, AGoodTransactionLeavesAnEmptyBuffer) {
    LineRig rig;
    rig.opened().answerAllSealed(kShort);
    rig.comm.put_bytes({1});
    rig.comm.sum_xmit_bfr(0);
    rig.comm.send_and_get(3, 5);
    EXPECT_TRUE(rig.bench.xfer_ok);
    EXPECT_EQ(rig.bench.xmit_bfr, Bytes(301, 0));
    EXPECT_EQ(rig.bench.rcv_bfr, (Bytes{0x10, 0x00, 0x00, 0xFF, 0xEF}));
    EXPECT_EQ(rig.comm.retry_count(), 0);
}

TEST(frmComm, AFailedTransactionLeavesTheFrameInTheBuffer) {
    LineRig rig;
    rig.opened();
    rig.comm.put_bytes({1});
    rig.comm.sum_xmit_bfr(0);
    rig.comm.send_and_get(3, 5);
    EXPECT_FALSE(rig.bench.xfer_ok);
    EXPECT_EQ(rig.bench.xmit_bfr, (Bytes{0x01, 0xFF, 0xFE}));
    EXPECT_EQ(rig.comm.retry_count(), 10);
    EXPECT_TRUE(rig.comm.timed_out());
    EXPECT_EQ(rig.comm.timer_ticks(), 3);
}

TEST(frmComm, ACancelDuringTheWaitEndsAfterTheAttempt) {
    LineRig rig;
    rig.opened();
    rig.pump.at(rig.clock.now() + 10ms, [&] { rig.bench.xfer_abort = true; });
    rig.comm.poll_qrm3();
    EXPECT_FALSE(rig.bench.xfer_ok);
    EXPECT_EQ(rig.record.sends.size(), 1U);
    EXPECT_EQ(rig.clock.elapsed(), 1800ms);
}

TEST(frmComm, AnEventsOwnTransactionIsTurnedAwayAndSpoilsNothing) {
    LineRig rig;
    rig.opened();
    const Bytes second = sealed({0x10, 0x22, 0x33});
    rig.line.onWrite = [&](const Bytes& frame) {
        EXPECT_EQ(frame, (Bytes{0x20, 0x00, 0x05, 0xFF, 0xDA}));
        rig.line.send(second, 500ms);
    };
    int turnedAway = 0;
    rig.pump.at(rig.clock.now() + 100ms, [&] {
        rig.comm.poll_qrm3();
        EXPECT_FALSE(rig.bench.xfer_ok);
        rig.comm.Close_Comm_Port();
        rig.comm.Open_Comm_Port();
        ++turnedAway;
    });
    std::int32_t value = 0;
    rig.comm.get_analog(5, value);
    EXPECT_EQ(turnedAway, 1);
    EXPECT_TRUE(rig.bench.xfer_ok);
    EXPECT_EQ(value, 0x2233);
    EXPECT_EQ(rig.record.sends.size(), 1U);
    EXPECT_EQ(rig.line.opened.size(), 1U);
}

TEST(frmComm, ARepeatedFrameIsNotTheOneAnEventBuilt) {
    LineRig rig;
    rig.opened();
    rig.pump.at(rig.clock.now() + 100ms, [&] { rig.comm.poll_qrm3(); });
    rig.comm.send_key(3);
    const Bytes key{0x21, 0x03, 0xFF, 0xDB};
    EXPECT_EQ(rig.record.sends, std::vector<Bytes>(10, key));
    EXPECT_EQ(rig.bench.xmit_bfr, key);
}

TEST(frmComm, SendingOnAClosedPortIsARunTimeFailure) {
    LineRig rig;
    EXPECT_THROW(rig.comm.poll_qrm3(), RunTimeError);
}

struct ProgressRow {
    const char* name;
    std::int16_t txCount;
    std::int32_t bytesSent;
};

class ProgressTest : public testing::TestWithParam<ProgressRow> {};

TEST_P(ProgressTest, CountsFifteenForEveryFifteenBytesFromZeroOn) {
    LineRig rig;
    rig.opened().answerAllSealed(kShort);
    rig.bench.in_download = true;
    std::vector<std::int32_t> shown;
    rig.comm.showBytesSent = [&] { shown.push_back(rig.bench.bytes_sent); };
    rig.comm.showBytesReceived = [] { ADD_FAILURE() << "no upload runs"; };
    rig.comm.send_and_get(GetParam().txCount, 5);
    EXPECT_EQ(rig.bench.bytes_sent, GetParam().bytesSent);
    ASSERT_EQ(shown.size(), static_cast<std::size_t>(GetParam().bytesSent / 15));
    EXPECT_EQ(shown.front(), 15);
    EXPECT_EQ(rig.bench.bytes_received, 0);
}

INSTANTIATE_TEST_SUITE_P(Lengths, ProgressTest,
                         testing::Values(ProgressRow{"shortest", 3, 15}, ProgressRow{"nine", 9, 15},
                                         ProgressRow{"fourteen", 14, 15}, ProgressRow{"fifteen", 15, 30},
                                         ProgressRow{"blockTable", 57, 60}, ProgressRow{"constants", 135, 150},
                                         ProgressRow{"alarms", 187, 195}),
                         [](const auto& row) { return row.param.name; });

TEST(frmComm, AnUploadCountsWhatWasAskedFor) {
    LineRig rig;
    rig.opened().answerAll({0x05, 0xFF, 0xFA});
    rig.bench.in_upload = true;
    int shown = 0;
    rig.comm.showBytesReceived = [&] { ++shown; };
    rig.comm.send_and_get(7, 157);
    EXPECT_EQ(rig.bench.bytes_received, 157);
    EXPECT_EQ(rig.bench.bytes_sent, 0);
    EXPECT_EQ(shown, 1);
}

TEST(frmComm, AFailedTransactionCountsNothing) {
    LineRig rig;
    rig.opened();
    rig.bench.in_download = rig.bench.in_upload = true;
    rig.comm.send_and_get(7, 157);
    EXPECT_EQ(rig.bench.bytes_received, 0);
    EXPECT_EQ(rig.bench.bytes_sent, 0);
}

TEST(frmComm, AnAbortedTransactionCountsAsFinished) {
    LineRig rig;
    rig.opened();
    rig.bench.in_download = rig.bench.in_upload = rig.bench.xfer_abort = true;
    rig.comm.send_and_get(7, 157);
    EXPECT_FALSE(rig.bench.xfer_ok);
    EXPECT_EQ(rig.bench.bytes_received, 157);
    EXPECT_EQ(rig.bench.bytes_sent, 15);
}

TEST(frmComm, ASumAboveTheLargestStopsAFrameBeforeItIsSent) {
    LineRig rig;
    rig.opened();
    rig.bench.xmit_bfr.assign(301, 0xFF);
    EXPECT_THROW(rig.comm.sum_xmit_bfr(132), RunTimeError);
    EXPECT_TRUE(rig.line.writes.empty());
}

TEST(frmComm, SumsNothingForANegativeIndex) {
    LineRig rig;
    rig.bench.xmit_bfr.assign(301, 7);
    rig.comm.sum_xmit_bfr(-1);
    EXPECT_EQ(rig.bench.xmit_bfr[0], 0xFF);
    EXPECT_EQ(rig.bench.xmit_bfr[1], 0xFF);
    EXPECT_EQ(rig.bench.xmit_bfr[2], 7);
}

TEST(frmComm, ChecksTheReplyAsAWhole) {
    LineRig rig;
    bool good = false;
    rig.bench.rcv_bfr = {0x01, 0xFF, 0xFE};
    rig.comm.check_rcv_checksum(good);
    EXPECT_TRUE(good);
    rig.bench.rcv_bfr = {0x01, 0xFF, 0xFE, 0x00};
    rig.comm.check_rcv_checksum(good);
    EXPECT_FALSE(good);
}

TEST(frmComm, TheBankDelayIsNone) {
    LineRig rig;
    rig.comm.bank_delay_done = true;
    rig.comm.bank_delay();
    EXPECT_FALSE(rig.comm.bank_delay_done);
    EXPECT_EQ(rig.comm.tmrBlockBankDelay.interval(), 500ms);
    EXPECT_FALSE(rig.comm.tmrBlockBankDelay.isEnabled());
    EXPECT_EQ(rig.clock.elapsed(), 0ms);
    EXPECT_TRUE(rig.clock.sleeps.empty());
}

// --- single commands ---

struct CommandRowTest {
    const char* name;
    std::function<void(frmComm&)> run;
    Bytes frame;
};

// Written by hand from the protocol.
const std::vector<CommandRowTest> kSent{
    {"poll", [](frmComm& comm) { comm.poll_qrm3(); }, {0x01, 0xFF, 0xFE}},
    {"version",
     [](frmComm& comm) {
         std::string version;
         comm.get_version(version);
     },
     {0x04, 0x00, 0x18, 0x00, 0x00, 0xFF, 0xE3}},
    {"analog",
     [](frmComm& comm) {
         std::int32_t value = 0;
         comm.get_analog(704, value);
     },
     {0x20, 0x02, 0xC0, 0xFF, 0x1D}},
    {"digital",
     [](frmComm& comm) {
         std::int32_t value = 0;
         comm.get_digital(1, value);
     },
     {0x20, 0x00, 0x01, 0xFF, 0xDE}},
    {"key", [](frmComm& comm) { comm.send_key(0x0141); }, {0x21, 0x41, 0xFF, 0x9D}},
    {"menus", [](frmComm& comm) { comm.sendCommand(Command::ActivateMenus); }, {0x1F, 0xFF, 0xE0}},
    {"charts", [](frmComm& comm) { comm.sendCommand(Command::ActivateCharts); }, {0x25, 0xFF, 0xDA}},
    {"units", [](frmComm& comm) { comm.sendCommand(Command::ActivateUnits); }, {0x27, 0xFF, 0xD8}},
    {"modbus", [](frmComm& comm) { comm.sendCommand(Command::ActivateModbus); }, {0x28, 0xFF, 0xD7}},
    {"announce", [](frmComm& comm) { comm.sendCommand(Command::AnnounceDownload); }, {0x30, 0xFF, 0xCF}},
    {"commit", [](frmComm& comm) { comm.SendEE(); }, {0x08, 0xFF, 0xF7}},
    {"read",
     [](frmComm& comm) {
         comm.put_read(Section::Constants, 128, 22400);
         comm.send_and_get(7, 135);
     },
     {0x04, 0x03, 0x80, 0x57, 0x80, 0xFE, 0xA1}},
    {"write",
     [](frmComm& comm) {
         int index = comm.put_write_head(Section::Units, 2, 1706);
         comm.put_word(index, 0x1234);
         comm.send_section_frame(2);
     },
     {0x02, 0x0C, 0x02, 0x06, 0xAA, 0x12, 0x34, 0xFE, 0xF9}},
};

class CommandFrameTest : public testing::TestWithParam<CommandRowTest> {};

TEST_P(CommandFrameTest, GoesOutAsWrittenByHand) {
    LineRig rig;
    rig.opened().answerAllSealed(Bytes(40, 0x10));
    GetParam().run(rig.comm);
    EXPECT_EQ(rig.record.sends, std::vector<Bytes>{GetParam().frame});
}

TEST_P(CommandFrameTest, BeginsWithAnEmptyBufferWhateverWasThere) {
    LineRig rig;
    rig.opened().answerAllSealed(Bytes(40, 0x10));
    rig.bench.xmit_bfr = {9, 9, 9};
    GetParam().run(rig.comm);
    EXPECT_EQ(rig.record.sends, std::vector<Bytes>{GetParam().frame});
}

INSTANTIATE_TEST_SUITE_P(ByHand, CommandFrameTest, testing::ValuesIn(kSent),
                         [](const auto& row) { return row.param.name; });

TEST(frmComm, OnlyTheRightStatusAnswersAPoll) {
    for (int status = 0; status < 256; ++status) {
        LineRig rig;
        rig.opened().answerAllSealed({static_cast<std::uint8_t>(status), 0, 0});
        rig.comm.poll_qrm3();
        EXPECT_EQ(rig.bench.xfer_ok, status == 16) << status;
        EXPECT_EQ(rig.record.sends.size(), 1U);
    }
}

TEST(frmComm, TheVersionIsWholeAndUntrimmed) {
    LineRig rig;
    const std::string text = " V6.73\x80 QRV  \xFF          ";
    ASSERT_EQ(text.size(), 24U);
    Bytes reply{1, 2, 3, 4, 5};
    reply.insert(reply.end(), text.begin(), text.end());
    rig.opened().answerAllSealed(reply);
    std::string version = "old";
    rig.comm.get_version(version);
    EXPECT_EQ(version, text);
}

TEST(frmComm, AFailedVersionReadGivesNothing) {
    LineRig rig;
    rig.opened();
    std::string version = "old";
    rig.comm.get_version(version);
    EXPECT_EQ(version, "");
    EXPECT_FALSE(rig.bench.xfer_ok);
}

TEST(frmComm, AVersionReplyThatIsTooShortIsOutOfBounds) {
    LineRig rig;
    rig.opened().answerAllSealed({1, 2, 3, 4, 5, 'V'});
    std::string version;
    EXPECT_THROW(rig.comm.get_version(version), RunTimeError);
}

TEST(frmComm, SaysThatTheCommitFailed) {
    LineRig rig;
    rig.opened();
    rig.boxes.expect("UPDATE EEPROM COMMAND FAILED");
    rig.comm.SendEE();
    EXPECT_FALSE(rig.bench.xfer_abort);
}

TEST(frmComm, SaysNothingOfACommitThatWasCancelled) {
    LineRig rig;
    rig.opened();
    rig.bench.xfer_abort = true;
    rig.comm.SendEE();
}

struct AnalogRow {
    const char* name;
    std::uint8_t high;
    std::uint8_t low;
    std::int32_t value;
};

class AnalogTest : public testing::TestWithParam<AnalogRow> {};

TEST_P(AnalogTest, ReadsTwosComplement) {
    LineRig rig;
    rig.opened().answerAllSealed({0x77, GetParam().high, GetParam().low});
    std::int32_t value = 99;
    rig.comm.get_analog(4, value);
    EXPECT_EQ(value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Edges, AnalogTest,
                         testing::Values(AnalogRow{"zero", 0x00, 0x00, 0}, AnalogRow{"largest", 0x7F, 0xFF, 32767},
                                         AnalogRow{"smallest", 0x80, 0x00, -32768},
                                         AnalogRow{"minusOne", 0xFF, 0xFF, -1}),
                         [](const auto& row) { return row.param.name; });

TEST(frmComm, ADiscreteOutputIsTheReplysSecondByte) {
    LineRig rig;
    rig.opened().answerAllSealed({0x77, 0x01, 0x55});
    std::int32_t value = 99;
    rig.comm.get_digital(4, value);
    EXPECT_EQ(value, 1);
}

TEST(frmComm, AnOutputIsReadFromWhateverCame) {
    LineRig rig;
    rig.opened();
    rig.line.onWrite = [&](const Bytes& frame) {
        if (frame.size() == 5) rig.line.send({0x10, 0x01, 0x02, 0x00, 0x00});
    };
    std::int32_t value = 99;
    rig.comm.get_analog(4, value);
    EXPECT_FALSE(rig.bench.xfer_ok);
    EXPECT_EQ(value, 258);
}

TEST(frmComm, AnOutputOfADeadLineIsOutOfBounds) {
    for (const Bytes& reply : {Bytes{}, Bytes{1}, Bytes{1, 2}}) {
        LineRig rig;
        rig.opened();
        rig.bench.xfer_abort = true;
        rig.answerAll(reply);
        std::int32_t value = 99;
        EXPECT_THROW(rig.comm.get_analog(4, value), RunTimeError);
        EXPECT_THROW(rig.comm.get_digital(4, value), RunTimeError);
        EXPECT_EQ(value, 99);
    }
}

}  // namespace
}  // namespace qrv::test
