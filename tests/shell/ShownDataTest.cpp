// The data view and the file behind it: what stands there when a board or the whole file has changed meanwhile.
#include <gtest/gtest.h>

#include "EditorRig.h"

namespace qrv {
namespace {

constexpr const char* kAnalogBoard = "ANALOG INPUT      610014";
constexpr const char* kDiscreteBoard = "DISCRETE INPUT   610012";
constexpr int kFirstOfSlot1 = 615;

class ShownDataTest : public testing::Test {
 protected:
    void SetUp() override {
        run.startWithNew(a);
        run.leaveGeneral();
    }
    /// Goes to the boards and back. @param old  what the user is asked to give up, or ""
    void putBoard(const std::string& old, const std::string& board) {
        run.form3.choose("mnuEditComments");
        if (!old.empty()) {
            machine.boxes.expect({.text = "Replace " + old + " with " + board, .buttons = Buttons::YesNo}, Answer::Yes);
        }
        EXPECT_TRUE(run.program.general.fg.edit(1, 1, board));
        run.leaveGeneral();
    }
    void save() { run.form3.choose("mnuFileSave"); }
    void throwAwayAndKeepTheFile() {
        run.expectSaveQuestion(a, Answer::No);
        machine.dialogs.answer("");
        run.form3.choose("mnuFileOpen");
    }
    void expectNothingShown() {
        EXPECT_EQ(panel.Label5.caption, "");
        EXPECT_EQ(panel.Label4.caption, "");
        EXPECT_FALSE(panel.txtCmt.visible);
        for (Grid* grid : {&panel.fg2, &panel.fg3}) {
            EXPECT_EQ(grid->text(1, 2), "");
            grid->enterCell(1, 1);
            EXPECT_FALSE(grid->editable());
        }
    }

    Machine machine;
    std::string a = machine.path("a.qrv");
    EditorRun run{machine};
    BlockPanel& panel = run.form3.blocks;
};

TEST_F(ShownDataTest, ABlockGoesWithItsBoard) {
    putBoard("", kAnalogBoard);
    run.clickBlock(kFirstOfSlot1);
    ASSERT_EQ(panel.Label5.caption, "BLOCK 615 - AIN");
    ASSERT_NE(panel.fg3.text(1, 2), "");
    putBoard(kAnalogBoard, "NONE");
    expectNothingShown();
}

TEST_F(ShownDataTest, ABlockGoesWhereAnotherBoardComes) {
    putBoard("", kDiscreteBoard);
    run.clickBlock(kFirstOfSlot1);
    ASSERT_EQ(panel.Label5.caption, "BLOCK 615 - DIN");
    putBoard(kDiscreteBoard, kAnalogBoard);
    expectNothingShown();
    run.clickBlock(kFirstOfSlot1);
    EXPECT_EQ(panel.Label5.caption, "BLOCK 615 - AIN");
}

TEST_F(ShownDataTest, ValuesThatWereThrownAwayAreSeenNoMore) {
    run.place(10, "ADD");
    run.form3.choose("mnuEditBlk");
    ASSERT_TRUE(panel.fg3.edit(1, 1, "1.5"));
    const std::string kept = panel.fg3.text(1, 1);
    save();
    ASSERT_TRUE(panel.fg3.edit(1, 1, "7.5"));
    ASSERT_NE(panel.fg3.text(1, 1), kept);
    throwAwayAndKeepTheFile();
    EXPECT_EQ(panel.Label5.caption, "BLOCK 10 - ADD");
    EXPECT_EQ(panel.fg3.text(1, 1), kept);
    // What is typed now goes to the block on show.
    EXPECT_TRUE(panel.fg3.edit(1, 1, "2.5"));
    EXPECT_EQ(run.bench.CurBlock, 10);
}

TEST_F(ShownDataTest, BoardsThatWereThrownAwayAreSeenNoMore) {
    constexpr int kFirstRow = 1;
    constexpr int kColumnOfSlot1 = 2;
    putBoard("", kAnalogBoard);
    ASSERT_EQ(panel.Ig.text(kFirstRow, kColumnOfSlot1), "AI");
    throwAwayAndKeepTheFile();
    EXPECT_EQ(panel.Ig.text(kFirstRow, kColumnOfSlot1), ".");
}

TEST_F(ShownDataTest, ABlockThatWasThrownAwayIsSeenNoMore) {
    run.place(10, "ADD");
    run.form3.choose("mnuEditBlk");
    ASSERT_EQ(panel.Label5.caption, "BLOCK 10 - ADD");
    throwAwayAndKeepTheFile();
    expectNothingShown();
}

TEST_F(ShownDataTest, BoardsThatWereThrownAwayAreBackOnTheMap) {
    putBoard("", kAnalogBoard);
    save();
    putBoard(kAnalogBoard, "NONE");
    ASSERT_EQ(run.cellOf(kFirstOfSlot1), ".");
    throwAwayAndKeepTheFile();
    EXPECT_EQ(run.cellOf(kFirstOfSlot1), "AI");
    run.clickBlock(kFirstOfSlot1);
    EXPECT_EQ(panel.Label5.caption, "BLOCK 615 - AIN");
}

TEST_F(ShownDataTest, AColourOfAnAlarmThatWasThrownAwayIsSeenNoMore) {
    db1& db = run.bench.db;
    db.AlarmAddNew();
    db.AlarmBlockNumber(10);
    db.AlarmDescription("HIGH PRESSURE");
    db.AlarmIsAlarm(true);
    db.AlarmUpdate();
    run.form3.choose("mnuEditComments");
    run.leaveGeneral();
    ASSERT_TRUE(panel.Grid1.cell(2, 1).back.has_value());
    throwAwayAndKeepTheFile();
    EXPECT_FALSE(panel.Grid1.cell(2, 1).back.has_value());
    EXPECT_FALSE(panel.Grid1.cell(2, 1).bold);
}

TEST_F(ShownDataTest, ABlockOfTheFormerFileIsSeenNoMoreInANewOne) {
    run.place(10, "PID");
    run.form3.choose("mnuEditBlk");
    ASSERT_EQ(panel.Label5.caption, "BLOCK 10 - PID");
    run.expectSaveQuestion(a, Answer::Yes);
    machine.dialogs.answer(machine.path("b.qrv"));
    run.form3.choose("mnuFileNew");
    run.leaveGeneral();
    expectNothingShown();
}

TEST_F(ShownDataTest, SavingLeavesTheSelectedRows) {
    run.place(10, "PID");
    run.form3.choose("mnuEditBlk");
    panel.fg2.enterCell(2, 1);
    panel.fg3.enterCell(3, 1);
    save();
    EXPECT_EQ(panel.fg2.row(), 2);
    EXPECT_EQ(panel.fg3.row(), 3);
    EXPECT_TRUE(panel.fg3.editable());
    EXPECT_EQ(run.cellOf(10), "PID");
    EXPECT_EQ(panel.Label5.caption, "BLOCK 10 - PID");
}

TEST_F(ShownDataTest, SavingTakesTheSelectionOfTheMapToTheBlockFilledLast) {
    run.place(4, "ADD");
    run.form3.choose("mnuEditBlk");
    ASSERT_EQ(panel.Label5.caption, "BLOCK 4 - ADD");
    ASSERT_TRUE(panel.isCellChosen());
    save();
    EXPECT_EQ(panel.Grid1.row(), 60);
    EXPECT_EQ(panel.Grid1.col(), 10);
    EXPECT_FALSE(panel.isCellChosen());
    // The block on show stays on show; what begins at the selection begins at block 599.
    EXPECT_EQ(panel.Label5.caption, "BLOCK 4 - ADD");
    run.form3.choose("mnuEditBlk");
    EXPECT_EQ(run.bench.SeekBlock, 599);
    panel.Grid1.keyDown(Key::F6);
    EXPECT_EQ(run.bench.SeekBlock, 0);
    EXPECT_TRUE(panel.isCellChosen());
}

TEST_F(ShownDataTest, EnterChoosesTheBlockThatTheSelectionStandsOn) {
    save();
    ASSERT_FALSE(panel.isCellChosen());
    panel.Grid1.keyDown(Key::Enter);
    EXPECT_TRUE(panel.isCellChosen());
    EXPECT_EQ(run.bench.SeekBlock, 599);
}

TEST_F(ShownDataTest, TheRefreshBehindADownloadLeavesTheSelectionOnTheMap) {
    run.place(4, "ADD");
    panel.refillGrid1();
    EXPECT_EQ(panel.Grid1.row(), 1);
    EXPECT_EQ(panel.Grid1.col(), 5);
    EXPECT_TRUE(panel.isCellChosen());
    EXPECT_EQ(run.cellOf(4), "ADD");
}

TEST_F(ShownDataTest, TheAssignmentViewIsLeftAsItIs) {
    run.place(10, "ADD");
    run.form3.choose("mnuEditBlk");
    run.form3.choose("mnuEditCfg");
    save();
    EXPECT_FALSE(panel.txtCmt.visible);
    EXPECT_FALSE(panel.Label4.visible);
    EXPECT_FALSE(panel.isDataView());
}

}  // namespace
}  // namespace qrv
