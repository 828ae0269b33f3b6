#include "link/ByteNumbers.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/RunTimeError.h"

namespace qrv::test {
namespace {

struct SintRow {
    const char* name;
    std::int32_t value;
    std::int16_t result;
};

class SintTest : public testing::TestWithParam<SintRow> {};

TEST_P(SintTest, GivesTheSixteenBits) { EXPECT_EQ(Sint(GetParam().value), GetParam().result); }

INSTANTIATE_TEST_SUITE_P(Edges, SintTest,
                         testing::Values(SintRow{"zero", 0, 0}, SintRow{"largest", 32767, 32767},
                                         SintRow{"firstNegative", 32768, -32768},
                                         SintRow{"lastOfSixteenBits", 65535, -1},
                                         SintRow{"seventeenBits", 65536, -32768}, SintRow{"losesItsSign", -1, 32767},
                                         SintRow{"mostNegative", -32768, 0},
                                         SintRow{"largestOfAll", std::numeric_limits<std::int32_t>::max(), -1},
                                         SintRow{"smallestOfAll", std::numeric_limits<std::int32_t>::min(), 0}),
                         [](const auto& row) { return row.param.name; });

TEST(longint, ReadsSixteenBitsAsASignedNumber) {
    EXPECT_EQ(longint(0), 0);
    EXPECT_EQ(longint(32767), 32767);
    EXPECT_EQ(longint(32768), -32768);
    EXPECT_EQ(longint(65535), -1);
}

TEST(longint, TakesNoOtherNumber) {
    EXPECT_THROW((void)longint(-1), RunTimeError);
    EXPECT_THROW((void)longint(65536), RunTimeError);
}

TEST(blong, AssemblesABigEndianNumber) {
    std::int32_t value = 0;
    value = blong(value, 0x12, 3);
    value = blong(value, 0x34, 2);
    value = blong(value, 0x56, 1);
    value = blong(value, 0x78, 0);
    EXPECT_EQ(value, 0x12345678);
}

TEST(blong, AHighBitInTheLastPlaceIsNegative) {
    std::int32_t value = 0;
    for (int position = 3; position >= 0; --position) value = blong(value, 0xFF, position);
    EXPECT_EQ(value, -1);
    EXPECT_EQ(blong(0, 0x80, 3), std::numeric_limits<std::int32_t>::min());
}

TEST(blong, ReplacesTheByteThatStoodThere) { EXPECT_EQ(blong(0x11223344, 0xAA, 1), 0x1122AA44); }

}  // namespace
}  // namespace qrv::test
