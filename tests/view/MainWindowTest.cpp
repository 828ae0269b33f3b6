// The main window's controls under real keys and clicks: where the focus is, what a double click opens, what the menu
// shows.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScrollBar>
#include <QStatusBar>
#include <QWheelEvent>

#include "ViewRig.h"
#include "platform/qt/GridPainter.h"
#include "platform/qt/Theme.h"

namespace qrv {
namespace {

constexpr Colour kGrey{0x808080};

class MainWindow : public testing::Test {
 protected:
    void SetUp() override { rig.startWithNewFile(); }
    GridView& grid(const char* name) { return *ViewRig::find<GridView>(rig.mainView(), name); }
    QLineEdit* editorOf(const char* name) {
        return grid(name).viewport()->findChild<QLineEdit*>(QStringLiteral("gridEditor"));
    }
    std::int32_t constantOf(std::int16_t block, std::int16_t slot) {
        bench().db.ConstantSeek(block, slot);
        return bench().db.ConstantValue();
    }
    Workbench& bench() { return rig.program.bench; }
    BlockPanel& blocks() { return rig.program.mainWindow.blocks; }

    ViewRig rig;
};

// --- the focus of a grid ---

TEST_F(MainWindow, AGridIsGreyWhileItOrItsEditorHasTheFocus) {
    rig.place("ADD");
    ViewRig::clickCell(grid("fg3"), 1, 1);
    grid("fg3").setFocus();
    EXPECT_EQ(blocks().fg3.selectionColour(), kGrey);
    QTest::keyClick(&grid("fg3"), Qt::Key_F2);
    ASSERT_NE(editorOf("fg3"), nullptr);
    EXPECT_EQ(blocks().fg3.selectionColour(), kGrey);
    QTest::keyClick(editorOf("fg3"), Qt::Key_Return);
    EXPECT_EQ(blocks().fg3.selectionColour(), kGrey);
    grid("Grid1").setFocus();
    EXPECT_EQ(blocks().fg3.selectionColour(), std::nullopt);
}

TEST_F(MainWindow, AGridLeftOutOfItsEditorIsGreyNoLonger) {
    rig.place("ADD");
    grid("fg2").setFocus();
    ViewRig::clickCell(grid("fg2"), 1, 1);
    QTest::keyClick(&grid("fg2"), Qt::Key_F2);
    ASSERT_NE(editorOf("fg2"), nullptr);
    grid("Grid1").setFocus();
    QTest::qWait(1);  // the edit ends when the focus has come to rest
    EXPECT_FALSE(grid("fg2").isEditing());
    EXPECT_EQ(blocks().fg2.selectionColour(), std::nullopt);
    grid("fg2").setFocus();
    EXPECT_EQ(blocks().fg2.selectionColour(), kGrey);
}

TEST_F(MainWindow, ARefusedTextKeepsTheFocusAndTheColour) {
    rig.place("ADD");
    grid("fg2").setFocus();
    ViewRig::clickCell(grid("fg2"), 1, 1);
    QTest::keyClicks(&grid("fg2"), QStringLiteral("x"));
    rig.boxes.expect("Enter A Block Number\n        0 to 704");
    grid("Grid1").setFocus();
    QTest::qWait(1);
    ASSERT_TRUE(grid("fg2").isEditing());
    EXPECT_TRUE(editorOf("fg2")->hasFocus());
    EXPECT_EQ(blocks().fg2.selectionColour(), kGrey);
    QTest::keyClick(editorOf("fg2"), Qt::Key_Escape);
}

TEST_F(MainWindow, AClickElsewhereStoresTheTypedValueAndIsHeeded) {
    rig.place("PID");
    ViewRig::clickCell(grid("Grid1"), 2, 1);
    ViewRig::clickCell(grid("fg3"), 2, 1);
    QTest::keyClicks(&grid("fg3"), QStringLiteral("7"));
    ASSERT_TRUE(grid("fg3").isEditing());
    ViewRig::clickCell(grid("Ig"), 1, 1);
    EXPECT_FALSE(grid("fg3").isEditing());
    EXPECT_EQ(bench().CurBlock, 600);
    EXPECT_TRUE(blocks().Label5.caption.starts_with("BLOCK 600 - ")) << blocks().Label5.caption;
    EXPECT_TRUE(grid("Ig").hasFocus());
    ViewRig::clickCell(grid("Grid1"), 2, 1);
    EXPECT_EQ(blocks().Label5.caption, "BLOCK 10 - PID");
    EXPECT_EQ(blocks().fg3.text(2, 1).substr(0, 1), "7");
}

TEST_F(MainWindow, AClickIntoTheOtherDataGridStoresTheTypedValueInItsOwnRow) {
    rig.place("PID");
    ViewRig::clickCell(grid("fg3"), 2, 1);
    const std::string first = blocks().fg3.text(1, 1);
    QTest::keyClicks(&grid("fg3"), QStringLiteral("7"));
    ASSERT_TRUE(grid("fg3").isEditing());
    ViewRig::clickCell(grid("fg2"), 2, 1);
    EXPECT_FALSE(grid("fg3").isEditing());
    EXPECT_EQ(blocks().fg3.text(1, 1), first);
    EXPECT_EQ(blocks().fg3.text(2, 1).substr(0, 1), "7");
    EXPECT_TRUE(grid("fg2").hasFocus());
    EXPECT_EQ(blocks().fg2.row(), 2);
    EXPECT_EQ(blocks().fg2.selectionColour(), kGrey);
    EXPECT_EQ(blocks().fg3.selectionColour(), std::nullopt);
}

TEST_F(MainWindow, AClickElsewhereIsNotHeededWhereTheTextIsRefused) {
    rig.place("ADD");
    ViewRig::clickCell(grid("fg2"), 1, 1);
    QTest::keyClicks(&grid("fg2"), QStringLiteral("x"));
    rig.boxes.expect("Enter A Block Number\n        0 to 704");
    ViewRig::clickCell(grid("Ig"), 1, 1);
    ASSERT_TRUE(grid("fg2").isEditing());
    EXPECT_TRUE(editorOf("fg2")->hasFocus());
    EXPECT_EQ(blocks().Label5.caption, "BLOCK 10 - ADD");
    QTest::keyClick(editorOf("fg2"), Qt::Key_Escape);
}

TEST_F(MainWindow, AKeyToAnotherBlockStoresTheTypedValueFirst) {
    rig.place("PID");
    ViewRig::clickCell(grid("fg3"), 2, 1);
    QTest::keyClicks(&grid("fg3"), QStringLiteral("7"));
    ASSERT_NE(editorOf("fg3"), nullptr);
    QTest::keyClick(editorOf("fg3"), Qt::Key_F6);
    EXPECT_FALSE(grid("fg3").isEditing());
    EXPECT_EQ(constantOf(10, 5), 7000);  // behind four inputs, the second parameter
    EXPECT_EQ(bench().SeekBlock, 11);
    EXPECT_EQ(blocks().fg3.text(2, 1), "");
}

TEST_F(MainWindow, AKeyToAnotherBlockDoesNothingWhereTheTextIsRefused) {
    rig.place("ADD");
    ViewRig::clickCell(grid("fg2"), 1, 1);
    QTest::keyClicks(&grid("fg2"), QStringLiteral("x"));
    rig.boxes.expect("Enter A Block Number\n        0 to 704");
    QTest::keyClick(editorOf("fg2"), Qt::Key_F5);
    ASSERT_TRUE(grid("fg2").isEditing());
    EXPECT_EQ(bench().SeekBlock, 10);
    QTest::keyClick(editorOf("fg2"), Qt::Key_Escape);
}

TEST_F(MainWindow, AKeyAlongTheGridStoresTheTypedValueInItsOwnRowFirst) {
    for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_End}) {
        rig.place("PID");
        ViewRig::clickCell(grid("fg3"), 2, 1);
        QTest::keyClicks(&grid("fg3"), QStringLiteral("7"));
        ASSERT_NE(editorOf("fg3"), nullptr);
        QTest::keyClick(editorOf("fg3"), key, Qt::ControlModifier);
        EXPECT_FALSE(grid("fg3").isEditing()) << key;
        EXPECT_EQ(constantOf(10, 5), 7000) << key;
        EXPECT_GT(blocks().fg3.row(), 2) << key;
        rig.boxes.expect({.text = "Replace PID With PID", .buttons = Buttons::YesNo}, Answer::Yes);
    }
    rig.place("PID");
}

TEST_F(MainWindow, AKeyThatMeansNothingLeavesTheTypedValueOpen) {
    rig.place("PID");
    ViewRig::clickCell(grid("fg3"), 2, 1);
    QTest::keyClicks(&grid("fg3"), QStringLiteral("7"));
    ASSERT_NE(editorOf("fg3"), nullptr);
    QTest::keyClick(editorOf("fg3"), Qt::Key_Shift);
    QTest::keyClick(editorOf("fg3"), Qt::Key_F2);
    ASSERT_TRUE(grid("fg3").isEditing());
    EXPECT_EQ(editorOf("fg3")->text(), "7");
    QTest::keyClick(editorOf("fg3"), Qt::Key_Escape);
}

TEST_F(MainWindow, ATypedValueLeftForTheBlockNumberLetsTheNumberBeTyped) {
    rig.place("PID");
    ViewRig::clickCell(grid("fg3"), 2, 1);
    QTest::keyClicks(&grid("fg3"), QStringLiteral("7"));
    ASSERT_TRUE(grid("fg3").isEditing());
    auto* box = ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock");
    QTest::mouseClick(box, Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !grid("fg3").isEditing(); }));
    EXPECT_EQ(constantOf(10, 5), 7000);
    EXPECT_TRUE(box->hasFocus());
}

TEST_F(MainWindow, TheFocusOfOneDataGridTakesTheOthersSelectionToItsFirstRow) {
    rig.place("PID");
    ViewRig::clickCell(grid("fg3"), 4, 1);
    EXPECT_EQ(blocks().fg3.row(), 4);
    grid("fg3").setFocus();
    grid("fg2").setFocus();
    EXPECT_EQ(blocks().fg3.row(), 1);
    EXPECT_EQ(blocks().fg3.selectionColour(), std::nullopt);
    EXPECT_EQ(blocks().fg2.selectionColour(), kGrey);
}

TEST_F(MainWindow, AnEditorIsAsLargeAsItsCell) {
    rig.place("ADD");
    ViewRig::clickCell(grid("fg3"), 1, 1);
    QTest::keyClick(&grid("fg3"), Qt::Key_F2);
    ASSERT_NE(editorOf("fg3"), nullptr);
    EXPECT_EQ(editorOf("fg3")->geometry(), grid("fg3").rectOf(1, 1));
}

// --- what is in sight ---

TEST_F(MainWindow, AnotherBlocksRowsBeginAtTheTop) {
    rig.place("PID");
    for (const char* name : {"fg2", "fg3"}) {
        auto* bar = grid(name).verticalScrollBar();
        bar->setValue(bar->maximum());
        ASSERT_GT(bar->value(), 0) << name;
    }
    ViewRig::clickCell(grid("Grid1"), 1, 2);
    EXPECT_EQ(grid("fg2").verticalScrollBar()->value(), 0);
    EXPECT_EQ(grid("fg3").verticalScrollBar()->value(), 0);
}

TEST_F(MainWindow, AnotherBlocksFirstRowIsWholeWhereARowWasScrolledByHalf) {
    rig.place("PID");
    auto* bar = grid("fg3").verticalScrollBar();
    bar->setValue(grid("fg3").rowHeight(0) / 2);
    ASSERT_GT(bar->value(), 0);
    ViewRig::clickCell(grid("Grid1"), 1, 2);
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(MainWindow, SavingLeavesTheRowsInSight) {
    rig.place("PID");
    auto* bar = grid("fg3").verticalScrollBar();
    bar->setValue(bar->maximum() / 2);
    const int rowInSight = blocks().fg3.topRow();
    ASSERT_GT(rowInSight, 1);
    ViewRig::choose(rig.mainView(), "mnuFileSave");
    EXPECT_EQ(blocks().fg3.topRow(), rowInSight);
    EXPECT_EQ(grid("fg3").rowAt(0) + 1, rowInSight);
}

// --- which cell is marked ---

/// The heading that stands out: of a column of the block map, from 0; -1 for none.
int markedColumn(GridView& grid) { return dynamic_cast<GridHeading&>(*grid.horizontalHeader()).marked(); }

TEST_F(MainWindow, NoColumnIsMarkedBeforeABlockIsChosen) {
    EXPECT_EQ(markedColumn(grid("Grid1")), -1);
    ViewRig::clickCell(grid("Grid1"), 2, 4);
    EXPECT_EQ(markedColumn(grid("Grid1")), 3);
    // Filled anew behind a save: the selection stands on block 599, and nobody has chosen it.
    ViewRig::choose(rig.mainView(), "mnuFileSave");
    EXPECT_EQ(blocks().Grid1.row(), 60);
    EXPECT_EQ(blocks().Grid1.col(), 10);
    EXPECT_EQ(markedColumn(grid("Grid1")), -1);
    QTest::keyClick(&grid("Grid1"), Qt::Key_F6);
    EXPECT_EQ(markedColumn(grid("Grid1")), 0);
    auto* box = ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock");
    QTest::keyClicks(box, QStringLiteral("25"));
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(markedColumn(grid("Grid1")), 5);
    // Behind a download, which changes no program, and behind an upload.
    blocks().refillGrid1();
    rig.host.refreshAll();
    EXPECT_EQ(markedColumn(grid("Grid1")), 5);
    blocks().fill_grid1();
    rig.host.refreshAll();
    EXPECT_EQ(markedColumn(grid("Grid1")), -1);
}

TEST_F(MainWindow, TabIntoTheMapShowsWhereTheKeysBeginThoughNoBlockIsChosen) {
    GridView& map = grid("Grid1");
    const auto edgeOfLast = [&map] {
        const QRect cell = map.rectOf(60, 10);
        return map.viewport()->grab().toImage().pixelColor(cell.left() + 1, cell.center().y());
    };
    ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock")->setFocus();
    map.verticalScrollBar()->setValue(0);
    ASSERT_FALSE(map.viewport()->rect().contains(map.rectOf(60, 10)));
    map.setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(map.hasFocus());
    ASSERT_TRUE(map.viewport()->rect().contains(map.rectOf(60, 10)));
    EXPECT_EQ(edgeOfLast(), theme::accent());
    EXPECT_EQ(markedColumn(map), -1);
    ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock")->setFocus();
    EXPECT_NE(edgeOfLast(), theme::accent());
}

// --- the window in front ---

class PaintCount final : public QObject {
 public:
    explicit PaintCount(QWidget* widget) { widget->installEventFilter(this); }
    int count = 0;

 protected:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

TEST_F(MainWindow, AGridIsNotPaintedAnewWhereItsWindowComesToTheFront) {
    QWidget* blockMap = grid("Grid1").viewport();
    QWidget* boards = grid("Ig").viewport();
    PaintCount blockMapPaints(blockMap);
    PaintCount boardsPaints(boards);
    // Both are of one window: what waits to be painted is painted with the boards.
    const auto paintBoards = [&] {
        boardsPaints.count = 0;
        boards->update();
        return QTest::qWaitFor([&] { return boardsPaints.count > 0; });
    };
    ASSERT_TRUE(paintBoards());
    ASSERT_TRUE(paintBoards());
    blockMapPaints.count = 0;
    QEvent front(QEvent::WindowActivate);
    QApplication::sendEvent(blockMap, &front);
    ASSERT_TRUE(paintBoards());
    EXPECT_EQ(blockMapPaints.count, 0);
}

// --- a small window ---

TEST_F(MainWindow, ASmallWindowScrollsAndSquashesNothing) {
    rig.mainView().resize(640, 330);
    QApplication::processEvents();
    ASSERT_EQ(rig.mainView().height(), 330);
    auto* map = ViewRig::find<QLabel>(rig.mainView(), "Label6");
    EXPECT_GE(map->height(), map->sizeHint().height());
    auto* download = ViewRig::find<QAbstractButton>(rig.mainView(), "Command1");
    EXPECT_GE(download->height(), download->sizeHint().height());
}

// --- double clicks ---

void doubleClickCell(GridView& grid, int row, int col) {
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, grid.rectOf(row, col).center());
}

TEST_F(MainWindow, ADoubleClickOnAParameterOpensItsEditor) {
    rig.place("PID");
    doubleClickCell(grid("fg3"), 2, 1);
    ASSERT_NE(editorOf("fg3"), nullptr);
    EXPECT_EQ(editorOf("fg3")->text().toStdString(), blocks().fg3.text(2, 1));
}

TEST_F(MainWindow, ADoubleClickOnAnAuxReadersParameterPicksTheOutput) {
    rig.place("AABO");
    rig.boxes.expect(Notice{.text = "ZERO has no auxiliary analog outputs", .title = "Output Not Found"});
    doubleClickCell(grid("fg3"), 1, 1);
    EXPECT_EQ(editorOf("fg3"), nullptr);
    EXPECT_EQ(blocks().fg3.text(1, 2), "NO AUX OUTPUT");
}

// --- the function list ---

TEST_F(MainWindow, TabIntoTheFunctionListChoosesNothing) {
    ViewRig::choose(rig.mainView(), "mnuEditCfg");
    auto* list = ViewRig::find<QListWidget>(rig.mainView(), "List1");
    ASSERT_EQ(list->currentRow(), -1);
    list->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(list->hasFocus());
    EXPECT_EQ(blocks().CurFuncName, "NOP");
    EXPECT_EQ(blocks().List1.listIndex, -1);
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(blocks().List1.listIndex, 0);
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(blocks().CurFuncName, "ZERO");
}

// --- the menu ---

TEST_F(MainWindow, AnAmpersandInARecentPathIsShownAsOne) {
    rig.program.mainWindow.recentFiles.add("/plant/boiler & pump.qrv");
    rig.host.refreshAll();
    EXPECT_EQ(ViewRig::find<QAction>(rig.mainView(), "mnuRecentFile1")->text(), "/plant/boiler && pump.qrv");
}

TEST_F(MainWindow, AboutCopiesTheVersionsForAReport) {
    rig.whenUp("frmAbout", [](FormView& view) {
        QGuiApplication::clipboard()->clear();
        ViewRig::click<QAbstractButton>(view, "cmdCopy");
        const QStringList lines = QGuiApplication::clipboard()->text().split(QLatin1Char('\n'));
        ASSERT_EQ(lines.size(), 4);
        EXPECT_EQ(lines[0], "QRV Edit 6.73");
        EXPECT_TRUE(lines[1].startsWith("Function catalogue "));
        EXPECT_TRUE(lines[2].startsWith("SQLite 3."));
        EXPECT_EQ(lines[3], ViewRig::find<QLabel>(view, "lblToolkit")->text());
        EXPECT_TRUE(lines[3].startsWith("Qt 6."));
        ViewRig::click<QAbstractButton>(view, "Command1");
    });
    ViewRig::choose(rig.mainView(), "mnuAbout");
}

TEST(MainWindowWithoutAFile, AnEntryThatNeedsOneSaysSo) {
    ViewRig rig("none.qrv");
    rig.boxes.expect(Notice{.text = "none.qrv Does Not Exist", .title = "Warning!"});
    rig.host.load(rig.program.splash);
    rig.program.splash.Timer1_Timer();
    ViewRig::choose(rig.mainView(), "mnuEditComments");
    auto* bar = ViewRig::find<QStatusBar>(rig.mainView(), "statusBar");
    EXPECT_EQ(bar->currentMessage(), "No configuration is open: File, New or Open begins");
    bar->clearMessage();
    ViewRig::click<QAbstractButton>(rig.mainView(), "Command1");
    EXPECT_EQ(bar->currentMessage(), "No configuration is open: File, New or Open begins");
    bar->clearMessage();
    ViewRig::choose(rig.mainView(), "mnuEditBlk");
    EXPECT_EQ(bar->currentMessage(), "");
    QTest::keyClicks(ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock"), QStringLiteral("12"));
    QTest::keyClick(ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock"), Qt::Key_Return);
    EXPECT_EQ(bar->currentMessage(), "No configuration is open: File, New or Open begins");
}

// --- the boards ---

TEST(Boards, AListLeftWithoutAChoiceGivesBackTheBoard) {
    ViewRig rig;
    rig.dialogs.answer(rig.path("a.qrv"));
    rig.whenUp("FrmAsk", [](FormView& view) { ViewRig::click<QAbstractButton>(view, "Command1"); });
    rig.host.load(rig.program.splash);
    rig.program.splash.Timer1_Timer();
    ASSERT_TRUE(QTest::qWaitFor([&rig] { return rig.host.isVisible(rig.program.general); }));
    FormView& window = *rig.host.viewOf(rig.program.general);
    Grid& boards = rig.program.general.fg;
    ASSERT_TRUE(boards.edit(1, 1, "TRIAC OUTPUT      610033"));
    rig.host.refreshAll();
    auto* view = ViewRig::find<GridView>(window, "fg");
    QTest::keyClick(view, Qt::Key_F2);
    auto* list = view->viewport()->findChild<QComboBox*>(QStringLiteral("gridEditor"));
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->currentIndex(), -1);
    list->hidePopup();
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_FALSE(view->isEditing());
    EXPECT_EQ(boards.text(1, 1), "TRIAC OUTPUT      610033");
    ViewRig::choose(window, "mnuexit");
}

TEST(Boards, AClosedListChoosesNothingByWheelOrKeys) {
    ViewRig rig;
    rig.dialogs.answer(rig.path("a.qrv"));
    rig.whenUp("FrmAsk", [](FormView& view) { ViewRig::click<QAbstractButton>(view, "Command1"); });
    rig.host.load(rig.program.splash);
    rig.program.splash.Timer1_Timer();
    ASSERT_TRUE(QTest::qWaitFor([&rig] { return rig.host.isVisible(rig.program.general); }));
    FormView& window = *rig.host.viewOf(rig.program.general);
    Grid& boards = rig.program.general.fg;
    auto* view = ViewRig::find<GridView>(window, "fg");
    ViewRig::clickCell(*view, 1, 1);
    if (!view->isEditing()) QTest::keyClick(view, Qt::Key_F2);
    QPointer<QComboBox> list = view->viewport()->findChild<QComboBox*>(QStringLiteral("gridEditor"));
    ASSERT_NE(list, nullptr);
    const auto isOpen = [&list] { return list->view()->isVisible(); };
    const int before = list->currentIndex();
    list->hidePopup();
    QWheelEvent turn(QPointF(4, 4), list->mapToGlobal(QPointF(4, 4)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(list, &turn);
    ASSERT_TRUE(view->isEditing());
    EXPECT_EQ(list->currentIndex(), before);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_D}) {
        list->hidePopup();
        ASSERT_FALSE(isOpen());
        QTest::keyClick(list, key);
        ASSERT_TRUE(view->isEditing()) << key;
        EXPECT_EQ(list->currentIndex(), before) << key;
        EXPECT_TRUE(isOpen()) << key;
    }
    list->hidePopup();
    QTest::keyClick(list, Qt::Key_Escape);
    EXPECT_FALSE(view->isEditing());
    EXPECT_EQ(boards.text(1, 1), "NONE");
    ViewRig::choose(window, "mnuexit");
}

}  // namespace
}  // namespace qrv
