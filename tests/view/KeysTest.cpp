// The windows without a mouse: where the focus is plain to see, what Enter does in a dialog, which entry a letter
// chooses.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QImage>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <map>

#include "ViewRig.h"
#include "platform/qt/Theme.h"

namespace qrv {
namespace {

class Keys : public testing::Test {
 protected:
    void SetUp() override { rig.startWithNewFile(); }
    GridView& grid(const char* name) { return *ViewRig::find<GridView>(rig.mainView(), name); }
    QLineEdit& goTo() { return *ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock"); }
    void goToBlock(const char* number) {
        goTo().setFocus();
        goTo().selectAll();
        QTest::keyClicks(&goTo(), QString::fromLatin1(number));
        QTest::keyClick(&goTo(), Qt::Key_Return);
    }

    ViewRig rig;
};

// --- the focus of a grid ---

/// The outline of a grid, at the middle of its left edge.
QColor outlineOf(GridView& grid) { return grid.grab().toImage().pixelColor(0, grid.height() / 2); }

/// Pixels of the selected cell's frame, at the middle of its left edge.
int frameOf(GridView& grid, int row, int col) {
    const QImage shown = grid.viewport()->grab().toImage();
    const QRect cell = grid.rectOf(row, col);
    int width = 0;
    while (shown.pixelColor(cell.left() + width, cell.center().y()) == theme::accent()) ++width;
    return width;
}

TEST_F(Keys, EveryGridShowsTheFocusByItsOutlineAndByTheFrameOfItsCell) {
    rig.place("PID");
    ViewRig::clickCell(grid("Grid1"), 2, 1);
    const struct {
        const char* grid;
        int row;
        int col;
    } places[] = {{"Grid1", 2, 1}, {"Ig", 1, 1}, {"fg2", 1, 1}, {"fg3", 1, 1}};
    for (const auto& place : places) {
        GridView& view = grid(place.grid);
        goTo().setFocus();
        EXPECT_NE(outlineOf(view), theme::accent()) << place.grid;
        EXPECT_LE(frameOf(view, place.row, place.col), 1) << place.grid;
        view.setFocus(Qt::TabFocusReason);
        EXPECT_EQ(outlineOf(view), theme::accent()) << place.grid;
        EXPECT_EQ(frameOf(view, place.row, place.col), 2) << place.grid;
    }
}

TEST_F(Keys, AGridKeepsItsOutlineWhileItsCellIsEdited) {
    rig.place("PID");
    GridView& parameters = grid("fg3");
    ViewRig::clickCell(parameters, 2, 1);
    QTest::keyClick(&parameters, Qt::Key_F2);
    ASSERT_TRUE(parameters.isEditing());
    EXPECT_EQ(outlineOf(parameters), theme::accent());
    goTo().setFocus();
    QTest::qWait(1);  // the edit ends when the focus has come to rest
    EXPECT_NE(outlineOf(parameters), theme::accent());
}

TEST_F(Keys, TheNumberGoneToIsMarkedOnlyWhileItsBoxHasTheFocus) {
    goToBlock("3");
    grid("Grid1").setFocus();
    EXPECT_EQ(goTo().text(), "3");
    EXPECT_FALSE(goTo().hasSelectedText());
    ViewRig::choose(rig.mainView(), "mnuToolsGoToBlock");
    EXPECT_EQ(goTo().selectedText(), "3");
}

// --- a dialog ---

TEST_F(Keys, EnterGoesOnFromTheBoxesOfADownload) {
    ViewRig& user = rig;
    user.whenUp("frmWarn", [](FormView& view) {
        view.activateWindow();
        auto* goOn = ViewRig::find<QPushButton>(view, "Command1");
        EXPECT_TRUE(QTest::qWaitFor([goOn] { return goOn->hasFocus(); }));
        QTest::keyClick(view.windowHandle(), Qt::Key_Return);
        EXPECT_FALSE(view.isVisible());
        if (view.isVisible()) goOn->click();
    });
    user.whenUp("frmSelect", [&user](FormView& view) {
        auto* blocks = ViewRig::find<QCheckBox>(view, "Blocks");
        EXPECT_TRUE(ViewRig::find<QPushButton>(view, "Command1")->isDefault());
        QTest::keyClick(blocks, Qt::Key_Space);
        user.boxes.expect("COM1: not available. Change the setting to another port.");
        user.boxes.expect(Notice{.text = "Could Not Open Comm Port", .title = "Comm Error"});
        QTest::keyClick(blocks, Qt::Key_Return);
        EXPECT_FALSE(view.isVisible());
        if (view.isVisible()) ViewRig::click<QAbstractButton>(view, "Command2");
    });
    ViewRig::choose(rig.mainView(), "mnuFileDownload");
}

/// How many pixels of a widget have a colour.
int countOf(QWidget& widget, const QColor& colour) {
    const QImage shown = widget.grab().toImage();
    int count = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) count += shown.pixelColor(x, y) == colour ? 1 : 0;
    }
    return count;
}

TEST_F(Keys, ACheckBoxWithTheFocusIsFramedAsTheDialogComesUp) {
    rig.whenUp("frmWarn", [](FormView& view) { ViewRig::click<QAbstractButton>(view, "Command1"); });
    rig.whenUp("frmSelect", [](FormView& view) {
        auto* blocks = ViewRig::find<QCheckBox>(view, "Blocks");
        auto* cancel = ViewRig::find<QPushButton>(view, "Command2");
        view.activateWindow();
        blocks->setFocus();
        EXPECT_TRUE(QTest::qWaitFor([blocks] { return blocks->hasFocus(); }));
        // The frame goes around the caption.
        const int captionWidth = blocks->fontMetrics().horizontalAdvance(blocks->text());
        EXPECT_GT(countOf(*blocks, theme::accent()), 2 * captionWidth);
        cancel->setFocus();
        EXPECT_LT(countOf(*blocks, theme::accent()), captionWidth);
        cancel->click();
    });
    ViewRig::choose(rig.mainView(), "mnuFileDownload");
}

// --- the menu ---

/// The visible entries that can be chosen.
std::map<QString, QStringList> choicesByLetter(const QMenu& menu) {
    std::map<QString, QStringList> found;
    for (const QAction* action : menu.actions()) {
        const QString letter = QKeySequence::mnemonic(action->text()).toString();
        if (!letter.isEmpty() && action->isVisible() && action->isEnabled()) found[letter] << action->objectName();
    }
    return found;
}

TEST_F(Keys, NoTwoEntriesThatCanBeChosenShareTheirLetter) {
    const QList<QMenu*> menus = rig.mainView().menuBar()->findChildren<QMenu*>(Qt::FindDirectChildrenOnly);
    ASSERT_GE(menus.size(), 5);
    for (const QMenu* menu : menus) {
        for (const auto& [letter, entries] : choicesByLetter(*menu)) {
            // The captions give these two the same letter.
            if (entries == QStringList{"mnuViewAll", "mnuAbout"}) continue;
            EXPECT_EQ(entries.size(), 1) << menu->objectName().toStdString() << ": " << entries.join(" ").toStdString();
        }
    }
}

TEST_F(Keys, AnEntryHasItsCaptionLetterForLetterWhetherItCanBeChosenOrNot) {
    for (const TopMenu& menu : rig.program.mainWindow.menu.menus()) {
        for (const MenuEntry& entry : menu.entries) {
            const auto* action = ViewRig::find<QAction>(rig.mainView(), entry.name.c_str());
            if (action->isSeparator() || !entry.tag.empty()) continue;
            EXPECT_EQ(action->text().toStdString(), entry.caption);
        }
    }
    const auto* coming = ViewRig::find<QAction>(rig.mainView(), "mnuFileExportSelect");
    EXPECT_FALSE(coming->isEnabled());
    EXPECT_EQ(coming->text(), "Data E&xport...");
}

/// An open menu of the main window's, as Alt and its letter open it.
class OpenMenu : public Keys {
 protected:
    QMenu* open(Qt::Key letter, const char* name) {
        rig.mainView().activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([this] { return rig.mainView().isActiveWindow(); }));
        QTest::keyClick(rig.mainView().windowHandle(), letter, Qt::AltModifier);
        auto* menu = ViewRig::find<QMenu>(rig.mainView(), name);
        EXPECT_TRUE(QTest::qWaitFor([menu] { return menu->isVisible(); }));
        return menu;
    }
    void expectQuestionAtTheEnd() {
        rig.boxes.expect({.text = "Save changes to " + rig.path("boiler.qrv") + "?",
                          .buttons = Buttons::YesNoCancel,
                          .icon = Icon::Question},
                         Answer::Cancel);
    }
};

TEST_F(OpenMenu, AltFAndXLeaves) {
    QMenu* file = open(Qt::Key_F, "mnuFile");
    expectQuestionAtTheEnd();
    QTest::keyClick(file->windowHandle(), Qt::Key_X);
    EXPECT_FALSE(file->isVisible());
    rig.boxes.verify();
    file->hide();
}

TEST_F(OpenMenu, ALetterWithAltStillHeldChoosesToo) {
    QMenu* file = open(Qt::Key_F, "mnuFile");
    expectQuestionAtTheEnd();
    QTest::keyClick(file, Qt::Key_X, Qt::AltModifier);
    EXPECT_FALSE(file->isVisible());
    rig.boxes.verify();
    file->hide();
}

TEST_F(OpenMenu, ALetterThatNoEntryCanBeChosenByChoosesNone) {
    QMenu* file = open(Qt::Key_F, "mnuFile");
    QTest::keyClick(file, Qt::Key_I);  // "Data &Import..." is coming
    QTest::keyClick(file, Qt::Key_Z);
    QTest::keyClick(file, Qt::Key_X, Qt::ControlModifier);
    EXPECT_NE(file->activeAction(), ViewRig::find<QAction>(rig.mainView(), "mnuFormExit"));
    rig.boxes.verify();
    file->hide();
}

TEST_F(OpenMenu, ALetterOfTwoEntriesThatCanBeChosenGoesFromOneToTheOther) {
    QMenu* view = open(Qt::Key_V, "mnuView");
    for (const char* entry : {"mnuViewAll", "mnuAbout", "mnuViewAll"}) {
        if (view->activeAction() != nullptr && view->activeAction()->objectName() == QLatin1String(entry)) continue;
        QTest::keyClick(view, Qt::Key_A);
        ASSERT_TRUE(view->isVisible()) << entry;
        ASSERT_NE(view->activeAction(), nullptr) << entry;
        EXPECT_EQ(view->activeAction()->objectName(), entry);
    }
    view->hide();
}

}  // namespace
}  // namespace qrv
