#include "link/MGrid.h"

#include <gtest/gtest.h>

#include "LiveRig.h"

namespace qrv::test {
namespace {

TEST(MGrid, HasARowForEveryTenBlocks) {
    const MGridRig rig;
    EXPECT_EQ(rig.form.caption, "View All Block Outputs");
    EXPECT_EQ(rig.form.Grid2.rows(), 72);
    EXPECT_EQ(rig.form.Grid2.cols(), 11);
    EXPECT_EQ(rig.form.Grid2.colWidth(1), 850);
    EXPECT_EQ(rig.form.Grid2.colWidth(0), 300);
    EXPECT_EQ(rig.form.Grid2.rowHeight(0), 300);
    EXPECT_EQ(rig.form.Grid2.text(71, 0), "700");
    EXPECT_EQ(rig.form.Grid2.text(0, 10), "9");
}

struct ValueRow {
    const char* name;
    std::int16_t hundredths;
    const char* text;
};

class MGridValue : public testing::TestWithParam<ValueRow> {};

TEST_P(MGridValue, IsShownInHundredths) {
    MGridRig rig;
    rig.analog(17, GetParam().hundredths);
    rig.form.Command1_Click();
    EXPECT_EQ(rig.form.Grid2.text(2, 8), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Edges, MGridValue,
                         testing::Values(ValueRow{"lowest", -32768, "-327.68"}, ValueRow{"minusOne", -1, "-0.01"},
                                         ValueRow{"highest", 32767, "327.67"}, ValueRow{"zero", 0, "0.00"},
                                         ValueRow{"minusFive", -5, "-0.05"}, ValueRow{"whole", 10000, "100.00"}),
                         [](const auto& row) { return row.param.name; });

TEST(MGrid, SinglePollReadsEveryBlockButTheNops) {
    MGridRig rig;
    rig.analog(0, 1234);
    rig.discrete(599, true);
    rig.discrete(600, false);
    rig.analog(704, -5);
    rig.form.Command1_Click();
    EXPECT_EQ(rig.blocksRead(), (std::vector<int>{0, 599, 600, 704}));
    EXPECT_EQ(rig.form.Grid2.text(1, 1), "12.34");
    EXPECT_EQ(rig.form.Grid2.text(60, 10), "1");
    EXPECT_EQ(rig.form.Grid2.text(61, 1), "0");
    EXPECT_EQ(rig.form.Grid2.text(71, 5), "-0.05");
    EXPECT_EQ(rig.form.Grid2.text(1, 2), "");
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_TRUE(rig.form.Command1.enabled);
    EXPECT_TRUE(rig.form.Command2.enabled);
}

TEST(MGrid, FunctionThatTheCatalogueLacksIsNotRead) {
    MGridRig rig;
    rig.bench.FnOfBlock[3] = 999;
    rig.form.Command1_Click();
    EXPECT_TRUE(rig.blocksRead().empty());
    EXPECT_EQ(rig.form.Grid2.row(), 1);
    EXPECT_EQ(rig.form.Grid2.col(), 4);
}

TEST(MGrid, ContinuousPollReadsWhatIsOnTheWindow) {
    MGridRig rig;
    for (const int block : {49, 50, 179, 180}) rig.analog(static_cast<std::int16_t>(block), 100);
    rig.form.Grid2.setTopRow(6);
    rig.after(milliseconds(100), [&rig] { rig.form.Command3_Click(); });
    rig.form.Command2_Click();
    const auto read = rig.blocksRead();
    ASSERT_GT(read.size(), 3U);
    EXPECT_EQ(std::vector<int>(read.begin(), read.begin() + 3), (std::vector<int>{50, 179, 50}));
}

TEST(MGrid, PassAtTheLastRowsEndsAtTheLastBlock) {
    MGridRig rig;
    for (const int block : {699, 700, 704}) rig.analog(static_cast<std::int16_t>(block), 100);
    rig.form.Grid2.setTopRow(71);
    rig.after(milliseconds(100), [&rig] { rig.form.Command3_Click(); });
    rig.form.Command2_Click();
    const auto read = rig.blocksRead();
    ASSERT_GT(read.size(), 2U);
    EXPECT_EQ(std::vector<int>(read.begin(), read.begin() + 3), (std::vector<int>{700, 704, 700}));
    EXPECT_EQ(rig.form.Grid2.text(71, 1), "1.00");
}

TEST(MGrid, PollOfAnEmptyWindowCanBeStopped) {
    MGridRig rig;
    rig.after(milliseconds(500), [&rig] { rig.form.Command3_Click(); });
    rig.form.Command2_Click();
    EXPECT_TRUE(rig.blocksRead().empty());
    EXPECT_TRUE(rig.form.Command2.enabled);
}

TEST(MGrid, ButtonsAreOffWhileItPolls) {
    MGridRig rig;
    rig.analog(0, 100);
    rig.after(milliseconds(100), [&rig] {
        EXPECT_FALSE(rig.form.Command1.enabled);
        EXPECT_FALSE(rig.form.Command2.enabled);
        EXPECT_TRUE(rig.form.polling);
        const auto before = rig.port.openCount();
        rig.form.Command1_Click();
        EXPECT_EQ(rig.port.openCount(), before);
        rig.form.Command3_Click();
    });
    rig.form.Command2_Click();
    EXPECT_FALSE(rig.form.polling);
    EXPECT_FALSE(rig.port.isOpen());
}

TEST(MGrid, DeadLineLeavesTheValueAndMarksIt) {
    MGridRig rig;
    rig.analog(4, 1234);
    rig.dieAt(3);  // poll, one good reading, silence
    rig.after(milliseconds(5000), [&rig] { rig.form.Command3_Click(); });
    rig.form.Command2_Click();
    const GridCell& cell = rig.form.Grid2.cell(1, 5);
    EXPECT_EQ(cell.text, "12.34");
    EXPECT_TRUE(cell.back.has_value());
    EXPECT_TRUE(cell.toolTip.starts_with("No answer since 2026-")) << cell.toolTip;
    // The one reading under way ends with its ten sends, and none follows.
    EXPECT_EQ(rig.blocksRead().size(), 11U);
    EXPECT_GE(rig.clock.elapsed(), milliseconds(18000));
    EXPECT_FALSE(rig.port.isOpen());
}

TEST(MGrid, SilenceIsToldFromTheTimeOfTheQuestion) {
    MGridRig rig;
    rig.analog(4, 1234);
    rig.dieAt(2);
    rig.form.Command1_Click();
    ASSERT_GE(rig.clock.elapsed(), milliseconds(18000));
    const auto asked = rig.clock.wallTime() - rig.clock.elapsed() + rig.record.sentAt.at(1);
    EXPECT_EQ(rig.form.Grid2.cell(1, 5).toolTip, silenceText(asked));
}

TEST(MGrid, MarkGoesWithTheNextAnswer) {
    MGridRig rig;
    rig.analog(4, 1234);
    rig.dieAt(2);
    rig.form.Command1_Click();
    EXPECT_EQ(rig.form.Grid2.text(1, 5), "");
    EXPECT_TRUE(rig.form.Grid2.cell(1, 5).back.has_value());
    rig.controller.stopFaults();
    rig.form.Command1_Click();
    GridCell answered;
    answered.text = "12.34";
    EXPECT_EQ(rig.form.Grid2.cell(1, 5), answered);
}

TEST(MGrid, WithoutMarksADeadLineChangesNothing) {
    MGridRig rig(StaleMarks::Absent);
    rig.analog(4, 1234);
    rig.dieAt(2);
    rig.form.Command1_Click();
    EXPECT_EQ(rig.form.Grid2.cell(1, 5), GridCell{});
    EXPECT_FALSE(rig.form.lblRate.visible);
}

TEST(MGrid, RateIsShownAfterTheFirstSecondAndGoneWithThePoll) {
    MGridRig rig;
    rig.analog(4, 1234);
    rig.after(milliseconds(3000), [&rig] {
        rig.form.tmrShow_Timer();
        EXPECT_TRUE(rig.form.lblRate.caption.ends_with(" readings/s")) << rig.form.lblRate.caption;
        rig.form.Command3_Click();
    });
    rig.form.Command2_Click();
    EXPECT_EQ(rig.form.lblRate.caption, "");
}

TEST(MGrid, ADeadLineHasNoRate) {
    MGridRig rig;
    rig.analog(4, 1234);
    rig.dieAt(200);
    rig.after(milliseconds(30000), [&rig] {
        rig.form.tmrShow_Timer();
        EXPECT_EQ(rig.form.lblRate.caption, "");
        rig.form.Command3_Click();
    });
    rig.form.Command2_Click();
}

TEST(MGrid, CloseBoxDuringASinglePollEndsIt) {
    MGridRig rig;
    for (std::int16_t block = 0; block < 500; ++block) rig.analog(block, 100);
    rig.after(milliseconds(100), [&rig] { rig.host.close(rig.form); });
    rig.form.Command1_Click();
    EXPECT_FALSE(rig.host.isLoaded(rig.form));
    EXPECT_LT(rig.blocksRead().size(), 400U);
    EXPECT_EQ(rig.timesMainShown, 1);
}

}  // namespace
}  // namespace qrv::test
