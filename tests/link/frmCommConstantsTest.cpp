// The constants image, read slot by slot, and what an upload's log gets of it.
#include <gtest/gtest.h>

#include "LinkRig.h"
#include "link/UploadLog.h"

namespace qrv::test {
namespace {

class LogLines final : public UploadLog {
 public:
    void print(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

/// A reply of 128 bytes of which byte i is i + 1.
Bytes countingReply() {
    Bytes reply{0, 0, 0, 0, 0};
    for (int i = 1; i <= 128; ++i) reply.push_back(static_cast<std::uint8_t>(i));
    return reply;
}

struct ConstantsRig : LineRig {
    ConstantsRig() {
        opened();
        bench.rcv_bfr = sealed(countingReply());
        comm.constant_offset = 128;
        comm.constant_index = 0;
    }
};

TEST(frmComm, AnIntegerConstantIsTheFirstHalfOfItsSlot) {
    ConstantsRig rig;
    std::int16_t value = 0;
    rig.comm.get_integer_constant(value);
    EXPECT_EQ(value, 0x0102);
    rig.comm.get_integer_constant(value);
    EXPECT_EQ(value, 0x0506);
    EXPECT_EQ(rig.comm.constant_index, 2);
    rig.bench.rcv_bfr[13] = 0xFF;
    rig.comm.get_integer_constant(value);
    EXPECT_EQ(value, static_cast<std::int16_t>(0xFF0A));
}

TEST(frmComm, ALongConstantIsItsWholeSlot) {
    ConstantsRig rig;
    std::int32_t value = 0;
    rig.comm.get_long_constant(value);
    EXPECT_EQ(value, 0x01020304);
    rig.bench.rcv_bfr[9] = 0xFF;
    rig.comm.get_long_constant(value);
    EXPECT_EQ(value, static_cast<std::int32_t>(0xFF060708));
}

TEST(frmComm, AHiddenConstantIsZeroAndTakesItsSlot) {
    ConstantsRig rig;
    std::int16_t value = 99;
    rig.comm.get_no_constant(value);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(rig.comm.constant_index, 1);
}

TEST(frmComm, TheThirtySecondConstantReadsTheNextImageFrame) {
    ConstantsRig rig;
    Bytes next(133, 0);
    next[5] = 0x7A;
    rig.answerAllSealed(next);
    LogLines log;
    rig.comm.logTo(&log);
    std::int16_t value = 0;
    for (int i = 0; i < 31; ++i) rig.comm.get_no_constant(value);
    EXPECT_TRUE(rig.record.sends.empty());
    rig.comm.get_integer_constant(value);
    EXPECT_EQ(value, 0x7D7E);
    EXPECT_EQ(rig.record.sends, (std::vector<Bytes>{{0x04, 0x03, 0x80, 0x00, 0x80, 0xFE, 0xF8}}));
    EXPECT_EQ(rig.comm.constant_offset, 256);
    EXPECT_EQ(rig.comm.constant_index, 0);
    rig.comm.get_integer_constant(value);
    EXPECT_EQ(value, 0x7A00);
    ASSERT_EQ(log.lines.size(), 5U);
    EXPECT_EQ(log.lines[0], "C_offset:  128 ");
    EXPECT_EQ(log.lines[1], "Sent:4 3 128 0 128 254 248 ");
    EXPECT_EQ(log.lines[2], "Expecting: 135 Bytes. Received 135 ");
    EXPECT_EQ(log.lines[3].substr(0, 29), "Received:0 0 0 0 0 122 0 0 0 ");
    EXPECT_EQ(log.lines[4], "Retries: 0 ");
}

TEST(frmComm, AFailedConstantsReadGoesOn) {
    ConstantsRig rig;
    LogLines log;
    rig.comm.logTo(&log);
    rig.comm.constant_index = 31;
    std::int16_t value = 0;
    rig.comm.get_no_constant(value);
    EXPECT_EQ(rig.comm.constant_offset, 256);
    EXPECT_FALSE(rig.bench.xfer_ok);
    EXPECT_EQ(log.lines, (std::vector<std::string>{"C_offset:  128 ", "Sent:4 3 128 0 128 254 248 ",
                                                   "Expecting: 135 Bytes. Received 0 ", "Received:", "Retries: 10 "}));
    EXPECT_THROW(rig.comm.get_integer_constant(value), RunTimeError);
}

}  // namespace
}  // namespace qrv::test
