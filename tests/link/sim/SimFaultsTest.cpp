#include "link/sim/SimFaults.h"

#include <gtest/gtest.h>

#include "link/sim/SimRig.h"

namespace qrv::test {

using namespace std::chrono_literals;

namespace {

const Bytes kReadVersion{0x04, 0x00, 0x18, 0x00, 0x00, 0xFF, 0xE3};
/// A string record of section 3, and where it lands.
const Bytes kWriteString = writeFrame(3, 22528, Bytes(20, 0x41));

struct Struck {
    explicit Struck(std::string_view fault) { rig.controller.play(SimFaultPlan::once(fault)); }
    [[nodiscard]] bool wasWritten() const { return rig.controller.working().read(3, 22528, 1).front() == 0x41; }
    SimRig rig;
};

class SimFaultsRow : public testing::TestWithParam<SimFault> {};

}  // namespace

TEST_P(SimFaultsRow, NeverLeavesAPollAnsweredAsItShouldBe) {
    Struck struck(GetParam().name);
    const auto answer = struck.rig.send(kPoll);
    EXPECT_FALSE(answer.size() == 5 && hasGoodSum(answer) && answer[0] == 16);
}

TEST_P(SimFaultsRow, ObeysAWriteIfTheTableSaysSo) {
    Struck struck(GetParam().name);
    (void)struck.rig.send(kWriteString);
    EXPECT_EQ(struck.wasWritten(), GetParam().obeys);
}

TEST_P(SimFaultsRow, PlayedOnceItIsGoneForTheNextRequestUnlessTheLineIsDead) {
    Struck struck(GetParam().name);
    (void)struck.rig.send(kPoll);
    struck.rig.pass(3s);
    (void)struck.rig.controller.take(struck.rig.now);
    const auto answer = struck.rig.send(kPoll);
    const bool isDead = GetParam().name == "cut-off" || GetParam().name == "hang-up";
    EXPECT_EQ(answer.size() == 5 && hasGoodSum(answer) && answer[0] == 16, !isDead);
    struck.rig.controller.restart();
    EXPECT_EQ(struck.rig.send(kPoll).size(), 5U);
}

INSTANTIATE_TEST_SUITE_P(Table, SimFaultsRow, testing::ValuesIn(kFaults), [](const auto& row) {
    std::string name(row.param.name);
    std::erase(name, '-');
    return name;
});

TEST(SimFaults, SilenceAndLostAnswerSayNothing) {
    EXPECT_TRUE(Struck("silence").rig.send(kReadVersion).empty());
    EXPECT_TRUE(Struck("lost-answer").rig.send(kReadVersion).empty());
}

TEST(SimFaults, LateComesAtItsTimeAndWhole) {
    SimRig rig({.lateBy = 1850ms});
    rig.controller.play(SimFaultPlan::once("late"));
    EXPECT_TRUE(rig.send(kReadVersion).empty());
    EXPECT_EQ(rig.controller.nextArrival(), rig.now + 1850ms);
    rig.pass(1849ms);
    EXPECT_TRUE(rig.controller.take(rig.now).empty());
    rig.pass(1ms);
    EXPECT_TRUE(hasGoodSum(rig.controller.take(rig.now)));
}

TEST(SimFaults, ShortLacksItsLastByte) { EXPECT_EQ(Struck("short").rig.send(kReadVersion).size(), 30U); }

TEST(SimFaults, SurplusHasAGoodAnswerAndOneByteMore) {
    auto answer = Struck("surplus").rig.send(kReadVersion);
    ASSERT_EQ(answer.size(), 32U);
    answer.pop_back();
    EXPECT_TRUE(hasGoodSum(answer));
}

TEST(SimFaults, BadChecksumIsWrongInItsLastBit) {
    auto answer = Struck("bad-checksum").rig.send(kReadVersion);
    ASSERT_EQ(answer.size(), 31U);
    EXPECT_FALSE(hasGoodSum(answer));
    answer.back() ^= 1U;
    EXPECT_TRUE(hasGoodSum(answer));
}

TEST(SimFaults, WrongStatusIs17WithAGoodChecksum) {
    const auto answer = Struck("wrong-status").rig.send(kPoll);
    ASSERT_EQ(answer.size(), 5U);
    EXPECT_EQ(answer[0], 17);
    EXPECT_TRUE(hasGoodSum(answer));
}

TEST(SimFaults, CutOffGivesHalfAnAnswerAndThenNothing) {
    Struck struck("cut-off");
    EXPECT_EQ(struck.rig.send(kReadVersion).size(), 15U);
    EXPECT_TRUE(struck.rig.send(kPoll).empty());
}

TEST(SimFaults, StalePutsTheOlderAnswerInFront) {
    SimRig rig;
    rig.controller.play(SimFaultPlan::at("stale", 2));
    const auto older = rig.send(kReadVersion);
    const auto answer = rig.send(kPoll);
    ASSERT_EQ(answer.size(), 36U);
    EXPECT_EQ(Bytes(answer.begin(), answer.begin() + 31), older);
    EXPECT_TRUE(hasGoodSum(Bytes(answer.begin() + 31, answer.end())));
}

TEST(SimFaults, GarbageHasTheRightLengthAndAWrongSum) {
    const auto answer = Struck("garbage").rig.send(kReadVersion);
    EXPECT_EQ(answer.size(), 31U);
    EXPECT_FALSE(hasGoodSum(answer));
}

TEST(SimFaults, HangUpTakesTheLineAway) {
    Struck struck("hang-up");
    EXPECT_TRUE(struck.rig.send(kPoll).empty());
    EXPECT_TRUE(struck.rig.controller.hasHungUp());
}

TEST(SimFaultPlan, ReadsItsTexts) {
    const auto isPlan = [](std::string_view text, std::uint64_t first, std::uint64_t last, unsigned permille) {
        const auto plan = SimFaultPlan::parsed(text);
        return plan && plan->first == first && plan->last == last && plan->permille == permille;
    };
    EXPECT_TRUE(isPlan("silence", 1, SimFaultPlan::kForEver, 1000));
    EXPECT_TRUE(isPlan("late:once", 1, 1, 1000));
    EXPECT_TRUE(isPlan("short:47", 47, 47, 1000));
    EXPECT_TRUE(isPlan("hang-up:3+", 3, SimFaultPlan::kForEver, 1000));
    EXPECT_TRUE(isPlan("bad-checksum:1%", 1, SimFaultPlan::kForEver, 10));
    for (const auto* text : {"", "noise", "silence:", "silence:0", "silence:+", "silence:-1", "silence:101%",
                             "silence:twice", "silence:1%%"}) {
        EXPECT_FALSE(SimFaultPlan::parsed(text).has_value()) << text;
    }
}

TEST(SimFaultPlan, StrikesWhereItIsMeantTo) {
    const auto missing = [](const SimFaultPlan& plan) {
        SimRig rig;
        rig.controller.play(plan);
        std::string pattern;
        for (int i = 0; i < 6; ++i) pattern += rig.send(kPoll).empty() ? 'x' : '.';
        return pattern;
    };
    EXPECT_EQ(missing(SimFaultPlan::always("silence")), "xxxxxx");
    EXPECT_EQ(missing(SimFaultPlan::once("silence")), "x.....");
    EXPECT_EQ(missing(SimFaultPlan::at("silence", 4)), "...x..");
    EXPECT_EQ(missing(SimFaultPlan::from("silence", 4)), "...xxx");
}

TEST(SimFaultPlan, AShareOfAllIsAboutThatShareAndRepeatable) {
    const auto struckOf1000 = [](std::uint64_t seed) {
        SimRig rig({.seed = seed});
        rig.controller.play(*SimFaultPlan::parsed("silence:10%"));
        int struck = 0;
        for (int i = 0; i < 1000; ++i) struck += rig.send(kPoll).empty() ? 1 : 0;
        return struck;
    };
    EXPECT_EQ(struckOf1000(5), struckOf1000(5));
    EXPECT_GT(struckOf1000(5), 50);
    EXPECT_LT(struckOf1000(5), 150);
}

}  // namespace qrv::test
