#include "blocks/frmGeneral.h"

#include <gtest/gtest.h>

#include "BlockRig.h"
#include "store/Sqlite.h"

namespace qrv {
namespace {

using Texts = std::vector<std::string>;
using Values = std::vector<std::int32_t>;

/// An open file with frmGeneral up, as after every open.
struct GeneralRig : OpenBlockRig {
    explicit GeneralRig(const std::string& without = "") : OpenBlockRig(Catalogue::Small, without) {
        host.show(general);
    }
    [[nodiscard]] Texts slotsInFile() {
        Texts texts;
        db().SlotMoveFirst();
        for (int slot = 0; slot < 7; ++slot) {
            texts.push_back(db().SlotDescription());
            db().SlotMoveNext();
        }
        return texts;
    }
    [[nodiscard]] Values functions(int first) {
        Values found;
        for (int k = 0; k < 15; ++k) found.push_back(functionInFile(first + k));
        return found;
    }
    [[nodiscard]] bool tableAgrees() {
        for (int block = 600; block <= 704; ++block) {
            if (functionInFile(block) != bench.FnOfBlock.at(static_cast<std::size_t>(block))) return false;
        }
        return true;
    }
    Grid& fg = general.fg;
};

Values withNops(std::int32_t function, int count) {
    Values values(15, 127);
    std::fill_n(values.begin(), count, function);
    return values;
}

TEST(frmGeneral, ANewFileShowsTheCpuAndSixEmptySlots) {
    GeneralRig rig;
    EXPECT_EQ(rig.general.caption, "Configuration Info");
    EXPECT_EQ(rowOf(rig.fg, 0), (Texts{"0", "CPU BOARD - 610050"}));
    for (int slot = 1; slot <= 6; ++slot) EXPECT_EQ(rowOf(rig.fg, slot), (Texts{std::to_string(slot), "NONE"}));
    EXPECT_EQ(rig.fg.rows(), 7);
    EXPECT_EQ(rig.general.Label1.caption, "TITLE");
    EXPECT_EQ(rig.general.Label2.caption, "COMMENTS");
    EXPECT_EQ(rig.general.Label3.caption, "CONFIGURATON");
    EXPECT_EQ(rig.general.Label4.caption, "HARDWARE CONFIGURATION");
}

TEST(frmGeneral, TheListOffersTheBoardsAndNone) {
    GeneralRig rig;
    EXPECT_EQ(rig.fg.colKind(1), ColumnKind::DropDown);
    EXPECT_EQ(rig.fg.comboList(),
              (Texts{"DISCRETE INPUT   610012", "ANALOG INPUT      610014", "HOA ROUT              610018",
                     "AUTO MANUAL       610021", "RELAY OUTPUT     610027", "TRIAC OUTPUT      610033", "NONE"}));
}

TEST(frmGeneral, AnOpenGivesTheCpuItsBlocks) {
    GeneralRig rig;
    EXPECT_EQ(rig.functions(600), (Values{2, 2, 125, 127, 127, 127, 127, 127, 127, 127, 127, 127, 127, 127, 127}));
    EXPECT_EQ(rig.constants(600), (Values{1000, 0, 7}));
    EXPECT_EQ(rig.constants(602), (Values{2, 1}));
    EXPECT_EQ(rig.slotCountInFile(601), 3);
    EXPECT_EQ(rig.bench.FnOfBlock[602], 125);
    EXPECT_TRUE(rig.tableAgrees());
}

TEST(frmGeneral, TheCpusValuesSurviveTheNextOpen) {
    GeneralRig rig;
    rig.setConstant(600, 0, 2500);
    rig.save();
    EXPECT_EQ(rig.constants(600), (Values{2500, 0, 7}));
}

TEST(frmGeneral, ASecondNewFileHasItsCpuBlocksToo) {
    GeneralRig rig;
    CloseConfiguration(rig.bench, Answer::No);
    rig.bench.db.create_new_database(rig.path("second.qrv"));
    OpenConfiguration(rig.bench, rig.path("second.qrv"));
    EXPECT_EQ(rig.functionInFile(602), 125);
    EXPECT_EQ(rig.bench.FnOfBlock[600], 2);
}

TEST(frmGeneral, ACatalogueWithoutTheCpusFunctionsIsTold) {
    BlockRig rig(BlockRig::Catalogue::Small, "AIN,ROUT");
    rig.boxes.expect(Notice{.text = "ERROR RECORD NOT FOUND", .title = "Warning!"});
    rig.boxes.expect(Notice{.text = "ERROR RECORD NOT FOUND", .title = "Warning!"});
    rig.boxes.expect(Notice{.text = "ERROR RECORD ROUT NOT FOUND", .title = "Warning!"});
    rig.open();
    EXPECT_EQ(rig.functionInFile(600), 127);
    rig.boxes.verify();
}

struct BoardRow {
    const char* name;
    const char* text;
    std::int32_t function;
    int blocks;
};

class BoardInASlot : public testing::TestWithParam<BoardRow> {};

TEST_P(BoardInASlot, GivesItsFirstBlocksTheirFunction) {
    GeneralRig rig;
    EXPECT_TRUE(rig.fg.edit(3, 1, GetParam().text));
    EXPECT_TRUE(rig.boxes.said.empty()) << "an empty slot asks nothing";
    EXPECT_EQ(rig.functions(645), withNops(GetParam().function, GetParam().blocks));
    EXPECT_EQ(rig.bench.BoardText[3], GetParam().text);
    EXPECT_EQ(rig.fg.text(3, 1), GetParam().text);
    EXPECT_FALSE(rig.constants(645).empty());
    EXPECT_TRUE(rig.tableAgrees());
    rig.general.mnuexit();
    EXPECT_EQ(rig.slotsInFile().at(3), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Boards, BoardInASlot,
                         testing::Values(BoardRow{"discrete", "DISCRETE INPUT   610012", 92, 15},
                                         BoardRow{"analog", "ANALOG INPUT      610014", 2, 8},
                                         BoardRow{"hoa", "HOA ROUT              610018", 125, 5},
                                         BoardRow{"autoManual", "AUTO MANUAL       610021", 81, 5},
                                         BoardRow{"relay", "RELAY OUTPUT     610027", 125, 8},
                                         BoardRow{"triac", "TRIAC OUTPUT      610033", 84, 4}),
                         [](const auto& row) { return row.param.name; });

TEST(frmGeneral, TheLastSlotReachesBlock704) {
    GeneralRig rig;
    EXPECT_TRUE(rig.fg.edit(6, 1, "DISCRETE INPUT   610012"));
    EXPECT_EQ(rig.functions(690), Values(15, 92));
}

TEST(frmGeneral, AReplacedBoardWipesAllFifteenBlocks) {
    GeneralRig rig;
    EXPECT_TRUE(rig.fg.edit(1, 1, "DISCRETE INPUT   610012"));
    rig.setComments(615, "first", "second");
    rig.setComments(629, "last", "");
    rig.boxes.expect(question("Replace DISCRETE INPUT   610012 with TRIAC OUTPUT      610033"), Answer::Yes);
    EXPECT_TRUE(rig.fg.edit(1, 1, "TRIAC OUTPUT      610033"));
    EXPECT_EQ(rig.functions(615), withNops(84, 4));
    EXPECT_EQ(rig.constants(615), (Values{0, 10}));
    EXPECT_TRUE(rig.constants(629).empty());
    for (const int block : {615, 629}) {
        rig.db().BlockSeek(block);
        EXPECT_EQ(rig.db().BlockComment(), "");
        EXPECT_EQ(rig.db().BlockVisioComment(), "");
    }
    EXPECT_TRUE(rig.tableAgrees());
}

TEST(frmGeneral, NoKeepsTheBoardAndItsBlocks) {
    GeneralRig rig;
    EXPECT_TRUE(rig.fg.edit(1, 1, "ANALOG INPUT      610014"));
    rig.setConstant(615, 0, 5000);
    rig.boxes.expect(question("Replace ANALOG INPUT      610014 with NONE"), Answer::No);
    rig.fg.enterCell(1, 1);
    ASSERT_TRUE(rig.fg.beginEdit());
    EXPECT_EQ(rig.fg.text(1, 1), "") << "the list opens on an empty cell";
    EXPECT_FALSE(rig.fg.commitEdit("NONE"));
    EXPECT_EQ(rig.fg.text(1, 1), "ANALOG INPUT      610014");
    EXPECT_FALSE(rig.fg.editing());
    EXPECT_EQ(rig.bench.BoardText[1], "ANALOG INPUT      610014");
    EXPECT_EQ(rig.constants(615), (Values{5000, 0, 7}));
}

TEST(frmGeneral, ABoardTakenOutAsksAndLeavesNops) {
    GeneralRig rig;
    EXPECT_TRUE(rig.fg.edit(1, 1, "RELAY OUTPUT     610027"));
    rig.boxes.expect(question("Replace RELAY OUTPUT     610027 with NONE"), Answer::Yes);
    EXPECT_TRUE(rig.fg.edit(1, 1, "NONE"));
    EXPECT_EQ(rig.functions(615), Values(15, 127));
    EXPECT_EQ(rig.bench.BoardText[1], "");
    EXPECT_EQ(rig.fg.text(1, 1), "NONE");
    EXPECT_TRUE(rig.fg.edit(1, 1, "RELAY OUTPUT     610027")) << "and the next board asks nothing";
    EXPECT_EQ(rig.functions(615), withNops(125, 8));
}

TEST(frmGeneral, TheSameBoardAgainAsksAndStartsAfresh) {
    GeneralRig rig;
    EXPECT_TRUE(rig.fg.edit(1, 1, "ANALOG INPUT      610014"));
    rig.setConstant(615, 0, 5000);
    rig.boxes.expect(question("Replace ANALOG INPUT      610014 with ANALOG INPUT      610014"), Answer::Yes);
    EXPECT_TRUE(rig.fg.edit(1, 1, "ANALOG INPUT      610014"));
    EXPECT_EQ(rig.constants(615), (Values{1000, 0, 7}));
}

TEST(frmGeneral, EscapeLeavesTheBoard) {
    GeneralRig rig;
    EXPECT_TRUE(rig.fg.edit(1, 1, "ANALOG INPUT      610014"));
    rig.fg.enterCell(1, 1);
    ASSERT_TRUE(rig.fg.beginEdit());
    rig.fg.cancelEdit();
    EXPECT_EQ(rig.fg.text(1, 1), "ANALOG INPUT      610014");
    EXPECT_EQ(rig.functions(615), withNops(2, 8));
}

TEST(frmGeneral, OnlyTheSlotsBehindTheCpuTakeABoard) {
    GeneralRig rig;
    EXPECT_FALSE(rig.fg.edit(0, 1, "ANALOG INPUT      610014"));
    EXPECT_FALSE(rig.fg.edit(1, 0, "9"));
    EXPECT_EQ(rig.fg.text(0, 1), "CPU BOARD - 610050");
}

TEST(frmGeneral, ABoardWhoseFunctionTheCatalogueLacksIsTold) {
    GeneralRig rig("TOUT");
    rig.boxes.expect(Notice{.text = "ERROR RECORD NOT FOUND", .title = "Warning!"});
    EXPECT_TRUE(rig.fg.edit(1, 1, "TRIAC OUTPUT      610033"));
    EXPECT_EQ(rig.functions(615), Values(15, 127));
}

TEST(frmGeneral, ReferencesToAReplacedBoardStay) {
    GeneralRig rig;
    EXPECT_TRUE(rig.fg.edit(1, 1, "ANALOG INPUT      610014"));
    rig.place(20, "SUM");
    rig.setConstant(20, 0, 615);
    rig.boxes.expect(question("Replace ANALOG INPUT      610014 with NONE"), Answer::Yes);
    EXPECT_TRUE(rig.fg.edit(1, 1, "NONE"));
    EXPECT_EQ(rig.constant(20, 0), 615);
}

TEST(frmGeneral, DoneStoresTheTextsAndBringsTheMainWindowBack) {
    GeneralRig rig;
    EXPECT_TRUE(rig.fg.edit(2, 1, "AUTO MANUAL       610021"));
    EXPECT_EQ(rig.slotsInFile(), Texts(7));
    rig.general.mnuexit();
    EXPECT_EQ(rig.slotsInFile(),
              (Texts{"CPU BOARD - 610050", "NONE", "AUTO MANUAL       610021", "NONE", "NONE", "NONE", "NONE"}));
    EXPECT_FALSE(rig.host.isVisible(rig.general));
    EXPECT_EQ(rig.mainShown, 1);
}

TEST(frmGeneral, ItsCloseBoxIsDone) {
    GeneralRig rig;
    EXPECT_TRUE(rig.host.close(rig.general));
    EXPECT_EQ(rig.slotsInFile().at(0), "CPU BOARD - 610050");
    EXPECT_EQ(rig.mainShown, 1);
}

TEST(frmGeneral, TheCloseOfTheFileStoresTheTextsToo) {
    GeneralRig rig;
    EXPECT_TRUE(rig.fg.edit(2, 1, "AUTO MANUAL       610021"));
    rig.save();
    EXPECT_EQ(rig.slotsInFile().at(2), "AUTO MANUAL       610021");
    EXPECT_EQ(rig.slotsInFile().at(1), "NONE");
    EXPECT_EQ(rig.bench.BoardText[1], "") << "an unused slot, however it is stored";
    EXPECT_TRUE(rig.fg.edit(1, 1, "AUTO MANUAL       610021"));
}

// Nulls are sound in these columns; other tools write them.
TEST(frmGeneral, WhatCannotBeReadIsNotThatOfTheFileBefore) {
    GeneralRig rig;
    rig.setBoard(2, "RELAY OUTPUT     610027");
    rig.setBoard(4, "HOA ROUT              610018");
    rig.general.txtTitle.text = "PLANT A";
    rig.general.txtTitle_Change();
    CloseConfiguration(rig.bench, Answer::Yes);
    const std::string other = rig.path("other.qrv");
    rig.db().create_new_database(other);
    Sqlite(other, Sqlite::Mode::ReadWrite)
        .execute(
            "UPDATE Slots SET Description = NULL WHERE Offset IN (1, 4);"
            "UPDATE Slots SET Description = 'ANALOG INPUT      610014' WHERE Offset = 6;"
            "UPDATE Comments SET Title = NULL");
    OpenConfiguration(rig.bench, other);
    EXPECT_EQ(rowOf(rig.fg, 0), (Texts{"0", "CPU BOARD - 610050"}));
    for (int slot = 1; slot <= 5; ++slot) EXPECT_EQ(rowOf(rig.fg, slot), (Texts{std::to_string(slot), "NONE"}));
    EXPECT_EQ(rowOf(rig.fg, 6), (Texts{"6", "ANALOG INPUT      610014"}));
    for (int slot = 1; slot <= 5; ++slot) EXPECT_EQ(rig.bench.BoardText.at(static_cast<std::size_t>(slot)), "") << slot;
    EXPECT_EQ(rig.general.txtTitle.text, "");
    // The CPU has its blocks all the same.
    EXPECT_EQ(rig.functions(600), (Values{2, 2, 125, 127, 127, 127, 127, 127, 127, 127, 127, 127, 127, 127, 127}));
    EXPECT_EQ(rig.bench.FnOfBlock[602], 125);
}

TEST(frmGeneral, OnAReadOnlyFileDoneTellsTheEnginesRefusal) {
    GeneralRig rig;
    rig.reopenReadOnly();
    EXPECT_EQ(rig.functionInFile(600), 2) << "the CPU's blocks of the first open";
    rig.boxes.expect(Notice{.text = std::string(descriptionOf(ErrorNumber::ReadOnlyDatabase)), .title = "Warning!"});
    rig.general.mnuexit();
    EXPECT_FALSE(rig.host.isVisible(rig.general));
    EXPECT_EQ(rig.mainShown, 1);
}

TEST(frmGeneral, OnAReadOnlyFileABoardIsRefusedByTheEngine) {
    GeneralRig rig;
    rig.reopenReadOnly();
    rig.fg.enterCell(1, 1);
    ASSERT_TRUE(rig.fg.beginEdit());
    EXPECT_EQ(errorOf([&] { rig.fg.commitEdit("ANALOG INPUT      610014"); }), 3027);
}

// --- title, identifier and description ---

TEST(frmGeneral, TitleAndIdentifierAreStoredAtEachChange) {
    GeneralRig rig;
    rig.general.txtTitle.text = "BOILER HOUSE";
    rig.general.txtTitle_Change();
    rig.general.txtCfg.text = "REV 3";
    rig.general.txtCfg_Change();
    EXPECT_EQ(rig.db().CommentTitle(), "BOILER HOUSE");
    EXPECT_EQ(rig.db().CommentConfig(), "REV 3");
    EXPECT_EQ(rig.general.txtTitle.maxLength, 80);
    EXPECT_EQ(rig.general.txtCfg.maxLength, 80);
    rig.save();
    rig.general.txtTitle.text.clear();
    rig.host.show(rig.general);
    EXPECT_EQ(rig.general.txtTitle.text, "BOILER HOUSE");
    EXPECT_EQ(rig.general.txtCfg.text, "REV 3");
}

TEST(frmGeneral, OnAReadOnlyFileTitleAndIdentifierStay) {
    GeneralRig rig;
    rig.reopenReadOnly();
    rig.general.txtTitle.text = "NEW";
    rig.general.txtTitle_Change();
    rig.general.txtCfg.text = "NEW";
    rig.general.txtCfg_Change();
    EXPECT_EQ(rig.db().CommentTitle(), "");
    EXPECT_EQ(rig.db().CommentConfig(), "");
}

TEST(frmvga, IsTheLongTextEditorOfTheDescription) {
    GeneralRig rig;
    frmvga& editor = rig.general.description;
    EXPECT_EQ(editor.caption, "Configuration Description");
    EXPECT_TRUE(rig.general.Text1.locked);
    rig.host.onModal("frmvga", [&](Form&) {
        EXPECT_FALSE(rig.host.isVisible(rig.general));
        EXPECT_EQ(editor.caption, rig.bench.TitleText);
        EXPECT_FALSE(editor.txtCmt.locked);
        editor.txtCmt.text = "two\n\n\nlines";
        editor.txtCmt_Change();
        EXPECT_EQ(editor.txtCmt.text, "two\nlines");
        EXPECT_EQ(rig.db().CommentComment(), "two\r\nlines");
        editor.mnuexit();
    });
    rig.general.Text1_DblClick();
    EXPECT_FALSE(rig.host.isVisible(editor));
    EXPECT_TRUE(rig.host.isVisible(rig.general));
    EXPECT_EQ(rig.general.Text1.text, "two\nlines");
}

TEST(frmvga, ItsCloseBoxIsDone) {
    GeneralRig rig;
    rig.host.onModal("frmvga", [&](Form& editor) { EXPECT_TRUE(rig.host.close(editor)); });
    rig.general.Text1_DblClick();
    EXPECT_TRUE(rig.host.isVisible(rig.general));
}

TEST(frmvga, IsLockedOnAReadOnlyFile) {
    GeneralRig rig;
    rig.reopenReadOnly();
    rig.host.show(rig.general);
    rig.host.onModal("frmvga", [&](Form&) {
        EXPECT_TRUE(rig.general.description.txtCmt.locked);
        rig.general.description.mnuexit();
    });
    rig.general.Text1_DblClick();
}

}  // namespace
}  // namespace qrv
