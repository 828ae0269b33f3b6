#include "link/sim/SimLine.h"

#include <gtest/gtest.h>

#include "link/sim/SimRig.h"

namespace qrv::test {

using namespace std::chrono_literals;

namespace {
const Clock::TimePoint kNow{1h};
}

TEST(SimLine, WithoutAPaceBytesNeedNoTime) {
    SimLine line;
    EXPECT_EQ(line.arrivalOf(kNow), kNow);
    line.send(Bytes{1, 2, 3}, kNow);
    EXPECT_EQ(line.nextArrival(), kNow);
    EXPECT_EQ(line.take(kNow), (Bytes{1, 2, 3}));
    EXPECT_EQ(line.nextArrival(), std::nullopt);
}

TEST(SimLine, AnswersKeepTheirOrderBehindALateOne) {
    SimLine line;
    line.send(Bytes{1}, kNow + 2500ms);
    line.send(Bytes{2}, kNow + 1800ms);
    EXPECT_TRUE(line.take(kNow + 2499ms).empty());
    EXPECT_EQ(line.take(kNow + 2500ms), (Bytes{1, 2}));
}

TEST(SimLine, AByteWithParityHasElevenBits) {
    // 11 bits at 1100 baud: 10 ms a byte.
    SimLine line;
    line.setPace(SimPace{.baud = 1100, .bitsPerByte = 11});
    EXPECT_EQ(line.arrivalOf(kNow), kNow + 10ms);
    EXPECT_EQ(line.arrivalOf(kNow), kNow + 20ms);
    EXPECT_EQ(line.arrivalOf(kNow + 1s), kNow + 1010ms);
}

TEST(SimLine, APacedAnswerEndsOnTime) {
    SimLine line;
    line.setPace(SimPace{.baud = 1100, .bitsPerByte = 11});
    line.send(Bytes(20, 7), kNow);
    EXPECT_TRUE(line.take(kNow + 159ms).empty());
    EXPECT_EQ(line.take(kNow + 160ms).size(), 16U);
    EXPECT_EQ(line.nextArrival(), kNow + 200ms);
    EXPECT_EQ(line.take(kNow + 200ms).size(), 4U);
}

TEST(SimPace, ReadsThePortsSettings) {
    EXPECT_EQ(SimPace::ofSettings("38400,O,8, 1")->baud, 38400U);
    EXPECT_EQ(SimPace::ofSettings("38400,O,8, 1")->bitsPerByte, 11U);
    EXPECT_EQ(SimPace::ofSettings("1200,E,8, 1")->bitsPerByte, 11U);
    EXPECT_EQ(SimPace::ofSettings("9600,N,8, 1")->bitsPerByte, 10U);
    EXPECT_FALSE(SimPace::ofSettings("fast").has_value());
    EXPECT_FALSE(SimPace::ofSettings("0,N,8, 1").has_value());
}

TEST(SimPace, AThousandBytesLastAsOnARealLine) {
    // 1000 bytes x 11 bits / 38400 baud = 286.458333 ms
    EXPECT_EQ(SimPace{}.timeOf(1000), 286'458'333ns);
}

}  // namespace qrv::test
