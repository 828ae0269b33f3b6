#include "blocks/BlockPanel.h"

#include <gtest/gtest.h>

#include "BlockRig.h"

namespace qrv {
namespace {

using Texts = std::vector<std::string>;

bool isEmptyFromRow1(const Grid& grid) {
    for (int row = 1; row < grid.rows(); ++row) {
        for (int col = 0; col < grid.cols(); ++col) {
            if (!grid.text(row, col).empty()) return false;
        }
    }
    return true;
}

TEST(BlockPanel, CaptionsAreTheTold) {
    BlockRig rig;
    const BlockPanel& panel = rig.panel;
    EXPECT_EQ(panel.Label1.caption, "INPUTS");
    EXPECT_EQ(panel.Label2.caption, "PARAMETERS");
    EXPECT_EQ(panel.Label3.caption, "I / O BLOCKS 600 - 704");
    EXPECT_EQ(panel.Label6.caption,
              "    I/O BLOCK MAP\n"
              "Slot 0:  CPU   600 - 614\n"
              "Slot 1:            615 - 629\n"
              "Slot 2:            630 - 644\n"
              "Slot 3:            645 - 659\n"
              "Slot 4:            660 - 674\n"
              "Slot 5:            675 - 689\n"
              "Slot 6:            690 - 704");
    EXPECT_EQ(panel.Label7.caption, "I / O Boards");
    EXPECT_EQ(panel.Label8.caption, "  ALARM");
    EXPECT_EQ(panel.Label9.caption, "  EVENT");
    EXPECT_EQ(panel.Label10.caption, "   PAGE");
    EXPECT_EQ(panel.cmdViewAlarmInfo.caption, "View Alarm/Event Settings");
    EXPECT_TRUE(panel.txtCmt.locked);
    EXPECT_TRUE(panel.isDataView()) << "the window starts in the data view";
    EXPECT_FALSE(panel.List1.visible);
    EXPECT_FALSE(panel.List2.visible);
}

TEST(BlockPanel, AClickShowsTheBlock) {
    OpenBlockRig rig;
    rig.place(20, "SUM");
    rig.clickBlock(0);
    rig.clickBlock(20);
    EXPECT_EQ(rig.panel.Label5.caption, "BLOCK 20 - SUM");
    EXPECT_EQ(rig.bench.SeekBlock, 20);
    EXPECT_EQ(rig.bench.CurBlock, 20);
    EXPECT_EQ(rig.bench.CurFn, 10);
    EXPECT_EQ(rig.bench.CurInputs, 3);
    EXPECT_TRUE(rig.panel.txtCmt.visible);
    EXPECT_EQ(rig.panel.Label4.caption, "COMMENTS:");
    EXPECT_EQ(rig.panel.fg2.text(1, 1), "0");
    EXPECT_EQ(rig.panel.fg3.text(1, 1), "1.000");
}

TEST(BlockPanel, AClickOnANopEmptiesTheGridsAndHidesTheComment) {
    OpenBlockRig rig;
    rig.place(20, "SUM");
    rig.clickBlock(20);
    rig.panel.fg2.enterCell(3, 2);
    rig.clickBlock(21);
    EXPECT_TRUE(isEmptyFromRow1(rig.panel.fg2));
    EXPECT_TRUE(isEmptyFromRow1(rig.panel.fg3));
    EXPECT_EQ(rig.panel.fg2.row(), 1);
    EXPECT_FALSE(rig.panel.txtCmt.visible);
    EXPECT_EQ(rig.panel.Label4.caption, "");
    EXPECT_EQ(rig.bench.SeekBlock, 21);
    EXPECT_EQ(rig.bench.CurBlock, 20) << "nothing else is current";
    EXPECT_EQ(rig.panel.Label5.caption, "BLOCK 20 - SUM");
}

TEST(BlockPanel, ALongBlockLeavesNothingBehindInAShortOne) {
    OpenBlockRig rig;
    rig.place(20, "WIDE");
    rig.place(21, "SUM");
    rig.clickBlock(20);
    rig.clickBlock(21);
    EXPECT_EQ(rowOf(rig.panel.fg2, 4), Texts(6));
    EXPECT_EQ(rowOf(rig.panel.fg2, 74), Texts(6));
}

TEST(BlockPanel, ANameThatTheCatalogueLacksIsTold) {
    OpenBlockRig rig;
    rig.clickBlock(0);
    rig.panel.Grid1.setText(2, 1, "GONE");
    rig.boxes.expect(Notice{.text = "Database Error, Record Not Found", .title = "Warning!"});
    rig.clickBlock(10);
    EXPECT_EQ(rig.bench.CurBlock, 0);
    EXPECT_EQ(rig.panel.Label5.caption, "BLOCK 0 - ZERO");
}

TEST(BlockPanel, AFunctionOfAnIoBlockThatTheCatalogueLacksIsTold) {
    OpenBlockRig rig;
    rig.bench.db.BlockSeek(602);
    rig.bench.db.BlockEdit();
    rig.bench.db.BlockFn(200);
    rig.bench.db.BlockUpdate();
    rig.boxes.expect(Notice{.text = "Database Error, Record Not Found", .title = "Warning!"});
    rig.clickBlock(602);
    EXPECT_EQ(rig.panel.Label5.caption, "");
}

TEST(BlockPanel, AnIoBlockIsShownByItsFunction) {
    OpenBlockRig rig;
    rig.clickBlock(602);
    EXPECT_EQ(rig.panel.Label5.caption, "BLOCK 602 - ROUT");
    EXPECT_EQ(rowOf(rig.panel.fg2, 1), (Texts{"1", "2", "MAIN", "STATE", "OFF", "D"}));
    EXPECT_EQ(rowOf(rig.panel.fg3, 1), (Texts{"1", "1", "MODE"}));
    EXPECT_EQ(rig.bench.CurFn, 125);
}

TEST(BlockPanel, AnIoCellWithoutABoardsBlockIsNotClickable) {
    OpenBlockRig rig;
    rig.clickBlock(602);
    rig.clickBlock(704);
    EXPECT_EQ(rig.bench.SeekBlock, 602);
    EXPECT_EQ(rig.panel.Label5.caption, "BLOCK 602 - ROUT");
}

TEST(BlockPanel, AnIoBlockThatIsANopInTheFileIsTold) {
    OpenBlockRig rig;
    rig.clickBlock(602);
    rig.panel.Ig.setText(1, 2, "DI");
    rig.boxes.expect(Notice{.text = "Database Shows A NOP, Not DI.", .title = "Warning!"});
    rig.clickBlock(615);
    EXPECT_EQ(rig.bench.CurBlock, 602);
    EXPECT_FALSE(rig.panel.txtCmt.visible);
    EXPECT_TRUE(isEmptyFromRow1(rig.panel.fg2));
    EXPECT_FALSE(rig.panel.fg3.edit(1, 1, "1")) << "nothing of another block can be typed over";
}

TEST(BlockPanel, WithoutAFileClicksDoNothing) {
    BlockRig rig;
    rig.panel.fillIg();
    rig.clickBlock(0);
    rig.clickBlock(600);
    rig.panel.mnuEditCfg();
    rig.clickBlock(0);
    rig.panel.txtCmt_DblClick();
    EXPECT_EQ(rig.panel.Label5.caption, "");
    EXPECT_EQ(rig.bench.SeekBlock, 0);
}

TEST(BlockPanel, AClickOnAHeadingDoesNothing) {
    OpenBlockRig rig;
    rig.clickBlock(1);
    rig.panel.Grid1.click(0, 3);
    rig.panel.Grid1.click(3, 0);
    rig.panel.Ig.click(0, 1);
    EXPECT_EQ(rig.bench.SeekBlock, 1);
}

TEST(BlockPanel, TheSecondCommentWinsUnlessItIsEmpty) {
    OpenBlockRig rig;
    rig.setComments(1, "first\r\nline", "");
    rig.clickBlock(1);
    EXPECT_EQ(rig.panel.txtCmt.text, "first\nline");
    rig.setComments(1, "first", "  ");
    rig.clickBlock(1);
    EXPECT_EQ(rig.panel.txtCmt.text, "first");
    rig.setComments(1, "first", "second");
    rig.clickBlock(1);
    EXPECT_EQ(rig.panel.txtCmt.text, "second");
    rig.clickBlock(0);
    EXPECT_EQ(rig.panel.txtCmt.text, "");
}

TEST(BlockPanel, TheViewsShowAndHideTheirControls) {
    OpenBlockRig rig;
    BlockPanel& panel = rig.panel;
    rig.clickBlock(1);
    panel.mnuEditCfg();
    EXPECT_FALSE(panel.isDataView());
    for (const Grid* grid : {&panel.fg2, &panel.fg3}) EXPECT_FALSE(grid->visible());
    for (const Label* label : {&panel.Label1, &panel.Label2, &panel.Label4, &panel.Label5}) {
        EXPECT_FALSE(label->visible);
    }
    EXPECT_FALSE(panel.txtCmt.visible);
    EXPECT_TRUE(panel.List1.visible);
    panel.fg2.select(5, 2);
    panel.mnuEditBlk();
    EXPECT_TRUE(panel.isDataView());
    EXPECT_TRUE(panel.fg3.visible());
    for (const Label* label : {&panel.Label1, &panel.Label2, &panel.Label4, &panel.Label5}) EXPECT_TRUE(label->visible);
    EXPECT_TRUE(panel.txtCmt.visible);
    EXPECT_FALSE(panel.List1.visible);
    EXPECT_EQ(panel.fg2.row(), 1);
    EXPECT_EQ(panel.focus, "fg3");
    EXPECT_EQ(panel.Label5.caption, "BLOCK 1 - HUNDRED") << "the selected block is shown";
}

TEST(BlockPanel, TheDataViewComesBackWithoutAClickForAReadOnlyFile) {
    OpenBlockRig rig;
    rig.panel.mnuEditCfg();
    rig.panel.showDataView();
    EXPECT_TRUE(rig.panel.isDataView());
    EXPECT_EQ(rig.panel.Label5.caption, "");
}

TEST(BlockPanel, TheDataGridsHandTheirKeysToTheShownBlocksMap) {
    OpenBlockRig rig;
    rig.clickBlock(0);
    EXPECT_TRUE(rig.panel.fg2.keyDown(Key::F6));
    EXPECT_EQ(rig.bench.SeekBlock, 1);
    EXPECT_TRUE(rig.panel.fg3.keyDown(Key::F6));
    EXPECT_EQ(rig.bench.SeekBlock, 2);
    rig.clickBlock(600);
    EXPECT_TRUE(rig.panel.fg2.keyDown(Key::F6));
    EXPECT_EQ(rig.bench.SeekBlock, 601);
    EXPECT_TRUE(rig.panel.fg3.keyDown(Key::F5));
    EXPECT_EQ(rig.bench.SeekBlock, 600);
    EXPECT_FALSE(rig.panel.fg2.keyDown(Key::Enter));
    EXPECT_FALSE(rig.panel.fg2.keyDown(Key::Escape));
}

TEST(BlockPanel, TheFocusedGridIsGreyAndTheOtherGoesBackToItsFirstRow) {
    OpenBlockRig rig;
    rig.place(20, "SUM");
    rig.clickBlock(20);
    Grid& fg2 = rig.panel.fg2;
    Grid& fg3 = rig.panel.fg3;
    fg2.gotFocus();
    EXPECT_EQ(fg2.selectionColour(), Colour{0x808080});
    fg2.enterCell(3, 1);
    fg2.lostFocus();
    EXPECT_FALSE(fg2.selectionColour());
    fg3.gotFocus();
    EXPECT_EQ(fg2.row(), 1);
    EXPECT_EQ(fg3.selectionColour(), Colour{0x808080});
    fg3.enterCell(2, 1);
    fg3.lostFocus();
    fg2.gotFocus();
    EXPECT_EQ(fg3.row(), 1);
}

TEST(BlockPanel, GoToBlockSelectsAndShows) {
    OpenBlockRig rig;
    rig.panel.goToBlock(602);
    EXPECT_EQ(rig.panel.Label5.caption, "BLOCK 602 - ROUT");
    EXPECT_EQ(rig.panel.focus, "Ig");
    rig.panel.goToBlock(3);
    EXPECT_EQ(rig.panel.Label5.caption, "BLOCK 3 - ON");
    EXPECT_EQ(rig.panel.focus, "Grid1");
    rig.panel.mnuEditCfg();
    rig.panel.goToBlock(2);
    EXPECT_EQ(rig.functionInFile(2), 90) << "it places nothing";
}

TEST(BlockPanel, BlocksAreStillThereAfterASave) {
    OpenBlockRig rig;
    rig.place(20, "SUM");
    rig.place(599, "TEXTS");
    rig.save();
    EXPECT_EQ(rig.panel.Grid1.text(3, 1), "SUM");
    EXPECT_EQ(rig.panel.Grid1.text(60, 10), "TEXTS");
    EXPECT_EQ(rig.bench.FnOfBlock[20], 10);
    rig.clickBlock(599);
    EXPECT_EQ(rowOf(rig.panel.fg3, 2), (Texts{"2", "PLACE OF THE MET", "PLACE OF THE METER IN THE YARD"}));
}

// --- the block's comments ---

struct CommentRig : OpenBlockRig {
    CommentRig() {
        setComments(1, "first\r\nline", "");
        clickBlock(1);
    }
    template <typename User>
    void edit(User&& user) {
        host.onModal("FormComment", [user](Form& form) { user(dynamic_cast<FormComment&>(form)); });
        panel.txtCmt_DblClick();
    }
    [[nodiscard]] std::string first() {
        db().BlockSeek(1);
        return db().BlockComment();
    }
    [[nodiscard]] std::string second() {
        db().BlockSeek(1);
        return db().BlockVisioComment();
    }
};

TEST(FormComment, ShowsBothCommentsOfTheBlock) {
    CommentRig rig;
    rig.setComments(1, "first\r\nline", "second");
    rig.edit([](FormComment& form) {
        EXPECT_EQ(form.caption, "Block Comments");
        EXPECT_EQ(form.Text1.text, "first\nline");
        EXPECT_EQ(form.Text2.text, "second");
        EXPECT_FALSE(form.Text1.locked);
        EXPECT_FALSE(form.Text2.locked);
        form.mnuexit();
    });
    EXPECT_EQ(rig.panel.txtCmt.text, "second");
}

TEST(FormComment, StoresEachChangeAtOnce) {
    CommentRig rig;
    rig.edit([&rig](FormComment& form) {
        form.Text1.text = "a\nb";
        form.Text1_Change();
        EXPECT_EQ(rig.first(), "a\r\nb");
        form.Text2.text = "c";
        form.Text2_Change();
        EXPECT_EQ(rig.second(), "c");
        form.Text2.text = " ";
        form.Text2_Change();
        form.mnuexit();
    });
    EXPECT_EQ(rig.panel.txtCmt.text, "a\nb") << "the second is empty but for blanks";
    EXPECT_EQ(rig.second(), " ");
}

TEST(FormComment, DoubledLineBreaksOfTheFirstBecomeOne) {
    CommentRig rig;
    rig.edit([&rig](FormComment& form) {
        form.Text1.text = "a\n\n\nb\n\n";
        form.Text1_Change();
        EXPECT_EQ(form.Text1.text, "a\nb\n");
        EXPECT_EQ(rig.first(), "a\r\nb\r\n");
        form.mnuexit();
    });
}

TEST(FormComment, ItsCloseBoxIsDone) {
    CommentRig rig;
    rig.edit([&rig](FormComment& form) {
        form.Text1.text = "new";
        form.Text1_Change();
        EXPECT_TRUE(rig.host.close(form));
    });
    EXPECT_EQ(rig.panel.txtCmt.text, "new");
}

TEST(FormComment, IsLockedOnAReadOnlyFile) {
    CommentRig rig;
    rig.reopenReadOnly();
    rig.clickBlock(1);
    rig.edit([](FormComment& form) {
        EXPECT_TRUE(form.Text1.locked);
        EXPECT_TRUE(form.Text2.locked);
        form.mnuexit();
    });
    EXPECT_EQ(rig.panel.txtCmt.text, "first\nline");
}

}  // namespace
}  // namespace qrv
