#include "link/sim/SimFrameReader.h"

#include <gtest/gtest.h>

#include "link/sim/SimRig.h"

namespace qrv::test {

namespace {

class Reading {
 public:
    void feed(const Bytes& bytes) {
        for (const auto byte : bytes) reader.take(byte, now, found);
    }
    void pass(std::chrono::milliseconds time) { now += time; }

    SimFrameReader reader;
    std::vector<SimReceived> found;
    Clock::TimePoint now{std::chrono::hours{1}};
};

struct RequestRow {
    const char* name;
    Bytes bytes;
};

// By hand: every command once, with the checksum worked out on paper.
const std::vector<RequestRow> kGoldenRequests{
    {"poll", {0x01, 0xFF, 0xFE}},
    {"readOfTheVersion", {0x04, 0x00, 0x18, 0x00, 0x00, 0xFF, 0xE3}},
    {"readOfTheBlockTable", {0x04, 0x04, 0x96, 0x00, 0x00, 0xFF, 0x61}},
    {"writeOfTheStringsEnd", {0x02, 0x03, 0x02, 0x58, 0x00, 0xFF, 0xFF, 0xFD, 0xA2}},
    {"writeOfNothing", {0x02, 0x0B, 0x00, 0x00, 0x04, 0xFF, 0xEE}},
    {"commit", {0x08, 0xFF, 0xF7}},
    {"activateMenus", {0x1F, 0xFF, 0xE0}},
    {"readOutput", {0x20, 0x02, 0xBC, 0xFF, 0x21}},
    {"pressKey", {0x21, 0x0D, 0xFF, 0xD1}},
    {"activateCharts", {0x25, 0xFF, 0xDA}},
    {"activateUnits", {0x27, 0xFF, 0xD8}},
    {"activateModbus", {0x28, 0xFF, 0xD7}},
    {"announce", {0x30, 0xFF, 0xCF}},
};

class SimFrameReaderGolden : public testing::TestWithParam<RequestRow> {};

}  // namespace

TEST_P(SimFrameReaderGolden, IsWholeAtItsLastByteAndNotBefore) {
    Reading reading;
    const auto& bytes = GetParam().bytes;
    reading.feed(Bytes(bytes.begin(), bytes.end() - 1));
    EXPECT_TRUE(reading.found.empty());
    reading.feed({bytes.back()});
    ASSERT_EQ(reading.found.size(), 1U);
    EXPECT_EQ(reading.found[0].finding, SimFinding::Frame);
    EXPECT_EQ(reading.found[0].bytes, bytes);
}

TEST_P(SimFrameReaderGolden, IsBadWithAnyBitOfItsChecksumFlipped) {
    for (unsigned bit = 0; bit < 16; ++bit) {
        Reading reading;
        auto bytes = GetParam().bytes;
        bytes[bytes.size() - 1 - bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8);
        reading.feed(bytes);
        ASSERT_EQ(reading.found.size(), 1U) << "bit " << bit;
        EXPECT_EQ(reading.found[0].finding, SimFinding::BadChecksum) << "bit " << bit;
    }
}

INSTANTIATE_TEST_SUITE_P(Requests, SimFrameReaderGolden, testing::ValuesIn(kGoldenRequests),
                         [](const auto& row) { return row.param.name; });

TEST(SimFrameReader, TakesTheLongestRequest) {
    Reading reading;
    reading.feed(writeFrame(3, 22528, Bytes(255, 0x41)));
    ASSERT_EQ(reading.found.size(), 1U);
    EXPECT_EQ(reading.found[0].finding, SimFinding::Frame);
    EXPECT_EQ(reading.found[0].bytes.size(), SimFrameReader::kLongestRequest);
}

TEST(SimFrameReader, SumAbove65535KeepsItsLow16Bits) {
    // 255 bytes of FF and a head of 02 03 FF FF FF: 65025 + 770 = 65795, that is 10103 in hexadecimal.
    Bytes frame{0x02, 0x03, 0xFF, 0xFF, 0xFF};
    frame.insert(frame.end(), 255, 0xFF);
    EXPECT_EQ(simChecksumOf(frame), 0xFEFC);
}

TEST(SimFrameReader, ZerosWhereARequestMightBeginAreFiller) {
    Reading reading;
    reading.feed(Bytes(1025, 0));
    reading.feed(kPoll);
    ASSERT_EQ(reading.found.size(), 1U);
    EXPECT_EQ(reading.found[0].finding, SimFinding::Frame);
    EXPECT_EQ(reading.reader.fillerCount(), 1025U);
}

TEST(SimFrameReader, FillerEndsHalfARequest) {
    Reading reading;
    reading.feed({0x02, 0x03, 0xFF, 0x58});
    reading.feed(Bytes(1025, 0));
    reading.feed(kPoll);
    ASSERT_EQ(reading.found.size(), 2U);
    EXPECT_EQ(reading.found[0].finding, SimFinding::BadChecksum);
    EXPECT_EQ(reading.found[1].finding, SimFinding::Frame);
}

TEST(SimFrameReader, DropsAllBehindAnUnknownCommandUntilFillerComes) {
    Reading reading;
    reading.feed({0x77, 0x01, 0xFF, 0xFE});
    ASSERT_EQ(reading.found.size(), 1U);
    EXPECT_EQ(reading.found[0].finding, SimFinding::UnknownCommand);
    reading.feed(Bytes(1025, 0));
    reading.feed(kPoll);
    ASSERT_EQ(reading.found.size(), 2U);
    EXPECT_EQ(reading.found[1].finding, SimFinding::Frame);
}

TEST(SimFrameReader, APauseEndsHalfARequest) {
    Reading reading;
    reading.feed({0x04, 0x00, 0x18});
    reading.pass(std::chrono::milliseconds{501});
    reading.feed(kPoll);
    ASSERT_EQ(reading.found.size(), 2U);
    EXPECT_EQ(reading.found[0].finding, SimFinding::Torn);
    EXPECT_EQ(reading.found[0].bytes, (Bytes{0x04, 0x00, 0x18}));
    EXPECT_EQ(reading.found[1].finding, SimFinding::Frame);
}

TEST(SimFrameReader, BytesHalfASecondApartAreStillOneRequest) {
    Reading reading;
    for (const auto byte : kPoll) {
        reading.feed({byte});
        reading.pass(std::chrono::milliseconds{500});
    }
    ASSERT_EQ(reading.found.size(), 1U);
    EXPECT_EQ(reading.found[0].finding, SimFinding::Frame);
}

TEST(SimFrameReader, TwoRequestsInOneWriteAreTwo) {
    Reading reading;
    reading.feed({0x01, 0xFF, 0xFE, 0x08, 0xFF, 0xF7});
    ASSERT_EQ(reading.found.size(), 2U);
    EXPECT_EQ(reading.found[1].bytes, (Bytes{0x08, 0xFF, 0xF7}));
}

TEST(SimFrameReader, AnyBytesAreBorneAndAPauseWithAPollAlwaysFindsBack) {
    for (std::uint64_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        SimNoise noise(seed);
        Reading reading;
        Bytes junk(1 + noise.next() % 600);
        for (auto& byte : junk) byte = noise.nextByte();
        reading.feed(junk);
        reading.pass(std::chrono::milliseconds{600});
        reading.feed(kPoll);
        ASSERT_FALSE(reading.found.empty());
        EXPECT_EQ(reading.found.back().finding, SimFinding::Frame);
        EXPECT_EQ(reading.found.back().bytes, kPoll);
    }
}

}  // namespace qrv::test
