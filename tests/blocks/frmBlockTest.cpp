#include "blocks/frmBlock.h"

#include <gtest/gtest.h>

#include "BlockRig.h"

namespace qrv {
namespace {

/// The dialog up, asking for a SUM; blocks 20 and 599 are SUMs.
struct AskingRig : OpenBlockRig {
    AskingRig() {
        bench.FnOfBlock[20] = 10;
        bench.FnOfBlock[599] = 10;
        bench.WantedFunction = 10;
        bench.ChosenBlock = 0;
        host.show(dialog);
    }
    frmBlock dialog{bench};
};

TEST(frmBlock, ListsTheBlocksOfTheWantedFunction) {
    AskingRig rig;
    EXPECT_EQ(rig.dialog.caption, "Block Required");
    EXPECT_EQ(rig.dialog.Command1.caption, "Done");
    EXPECT_EQ(rig.dialog.Command2.caption, "Cancel");
    EXPECT_EQ(rig.dialog.Combo1.items, (std::vector<std::string>{"20", "599"}));
    rig.dialog.activate();
    EXPECT_EQ(rig.dialog.Combo1.items.size(), 2U) << "a second activation doubles nothing";
}

TEST(frmBlock, AChoiceGoesToTheBoxAndDoneTakesIt) {
    AskingRig rig;
    rig.dialog.Combo1.listIndex = 1;
    rig.dialog.Combo1_Click();
    EXPECT_EQ(rig.dialog.Text1.text, "599");
    rig.dialog.Command1_Click();
    EXPECT_EQ(rig.bench.ChosenBlock, 599);
    EXPECT_FALSE(rig.host.isVisible(rig.dialog));
}

TEST(frmBlock, CancelChangesNothing) {
    AskingRig rig;
    rig.dialog.Text1.text = "20";
    rig.dialog.Command2_Click();
    EXPECT_EQ(rig.bench.ChosenBlock, 0);
    EXPECT_FALSE(rig.host.isVisible(rig.dialog));
}

TEST(frmBlock, EachQuestionBeginsWithAnEmptyAnswer) {
    AskingRig rig;
    rig.dialog.Text1.text = "20";
    rig.dialog.Command1_Click();
    ASSERT_EQ(rig.bench.ChosenBlock, 20);
    rig.host.show(rig.dialog);
    EXPECT_EQ(rig.dialog.Text1.text, "");
    rig.dialog.Command2_Click();
    EXPECT_EQ(rig.bench.ChosenBlock, 20);
}

class NoBlockNumber : public testing::TestWithParam<const char*> {};

TEST_P(NoBlockNumber, IsToldAndCleared) {
    AskingRig rig;
    rig.dialog.Text1.text = GetParam();
    rig.boxes.expect(Notice{.text = "Invalid Block Number", .title = "Warning!", .icon = Icon::Warning});
    rig.dialog.Command1_Click();
    EXPECT_EQ(rig.dialog.Text1.text, "");
    EXPECT_EQ(rig.bench.ChosenBlock, 0);
    EXPECT_TRUE(rig.host.isVisible(rig.dialog));
}

INSTANTIATE_TEST_SUITE_P(Texts, NoBlockNumber, testing::Values("", "PUMP", "705", "-1", "704.6", "1e400"));

TEST(frmBlock, ABlockOfAnotherFunctionIsToldAndCleared) {
    AskingRig rig;
    rig.dialog.Text1.text = "21";
    rig.boxes.expect(Notice{.text = "Block is Wrong Type For This Screen", .title = "Warning!"});
    rig.dialog.Command1_Click();
    EXPECT_EQ(rig.dialog.Text1.text, "");
    EXPECT_EQ(rig.bench.ChosenBlock, 0);
}

}  // namespace
}  // namespace qrv
