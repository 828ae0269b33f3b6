#include "link/Frame.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/RunTimeError.h"

namespace qrv::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct GoldenRow {
    const char* name;
    Bytes body;
    Checksum checksum;
};

// Summed by hand: 3-byte poll, a read of 24 bytes of section 0, the announcement, and so on.
const std::vector<GoldenRow> kGolden{
    {"nothing", {}, {0xFF, 0xFF}},
    {"poll", {0x01}, {0xFF, 0xFE}},
    {"commit", {0x08}, {0xFF, 0xF7}},
    {"announce", {0x30}, {0xFF, 0xCF}},
    {"readVersion", {0x04, 0x00, 0x18, 0x00, 0x00}, {0xFF, 0xE3}},
    {"readConstants", {0x04, 0x03, 0x80, 0x00, 0x80}, {0xFE, 0xF8}},
    {"readBlockTable", {0x04, 0x04, 0x96, 0x00, 0x00}, {0xFF, 0x61}},
    {"readOutputOfBlock704", {0x20, 0x02, 0xC0}, {0xFF, 0x1D}},
    {"carryIntoTheHighByte", {0xFF, 0x01}, {0xFE, 0xFF}},
};

class GoldenFrameTest : public testing::TestWithParam<GoldenRow> {};

TEST_P(GoldenFrameTest, HasItsChecksum) {
    const GoldenRow& row = GetParam();
    EXPECT_EQ(checksumOf(row.body), row.checksum);
    Bytes frame = row.body;
    frame.push_back(row.checksum.high);
    frame.push_back(row.checksum.low);
    EXPECT_EQ(isSound(frame), !row.body.empty());
}

INSTANTIATE_TEST_SUITE_P(ByHand, GoldenFrameTest, testing::ValuesIn(kGolden),
                         [](const auto& row) { return row.param.name; });

TEST(Frame, FewerThanThreeBytesAreNeverSound) {
    EXPECT_FALSE(isSound(Bytes{}));
    EXPECT_FALSE(isSound(Bytes{0xFF}));
    EXPECT_FALSE(isSound(Bytes{0xFF, 0xFF}));
    EXPECT_TRUE(isSound(Bytes{0x00, 0xFF, 0xFF}));
}

TEST(Frame, ASurplusByteIsNotSound) { EXPECT_FALSE(isSound(Bytes{0x01, 0xFF, 0xFE, 0x00})); }

TEST(Frame, TheLargestSumStands) {
    // 128 times 255 and 127: 32767.
    Bytes bytes(128, 0xFF);
    bytes.push_back(127);
    EXPECT_EQ(checksumOf(bytes), (Checksum{0x80, 0x00}));
}

TEST(Frame, ASumAboveTheLargestIsAnOverflow) {
    Bytes bytes(128, 0xFF);
    bytes.push_back(128);
    EXPECT_THROW((void)checksumOf(bytes), RunTimeError);
    bytes.insert(bytes.end(), {0x00, 0x00});
    EXPECT_THROW((void)isSound(bytes), RunTimeError);
}

TEST(Frame, TellsAheadWhetherASumOverflows) {
    Bytes largest(128, 0xFF);  // 128 x 255 = 32640
    largest.push_back(127);    // 32767
    largest.push_back(0);
    largest.push_back(0);
    EXPECT_FALSE(overflows(largest));
    largest[128] = 128;
    EXPECT_TRUE(overflows(largest));
    EXPECT_FALSE(overflows(Bytes{0xFF, 0xFF}));
    EXPECT_FALSE(overflows(Bytes{}));
}

TEST(Frame, TheChecksumOfAReplyIsNoPartOfItsSum) {
    Bytes bytes(128, 0xFF);
    bytes.insert(bytes.end(), {127, 0x80, 0x00});
    EXPECT_TRUE(isSound(bytes));
}

}  // namespace
}  // namespace qrv::test
