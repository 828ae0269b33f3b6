#include "link/sim/SimMemory.h"

#include <gtest/gtest.h>

#include "link/sim/SimNoise.h"
#include "link/sim/SimRig.h"

namespace qrv::test {

TEST(SimMemory, ANewOneHoldsNopsAndZeros) {
    const SimMemory memory;
    EXPECT_EQ(memory.functionOf(0), 127);
    EXPECT_EQ(memory.functionOf(704), 127);
    EXPECT_EQ(memory.read(3, 0, 4), Bytes(4, 0));
    EXPECT_EQ(memory.read(9, 65534, 2), Bytes(2, 0));
}

TEST(SimMemory, TheBlockTableWrittenIsTheBlockTableRead) {
    SimMemory memory;
    const Bytes record{0, 12, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 2, 0};
    memory.write(1, 7040, record);
    EXPECT_EQ(memory.read(4, 7040, 10), record);
    EXPECT_EQ(memory.functionOf(704), 12);
    EXPECT_EQ(memory.kindOf(704), 2);
    EXPECT_EQ(memory.functionOf(703), 127);
}

TEST(SimMemory, AZeroWrittenOverAByteStays) {
    SimMemory memory;
    memory.write(3, 10, Bytes{1, 2, 3});
    memory.write(3, 11, Bytes{0, 0});
    EXPECT_EQ(memory.read(3, 9, 5), (Bytes{0, 1, 0, 0, 0}));
    SimMemory other;
    other.write(3, 10, Bytes{1});
    EXPECT_EQ(memory, other);
}

TEST(SimMemory, ComesBackFromItsBytes) {
    SimMemory memory;
    memory.write(9, 65535, Bytes{0x5A});
    memory.write(14, 0, Bytes(60, 0x31));
    const auto back = SimMemory::parsed(memory.serialised());
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(*back, memory);
}

TEST(SimMemory, EveryByteOfItsFileCounts) {
    const auto good = SimMemory().serialised();
    for (std::size_t i = 0; i < good.size(); i += 97) {
        auto bad = good;
        bad[i] ^= 0x10U;
        EXPECT_FALSE(SimMemory::parsed(bad).has_value()) << "byte " << i;
    }
    for (std::size_t length : {std::size_t{0}, std::size_t{8}, std::size_t{12}, good.size() - 1}) {
        EXPECT_FALSE(SimMemory::parsed(std::span(good).first(length)).has_value()) << length << " bytes";
    }
}

TEST(SimMemory, AnyBytesAreBorne) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SimNoise noise(seed);
        Bytes bytes{'Q', 'R', 'V', 'M', 'E', 'M', '1', '\n'};
        bytes.resize(bytes.size() + noise.next() % 64);
        for (std::size_t i = 8; i < bytes.size(); ++i) bytes[i] = noise.nextByte();
        EXPECT_FALSE(SimMemory::parsed(bytes).has_value()) << "seed " << seed;
    }
}

}  // namespace qrv::test
