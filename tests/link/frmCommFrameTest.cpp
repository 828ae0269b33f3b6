// The building of frames.
#include <gtest/gtest.h>

#include <limits>

#include "LinkRig.h"

namespace qrv::test {
namespace {

Bytes first(const LineRig& rig, std::size_t count) {
    return {rig.bench.xmit_bfr.begin(), rig.bench.xmit_bfr.begin() + static_cast<std::ptrdiff_t>(count)};
}

TEST(frmCommFrame, PutBytesBeginsAFrame) {
    LineRig rig;
    rig.bench.xmit_bfr = {9, 9, 9, 9};
    EXPECT_EQ(rig.comm.put_bytes({2, 13, 192}), 3);
    EXPECT_EQ(rig.bench.xmit_bfr.size(), 301U);
    EXPECT_EQ(first(rig, 5), (Bytes{2, 13, 192, 0, 0}));
    EXPECT_THROW(rig.comm.put_bytes({256}), RunTimeError);
}

struct ByteRow {
    const char* name;
    std::int32_t value;
    std::uint8_t byte;
};

class PutByteTest : public testing::TestWithParam<ByteRow> {};

TEST_P(PutByteTest, StoresOneByte) {
    LineRig rig;
    int index = 4;
    rig.comm.put_byte(index, GetParam().value);
    EXPECT_EQ(index, 5);
    EXPECT_EQ(rig.bench.xmit_bfr[4], GetParam().byte);
}

INSTANTIATE_TEST_SUITE_P(Edges, PutByteTest,
                         testing::Values(ByteRow{"zero", 0, 0x00}, ByteRow{"largest", 255, 0xFF},
                                         ByteRow{"minusOne", -1, 0xFF}, ByteRow{"minus128", -128, 0x80},
                                         ByteRow{"minus100", -100, 0x9C}),
                         [](const auto& row) { return row.param.name; });

TEST(frmCommFrame, AByteAbove255IsAnOverflow) {
    LineRig rig;
    int index = 0;
    EXPECT_THROW(rig.comm.put_byte(index, 256), RunTimeError);
}

struct NumberRow {
    const char* name;
    std::int32_t value;
    Bytes bytes;
};

class PutWordTest : public testing::TestWithParam<NumberRow> {};

TEST_P(PutWordTest, StoresTheHighByteFirst) {
    LineRig rig;
    int index = 0;
    rig.comm.put_word(index, GetParam().value);
    EXPECT_EQ(index, 2);
    EXPECT_EQ(first(rig, 2), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(Edges, PutWordTest,
                         testing::Values(NumberRow{"one", 1, {0x00, 0x01}}, NumberRow{"largest", 32767, {0x7F, 0xFF}},
                                         NumberRow{"offsetAbove", 40000, {0x9C, 0x40}},
                                         NumberRow{"largestOffset", 65535, {0xFF, 0xFF}},
                                         NumberRow{"minusOne", -1, {0xFF, 0xFF}},
                                         NumberRow{"smallest", -32768, {0x80, 0x00}}),
                         [](const auto& row) { return row.param.name; });

TEST(frmCommFrame, AWordHasSixteenBits) {
    LineRig rig;
    int index = 0;
    EXPECT_THROW(rig.comm.put_word(index, 65536), RunTimeError);
    EXPECT_THROW(rig.comm.put_word(index, -32769), RunTimeError);
}

class PutLongTest : public testing::TestWithParam<NumberRow> {};

TEST_P(PutLongTest, SetsBitFifteenForEveryBitAbove) {
    LineRig rig;
    int index = 1;
    rig.comm.put_long(index, GetParam().value);
    EXPECT_EQ(index, 5);
    Bytes bytes{0};
    bytes.insert(bytes.end(), GetParam().bytes.begin(), GetParam().bytes.end());
    EXPECT_EQ(first(rig, 5), bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Edges, PutLongTest,
    testing::Values(NumberRow{"zero", 0, {0, 0, 0, 0}}, NumberRow{"fifteenBits", 32767, {0x00, 0x00, 0x7F, 0xFF}},
                    NumberRow{"sixteenBits", 32768, {0x00, 0x00, 0x80, 0x00}},
                    NumberRow{"seventeenBits", 65536, {0x00, 0x01, 0x80, 0x00}},
                    NumberRow{"bitFifteenClear", 0x00020001, {0x00, 0x02, 0x80, 0x01}},
                    NumberRow{"minusOne", -1, {0xFF, 0xFF, 0xFF, 0xFF}},
                    NumberRow{"minus40000", -40000, {0xFF, 0xFF, 0xE3, 0xC0}},
                    NumberRow{"smallest", std::numeric_limits<std::int32_t>::min(), {0x80, 0x00, 0x80, 0x00}}),
    [](const auto& row) { return row.param.name; });

TEST(frmCommFrame, AStringIsFilledWithZeros) {
    LineRig rig;
    rig.bench.xmit_bfr.assign(301, 7);
    int index = 2;
    rig.comm.put_string(index, 6, "A\x80z");
    EXPECT_EQ(index, 8);
    EXPECT_EQ(first(rig, 9), (Bytes{7, 7, 'A', 0x80, 'z', 0, 0, 0, 7}));
}

TEST(frmCommFrame, AStringMayFillItsFieldAndNoMore) {
    LineRig rig;
    int index = 0;
    rig.comm.put_string(index, 3, "abc");
    EXPECT_EQ(index, 3);
    EXPECT_THROW(rig.comm.put_string(index, 3, "abcd"), RunTimeError);
}

TEST(frmCommFrame, TheBufferHas301Bytes) {
    LineRig rig;
    int index = 300;
    rig.comm.put_byte(index, 1);
    EXPECT_THROW(rig.comm.put_byte(index, 1), RunTimeError);
    index = -1;
    EXPECT_THROW(rig.comm.put_byte(index, 1), RunTimeError);
}

TEST(frmCommFrame, AnOffsetBeyondSixteenBitsIsAnOverflowBeforeSending) {
    LineRig rig;
    rig.opened();
    EXPECT_THROW(rig.comm.put_write_head(Section::Menus, 80, 65536), RunTimeError);
    EXPECT_TRUE(rig.line.writes.empty());
}

TEST(frmCommFrame, ASectionFrameAddsItsDataToTheSectionsSum) {
    LineRig rig;
    rig.opened().answerAllSealed({0, 0, 0});
    int index = rig.comm.put_write_head(Section::Charts, 3, 0);
    for (const int byte : {200, 100, 50}) rig.comm.put_byte(index, byte);
    rig.comm.send_section_frame(3);
    EXPECT_TRUE(rig.bench.xfer_ok);
    EXPECT_EQ(rig.bench.section_checksum, 350);
    EXPECT_EQ(rig.record.sends, (std::vector<Bytes>{{0x02, 0x0A, 0x03, 0x00, 0x00, 200, 100, 50, 0xFE, 0x92}}));
}

TEST(frmCommFrame, ASectionFrameIsNotSentAfterACancel) {
    LineRig rig;
    rig.opened();
    rig.bench.xfer_abort = true;
    rig.comm.put_write_head(Section::Charts, 3, 0);
    rig.comm.send_section_frame(3);
    EXPECT_TRUE(rig.line.writes.empty());
    EXPECT_EQ(rig.bench.section_checksum, 0);
}

TEST(frmCommFrame, ASectionsSumGoesOutWithItsLowSixteenBits) {
    LineRig rig;
    rig.bench.section_checksum = 0x0012ABCD;
    rig.comm.put_write_head(Section::Charts, 2, 144);
    rig.comm.put_section_checksum();
    EXPECT_EQ(first(rig, 7), (Bytes{0x02, 0x0A, 0x02, 0x00, 0x90, 0xAB, 0xCD}));
}

}  // namespace
}  // namespace qrv::test
