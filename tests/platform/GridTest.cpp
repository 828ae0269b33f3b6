#include "platform/Grid.h"

#include <gtest/gtest.h>

#include "platform/RunTimeError.h"

namespace qrv {
namespace {

using Cells = std::vector<std::pair<int, int>>;

template <typename Action>
int codeOf(Action action) {
    try {
        action();
    } catch (const RunTimeError& error) {
        return error.code();
    }
    return 0;
}

struct GridTest : testing::Test {
    GridTest() { grid.setEditable(true); }
    Grid grid{"fg2", 4, 3};
};

using GridCells = GridTest;
using GridSelection = GridTest;
using GridEdit = GridTest;
using GridChanges = GridTest;

TEST_F(GridCells, StartEmptyWithTheirHeadingsAsCells) {
    EXPECT_EQ(grid.name(), "fg2");
    EXPECT_EQ(grid.rows(), 4);
    EXPECT_EQ(grid.cols(), 3);
    grid.setText(0, 1, "BLK");
    grid.setText(3, 0, "3");
    EXPECT_EQ(grid.text(0, 1), "BLK");
    EXPECT_EQ(grid.text(3, 0), "3");
    EXPECT_EQ(grid.cell(3, 2), GridCell{});
}

TEST_F(GridCells, OutsideTheGridRaise) {
    constexpr int kSubscriptOutOfRange = 9;
    for (const auto& [row, col] : Cells{{-1, 0}, {0, -1}, {4, 0}, {0, 3}}) {
        EXPECT_EQ(codeOf([&, r = row, c = col] { static_cast<void>(grid.text(r, c)); }), kSubscriptOutOfRange);
        EXPECT_EQ(codeOf([&, r = row, c = col] { grid.setText(r, c, "x"); }), kSubscriptOutOfRange);
        EXPECT_EQ(codeOf([&, r = row, c = col] { grid.setBack(r, c, Colour{1}); }), kSubscriptOutOfRange);
        EXPECT_EQ(codeOf([&, r = row, c = col] { grid.select(r, c); }), kSubscriptOutOfRange);
    }
    EXPECT_EQ(grid.row(), 1);
}

TEST_F(GridCells, KeepTheirLooks) {
    grid.setBack(1, 1, Colour{0xFF0000});
    grid.setFore(1, 1, Colour{0x00FF00});
    grid.setBold(1, 1, true);
    grid.setToolTip(1, 1, "tip");
    EXPECT_EQ(grid.cell(1, 1), (GridCell{"", Colour{0xFF0000}, Colour{0x00FF00}, true, "tip"}));
    grid.setBack(1, 1, std::nullopt);
    EXPECT_EQ(grid.cell(1, 1).back, std::nullopt);
}

TEST_F(GridCells, AreClearedFromACellToTheEndOfTheGrid) {
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 3; ++col) grid.setText(row, col, "x");
    }
    grid.setBack(2, 2, Colour{5});
    grid.clearFrom(1, 1);
    EXPECT_EQ(grid.text(0, 2), "x");
    EXPECT_EQ(grid.text(3, 0), "x");
    EXPECT_EQ(grid.text(1, 1), "");
    EXPECT_EQ(grid.cell(2, 2), GridCell{});
    EXPECT_EQ(grid.text(3, 2), "");
}

TEST_F(GridCells, StayWhenRowsComeAndGo) {
    grid.setText(1, 2, "stays");
    grid.setText(3, 2, "goes");
    grid.select(3, 2);
    grid.setTopRow(3);
    grid.setRows(2);
    EXPECT_EQ(grid.text(1, 2), "stays");
    EXPECT_EQ(grid.row(), 1);
    EXPECT_EQ(grid.topRow(), 1);
    grid.setRows(6);
    EXPECT_EQ(grid.text(1, 2), "stays");
    EXPECT_EQ(grid.text(3, 2), "");
    EXPECT_EQ(grid.rowHeight(5), 240);
    grid.setRows(0);
    EXPECT_EQ(grid.row(), 0);
}

TEST_F(GridCells, HaveWidthsHeightsKindsAndChoices) {
    grid.setColWidth(2, 3000);
    grid.setRowHeight(1, 440);
    grid.setColKind(1, ColumnKind::CheckBox);
    grid.setComboList({"A", "B"});
    grid.setSelectionColour(Colour{0x808080});
    EXPECT_EQ(grid.colWidth(2), 3000);
    EXPECT_EQ(grid.colWidth(1), 1000);
    EXPECT_EQ(grid.rowHeight(1), 440);
    EXPECT_EQ(grid.colKind(1), ColumnKind::CheckBox);
    EXPECT_EQ(grid.colKind(0), ColumnKind::Text);
    EXPECT_EQ(grid.comboList(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(grid.selectionColour(), Colour{0x808080});
}

TEST_F(GridSelection, StartsAtTheFirstCellThatIsNotFixed) {
    EXPECT_EQ(grid.row(), 1);
    EXPECT_EQ(grid.col(), 1);
    const Grid plain("fg", 7, 2, 0, 0);
    EXPECT_EQ(plain.row(), 0);
    EXPECT_EQ(plain.col(), 0);
}

TEST_F(GridSelection, TellsTheFormOfTheUsersMovesAlone) {
    Cells entered;
    grid.onEnterCell = [&](int row, int col) { entered.emplace_back(row, col); };
    grid.select(2, 2);
    EXPECT_TRUE(entered.empty());
    grid.enterCell(3, 1);
    grid.enterCell(3, 1);
    EXPECT_EQ(entered, (Cells{{3, 1}, {3, 1}}));
    EXPECT_EQ(grid.row(), 3);
    EXPECT_EQ(grid.col(), 1);
}

TEST_F(GridSelection, EntersTheCellBeforeItIsClicked) {
    std::string told;
    grid.onEnterCell = [&](int, int) { told += "enter "; };
    grid.onClick = [&] { told += "click "; };
    grid.onDoubleClick = [&] {
        told += "double ";
        return true;
    };
    grid.click(2, 1);
    EXPECT_TRUE(grid.doubleClick(3, 2));
    EXPECT_EQ(told, "enter click enter double ");
    EXPECT_EQ(grid.row(), 3);
}

TEST_F(GridSelection, KeepsItsTopRowWithinTheGrid) {
    grid.setTopRow(100);
    EXPECT_EQ(grid.topRow(), 3);
    grid.setTopRow(-5);
    EXPECT_EQ(grid.topRow(), 0);
}

TEST_F(GridSelection, TellsTheFormOfKeysAndFocus) {
    EXPECT_FALSE(grid.keyDown(Key::Delete));
    std::vector<Key> keys;
    grid.onKeyDown = [&](Key key) {
        keys.push_back(key);
        return key == Key::Delete;
    };
    EXPECT_TRUE(grid.keyDown(Key::Delete));
    EXPECT_FALSE(grid.keyDown(Key::F2));
    EXPECT_EQ(keys, (std::vector<Key>{Key::Delete, Key::F2}));
    std::string told;
    grid.gotFocus();
    grid.onGotFocus = [&] { told += "got "; };
    grid.onLostFocus = [&] { told += "lost "; };
    grid.gotFocus();
    grid.lostFocus();
    EXPECT_EQ(told, "got lost ");
}

TEST_F(GridEdit, StoresWhatWasTyped) {
    grid.setText(2, 1, "old");
    EXPECT_TRUE(grid.edit(2, 1, "new"));
    EXPECT_EQ(grid.text(2, 1), "new");
    EXPECT_FALSE(grid.editing());
}

TEST_F(GridEdit, GoesThroughItsCycleInOrder) {
    std::string told;
    grid.setText(1, 2, "old");
    const auto tell = [&](const char* what, int row, int col) {
        told += what + std::to_string(row) + std::to_string(col) + grid.text(1, 2) + "," + grid.editText() + " ";
    };
    grid.onEnterCell = [&](int row, int col) { tell("enter", row, col); };
    grid.onBeforeEdit = [&](int row, int col) { return tell("before", row, col), true; };
    grid.onValidateEdit = [&](int row, int col) { return tell("validate", row, col), true; };
    grid.onAfterEdit = [&](int row, int col) { tell("after", row, col); };
    grid.onCancelEdit = [&](int row, int col) { tell("cancel", row, col); };
    EXPECT_TRUE(grid.edit(1, 2, "new"));
    EXPECT_EQ(told, "enter12old, before12old, validate12old,new after12new,new ");
}

TEST_F(GridEdit, ShowsTheCellsTextFirst) {
    grid.setText(1, 1, "12");
    ASSERT_TRUE(grid.beginEdit());
    EXPECT_TRUE(grid.editing());
    EXPECT_EQ(grid.editText(), "12");
    EXPECT_FALSE(grid.beginEdit());
}

TEST_F(GridEdit, TakesTheTextThatValidationPutsInItsPlace) {
    grid.onValidateEdit = [&](int, int) {
        grid.setEditText("12.50");
        return true;
    };
    EXPECT_TRUE(grid.edit(1, 1, "12.5"));
    EXPECT_EQ(grid.text(1, 1), "12.50");
}

TEST_F(GridEdit, StaysInTheCellWhenValidationRefuses) {
    grid.setText(1, 1, "old");
    int afters = 0;
    grid.onValidateEdit = [&](int, int) { return grid.editText() == "good"; };
    grid.onAfterEdit = [&](int, int) { ++afters; };
    ASSERT_TRUE(grid.beginEdit());
    EXPECT_FALSE(grid.commitEdit("bad"));
    EXPECT_TRUE(grid.editing());
    EXPECT_EQ(grid.editText(), "bad");
    EXPECT_EQ(grid.text(1, 1), "old");
    EXPECT_EQ(afters, 0);
    EXPECT_TRUE(grid.commitEdit("good"));
    EXPECT_EQ(grid.text(1, 1), "good");
    EXPECT_EQ(afters, 1);
}

TEST_F(GridEdit, GivesTheOldTextBackOnEscape) {
    grid.setText(2, 1, "old");
    Cells cancelled;
    int afters = 0;
    grid.onBeforeEdit = [&](int row, int col) {
        grid.setText(row, col, "");  // a list that opens on an empty cell
        return true;
    };
    grid.onAfterEdit = [&](int, int) { ++afters; };
    grid.onCancelEdit = [&](int row, int col) { cancelled.emplace_back(row, col); };
    grid.select(2, 1);
    ASSERT_TRUE(grid.beginEdit());
    EXPECT_EQ(grid.text(2, 1), "");
    grid.cancelEdit();
    EXPECT_EQ(grid.text(2, 1), "old");
    EXPECT_FALSE(grid.editing());
    grid.cancelEdit();
    EXPECT_EQ(cancelled, (Cells{{2, 1}}));
    EXPECT_EQ(afters, 0);
}

TEST_F(GridEdit, GivesTheOldTextBackAfterARefusalThatEmptiedTheCell) {
    grid.setText(1, 1, "old");
    grid.onValidateEdit = [&](int row, int col) {
        grid.setText(row, col, "");
        return false;
    };
    EXPECT_FALSE(grid.edit(1, 1, "bad"));
    EXPECT_FALSE(grid.editing());
    EXPECT_EQ(grid.text(1, 1), "old");
}

TEST_F(GridEdit, DoesNotBeginWhereTheFormRefuses) {
    grid.setText(1, 1, "old");
    grid.onBeforeEdit = [&](int row, int col) {
        grid.setText(row, col, "half changed");
        return false;
    };
    EXPECT_FALSE(grid.edit(1, 1, "new"));
    EXPECT_FALSE(grid.editing());
    EXPECT_EQ(grid.text(1, 1), "old");
}

TEST_F(GridEdit, BeginsOnlyInAnEditableEnabledRow) {
    grid.select(0, 1);
    EXPECT_FALSE(grid.beginEdit());
    grid.select(1, 1);
    grid.setEditable(false);
    EXPECT_FALSE(grid.beginEdit());
    grid.setEditable(true);
    grid.setEnabled(false);
    EXPECT_FALSE(grid.beginEdit());
    grid.setEnabled(true);
    EXPECT_TRUE(grid.beginEdit());
}

TEST_F(GridEdit, MayBeAllowedAsTheCellIsEntered) {
    grid.setEditable(false);
    grid.onEnterCell = [&](int, int col) { grid.setEditable(col == 1); };
    EXPECT_TRUE(grid.edit(1, 1, "a"));
    EXPECT_FALSE(grid.edit(1, 2, "b"));
    EXPECT_EQ(grid.text(1, 2), "");
}

TEST_F(GridEdit, BelongsToTheCellItBeganIn) {
    grid.setText(1, 1, "old");
    ASSERT_TRUE(grid.beginEdit());
    grid.select(3, 2);
    EXPECT_TRUE(grid.commitEdit("new"));
    EXPECT_EQ(grid.text(1, 1), "new");
    EXPECT_EQ(grid.text(3, 2), "");
    grid.select(1, 1);
    ASSERT_TRUE(grid.beginEdit());
    grid.select(3, 2);
    grid.cancelEdit();
    EXPECT_EQ(grid.text(1, 1), "new");
    EXPECT_EQ(grid.text(3, 2), "");
}

TEST_F(GridEdit, MayBeGivenUpByValidationItself) {
    grid.setText(1, 1, "old");
    int cancels = 0;
    int afters = 0;
    grid.onCancelEdit = [&](int, int) { ++cancels; };
    grid.onAfterEdit = [&](int, int) { ++afters; };
    for (const bool accepts : {false, true}) {
        grid.onValidateEdit = [&](int, int) {
            grid.cancelEdit();
            return accepts;
        };
        ASSERT_TRUE(grid.beginEdit());
        EXPECT_FALSE(grid.commitEdit("new"));
        EXPECT_FALSE(grid.editing());
        EXPECT_EQ(grid.text(1, 1), "old");
    }
    EXPECT_EQ(cancels, 2);
    EXPECT_EQ(afters, 0);
}

TEST_F(GridEdit, IsNothingWithoutABeginning) {
    EXPECT_FALSE(grid.commitEdit("new"));
    EXPECT_EQ(grid.text(1, 1), "");
}

TEST_F(GridChanges, ListTheCellsThatAViewMustShowAgain) {
    static_cast<void>(grid.takeChanges());
    const auto before = grid.revision();
    grid.setText(1, 1, "x");
    grid.setText(1, 1, "x");
    grid.setBold(2, 2, true);
    EXPECT_GT(grid.revision(), before);
    const Grid::Changes changes = grid.takeChanges();
    EXPECT_FALSE(changes.all);
    EXPECT_EQ(changes.cells, (Cells{{1, 1}, {2, 2}}));
    EXPECT_TRUE(grid.takeChanges().cells.empty());
}

TEST_F(GridChanges, AreNoneWhereNothingBecameDifferent) {
    grid.setText(1, 1, "x");
    grid.setColWidth(1, 500);
    static_cast<void>(grid.takeChanges());
    const auto before = grid.revision();
    grid.setText(1, 1, "x");
    grid.setBack(1, 1, std::nullopt);
    grid.setColWidth(1, 500);
    grid.setVisible(true);
    grid.setEnabled(true);
    grid.select(grid.row(), grid.col());
    grid.setRows(4);
    grid.clearFrom(2, 2);
    EXPECT_EQ(grid.revision(), before);
    EXPECT_FALSE(grid.takeChanges().all);
}

TEST_F(GridChanges, AreTheWholeGridWhenItsShapeChanges) {
    grid.setText(1, 1, "x");
    grid.setRows(9);
    const Grid::Changes changes = grid.takeChanges();
    EXPECT_TRUE(changes.all);
    EXPECT_TRUE(changes.cells.empty());
}

TEST_F(GridChanges, BecomeTheWholeGridBeforeTheyGrowWithoutEnd) {
    static_cast<void>(grid.takeChanges());
    for (int i = 0; i < 5000; ++i) grid.setText(1, 1, std::to_string(i));
    const Grid::Changes changes = grid.takeChanges();
    EXPECT_TRUE(changes.all);
    EXPECT_TRUE(changes.cells.empty());
}

TEST_F(GridChanges, NameBothCellsOfAMove) {
    static_cast<void>(grid.takeChanges());
    grid.select(2, 2);
    EXPECT_EQ(grid.takeChanges().cells, (Cells{{1, 1}, {2, 2}}));
}

}  // namespace
}  // namespace qrv
