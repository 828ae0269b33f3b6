// GridView with real keys and clicks: what reaches the grid, and what the user sees afterwards.
#include "platform/qt/GridView.h"

#include <gtest/gtest.h>

#include <QAbstractItemModel>
#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QPixmap>
#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "platform/qt/Texts.h"

namespace qrv {
namespace {

class GridViewTest : public testing::Test {
 protected:
    GridViewTest() : grid("fg3", 8, 3) {
        grid.setText(0, 1, "VALUE");
        grid.setText(0, 2, "DESCRIPTION");
        grid.setText(3, 0, "3");
        grid.setText(3, 1, "12.5");
        grid.setEditable(true);
        view = std::make_unique<GridView>(grid, nullptr);
        view->resize(420, 260);
        view->show();
        view->activateWindow();
        view->setFocus();
    }

    void clickOn(int row, int col) {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->rectOf(row, col).center());
    }
    void type(const QString& text) {
        for (const QChar letter : text) QTest::keyClick(target(), letter.toLatin1());
    }
    void press(Qt::Key key) { QTest::keyClick(target(), key); }
    QLineEdit* editor() { return view->viewport()->findChild<QLineEdit*>(); }
    QWidget* target() { return view->isEditing() && editor() ? static_cast<QWidget*>(editor()) : view.get(); }

    Grid grid;
    std::unique_ptr<GridView> view;
};

TEST_F(GridViewTest, BearsTheGridsName) { EXPECT_EQ(view->objectName(), "fg3"); }

TEST_F(GridViewTest, ShowsTheFixedRowAsHeadings) {
    EXPECT_EQ(view->model()->headerData(0, Qt::Horizontal).toString(), "VALUE");
    EXPECT_EQ(view->model()->headerData(2, Qt::Vertical).toString(), "3");
    EXPECT_EQ(view->model()->index(2, 0).data().toString(), "12.5");
}

TEST_F(GridViewTest, ClickEntersTheCellOnce) {
    std::vector<std::string> events;
    grid.onEnterCell = [&](int row, int col) {
        events.push_back("enter " + std::to_string(row) + "," + std::to_string(col));
    };
    grid.onClick = [&] { events.emplace_back("click"); };
    clickOn(4, 2);
    EXPECT_EQ(events, (std::vector<std::string>{"enter 4,2", "click"}));
}

TEST_F(GridViewTest, ArrowKeyEntersTheNextCell) {
    grid.select(3, 1);
    view->refresh();
    press(Qt::Key_Down);
    EXPECT_EQ(grid.row(), 4);
    EXPECT_EQ(grid.col(), 1);
}

TEST_F(GridViewTest, ATextThatNobodyChangedStaysAsItIs) {
    const std::string text("A\x01\r\nB\t");
    grid.setText(3, 1, text);
    clickOn(3, 1);
    press(Qt::Key_F2);
    press(Qt::Key_Return);
    EXPECT_EQ(grid.text(3, 1), text);
}

TEST_F(GridViewTest, ATextThatIsEditedIsOneLine) {
    grid.setText(3, 1, "A\x01\r\nB\t");
    clickOn(3, 1);
    press(Qt::Key_F2);
    press(Qt::Key_End);
    type("x");
    press(Qt::Key_Return);
    EXPECT_EQ(grid.text(3, 1), "A  B x");
}

TEST_F(GridViewTest, TypingReplacesTheText) {
    clickOn(3, 1);
    type("7.25");
    press(Qt::Key_Return);
    EXPECT_EQ(grid.text(3, 1), "7.25");
    EXPECT_FALSE(view->isEditing());
}

TEST_F(GridViewTest, F2KeepsTheTextToEdit) {
    clickOn(3, 1);
    press(Qt::Key_F2);
    press(Qt::Key_End);
    type("0");
    press(Qt::Key_Return);
    EXPECT_EQ(grid.text(3, 1), "12.50");
}

TEST_F(GridViewTest, EscapeGivesBackTheOldText) {
    clickOn(3, 1);
    type("99");
    press(Qt::Key_Escape);
    EXPECT_EQ(grid.text(3, 1), "12.5");
    EXPECT_FALSE(view->isEditing());
    EXPECT_FALSE(grid.editing());
}

TEST_F(GridViewTest, RefusedTextStaysInTheEditor) {
    grid.onValidateEdit = [&](int, int) { return grid.editText() == "5"; };
    clickOn(3, 1);
    type("x");
    press(Qt::Key_Return);
    ASSERT_TRUE(view->isEditing());
    EXPECT_EQ(editor()->text(), "x");
    EXPECT_EQ(grid.text(3, 1), "12.5");
    type("5");  // the refused text is selected, so typing replaces it
    press(Qt::Key_Return);
    EXPECT_FALSE(view->isEditing());
    EXPECT_EQ(grid.text(3, 1), "5");
}

TEST_F(GridViewTest, ValidationMayReplaceTheText) {
    grid.onValidateEdit = [&](int, int) {
        grid.setEditText("7.50");
        return true;
    };
    clickOn(3, 1);
    type("7.5");
    press(Qt::Key_Return);
    EXPECT_EQ(grid.text(3, 1), "7.50");
    EXPECT_EQ(view->model()->index(2, 0).data().toString(), "7.50");
}

TEST_F(GridViewTest, ClickElsewhereEndsTheEdit) {
    clickOn(3, 1);
    type("8");
    clickOn(5, 1);
    EXPECT_EQ(grid.text(3, 1), "8");
    EXPECT_EQ(grid.row(), 5);
}

TEST_F(GridViewTest, RefusedTextKeepsTheSelectionWhenTheUserClicksElsewhere) {
    grid.onValidateEdit = [](int, int) { return false; };
    clickOn(3, 1);
    type("8");
    clickOn(5, 1);
    EXPECT_TRUE(view->isEditing());
    EXPECT_EQ(grid.row(), 3);
}

TEST_F(GridViewTest, CellThatTakesNoInputOpensNoEditor) {
    grid.setEditable(false);
    clickOn(3, 1);
    type("8");
    EXPECT_FALSE(view->isEditing());
    EXPECT_EQ(grid.text(3, 1), "12.5");
}

TEST_F(GridViewTest, TellsTheFormOfFunctionKeysAndEnter) {
    std::vector<Key> keys;
    grid.onKeyDown = [&](Key key) {
        keys.push_back(key);
        return true;
    };
    press(Qt::Key_F5);
    press(Qt::Key_F6);
    press(Qt::Key_Return);
    EXPECT_EQ(keys, (std::vector<Key>{Key::F5, Key::F6, Key::Enter}));
    EXPECT_FALSE(view->isEditing());
}

TEST_F(GridViewTest, DropDownOffersTheChoicesAndTakesOne) {
    grid.setColKind(1, ColumnKind::DropDown);
    grid.setComboList({"NONE", "RELAY", "TRIAC"});
    grid.setText(3, 1, "RELAY");
    view->refresh();
    clickOn(3, 1);
    press(Qt::Key_F2);
    auto* box = view->viewport()->findChild<QComboBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->count(), 3);
    EXPECT_EQ(box->currentText(), "RELAY");
    QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Return);
    EXPECT_EQ(grid.text(3, 1), "TRIAC");
}

TEST_F(GridViewTest, EscapeInAnOpenListGivesBackTheOldText) {
    grid.setColKind(1, ColumnKind::DropDown);
    grid.setComboList({"NONE", "RELAY", "TRIAC"});
    grid.setText(3, 1, "RELAY");
    view->refresh();
    clickOn(3, 1);
    press(Qt::Key_F2);
    auto* box = view->viewport()->findChild<QComboBox*>();
    ASSERT_NE(box, nullptr);
    QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Escape);
    EXPECT_FALSE(view->isEditing());
    EXPECT_FALSE(grid.editing());
    EXPECT_EQ(grid.text(3, 1), "RELAY");
}

TEST_F(GridViewTest, AListThatIsLeftChoosesNothing) {
    grid.setColKind(1, ColumnKind::DropDown);
    grid.setComboList({"NONE", "RELAY", "TRIAC"});
    grid.setText(3, 1, "NONE");
    view->refresh();
    clickOn(3, 1);
    QTest::keyClick(view.get(), Qt::Key_T);
    auto* box = view->viewport()->findChild<QComboBox*>();
    ASSERT_NE(box, nullptr);
    ASSERT_EQ(box->currentText(), "TRIAC");
    box->hidePopup();
    clickOn(5, 1);
    EXPECT_FALSE(view->isEditing());
    EXPECT_EQ(grid.text(3, 1), "NONE");
}

TEST_F(GridViewTest, SpaceTicksACheckBox) {
    grid.setColKind(1, ColumnKind::CheckBox);
    grid.setText(3, 1, "0");
    grid.select(3, 1);
    view->refresh();
    press(Qt::Key_Space);
    EXPECT_EQ(grid.text(3, 1), "-1");
}

TEST_F(GridViewTest, FollowsRowsThatComeAndGo) {
    grid.setRows(30);
    view->refresh();
    EXPECT_EQ(view->model()->rowCount(), 29);
    grid.setRows(2);
    view->refresh();
    EXPECT_EQ(view->model()->rowCount(), 1);
}

TEST_F(GridViewTest, CellReadsAsItsAccessibleText) {
    view->setAccessibleText([](int row, int col) { return QStringLiteral("block %1%2").arg(row).arg(col); });
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(view.get());
    ASSERT_NE(table, nullptr);
    ASSERT_NE(table->tableInterface(), nullptr);
    QAccessibleInterface* cell = table->tableInterface()->cellAt(2, 1);
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->text(QAccessible::Name), "block 32");
}

TEST_F(GridViewTest, ColumnsKeepTheirProportionsWhereTheyFillTheWidth) {
    grid.setColWidth(1, 800);
    grid.setColWidth(2, 2400);
    view->refresh();
    EXPECT_NEAR(view->columnWidth(1), 3 * view->columnWidth(0), 3);
    EXPECT_EQ(view->columnWidth(0) + view->columnWidth(1), view->viewport()->width());
}

TEST_F(GridViewTest, HighRowHasRoomForTwoLines) {
    grid.setRowHeight(4, 440);
    grid.setRowHeight(5, 220);
    view->refresh();
    EXPECT_GE(view->rowHeight(3), 2 * view->fontMetrics().height());
    EXPECT_LT(view->rowHeight(4), 2 * view->fontMetrics().height());
}

TEST_F(GridViewTest, CellColourIsPainted) {
    grid.setBack(5, 2, Colour{0xFF8080});
    view->refresh();
    const QRect cell = view->rectOf(5, 2);
    const QImage shot = view->viewport()->grab().toImage();
    EXPECT_EQ(shot.pixelColor(cell.right() - 4, cell.center().y()), QColor(0xFF, 0x80, 0x80));
}

TEST_F(GridViewTest, DetachedViewIsEmptyAndDeaf) {
    int clicks = 0;
    grid.onClick = [&] { ++clicks; };
    const QPoint where = view->rectOf(3, 1).center();
    view->detach();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, where);
    QTest::keyClick(view.get(), Qt::Key_F5);
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(view->model()->rowCount(), 0);
}

TEST(Texts, DataTextsAreCodePage1252) {
    EXPECT_EQ(shownText("20 \xB0\x43 \x80"), QStringLiteral("20 °C €"));
    EXPECT_EQ(typedText(QStringLiteral("€ 5 Ω")), "\x80 5 ?");
    EXPECT_EQ(typedLine(QStringLiteral("€\r\n5\t\u2028Ω\u2029\r\n\n")), "\x80 5  ?");
    EXPECT_EQ(typedLine(QStringLiteral("\n")), "");
}

}  // namespace
}  // namespace qrv
