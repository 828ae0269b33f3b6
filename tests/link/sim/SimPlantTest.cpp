#include "link/sim/SimPlant.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <set>

namespace qrv::test {

using namespace std::chrono_literals;

TEST(SimPlant, SameSeedBlockAndTimeGiveTheSame) {
    for (const auto time : {0ms, 1500ms, 3600000ms}) {
        EXPECT_EQ(SimPlant(7).analogAt(12, time), SimPlant(7).analogAt(12, time));
        EXPECT_EQ(SimPlant(7).discreteAt(12, time), SimPlant(7).discreteAt(12, time));
    }
}

TEST(SimPlant, SeedsAndBlocksDiffer) {
    std::set<std::int16_t> bySeed;
    std::set<std::int16_t> byBlock;
    for (std::uint16_t i = 0; i < 50; ++i) {
        bySeed.insert(SimPlant(i).analogAt(3, 10s));
        byBlock.insert(SimPlant(1).analogAt(i, 10s));
    }
    EXPECT_GT(bySeed.size(), 40U);
    EXPECT_GT(byBlock.size(), 40U);
}

TEST(SimPlant, AnalogsDriftAndNeverLeap) {
    for (const std::uint16_t block : std::array<std::uint16_t, 4>{0, 5, 615, 704}) {
        int least = 10000;
        int most = 0;
        int before = SimPlant(3).analogAt(block, 0ms);
        for (auto time = 0ms; time < 20min; time += 500ms) {
            const int value = SimPlant(3).analogAt(block, time);
            // 10.00 between set points at a time constant of 15 s and more, 2.00 of swing in 20 s, 0.10 of tremble.
            EXPECT_LE(std::abs(value - before), 90) << "block " << block << " at " << time.count();
            before = value;
            least = std::min(least, value);
            most = std::max(most, value);
        }
        EXPECT_GE(least, 0);
        EXPECT_LE(most, 10000);
        EXPECT_GT(most - least, 50) << "block " << block << " stands still";
    }
}

TEST(SimPlant, DiscretesSwitchBothWaysAndNotTooOften) {
    for (const std::uint16_t block : std::array<std::uint16_t, 3>{1, 6, 630}) {
        int switches = 0;
        std::uint8_t before = SimPlant(3).discreteAt(block, 0ms);
        for (auto time = 0ms; time < 10min; time += 100ms) {
            const auto value = SimPlant(3).discreteAt(block, time);
            ASSERT_LE(value, 1);
            if (value != before) ++switches;
            before = value;
        }
        // A cycle lasts 8 to 60 s and holds two switches.
        EXPECT_GE(switches, 18) << "block " << block;
        EXPECT_LE(switches, 152) << "block " << block;
    }
}

}  // namespace qrv::test
