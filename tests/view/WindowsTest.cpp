// Every window of the program: each control is found by its given name, each action by its entry's, and a short session
// with real keys and clicks ends in the file.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QHelpEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QToolBar>
#include <QToolTip>
#include <memory>
#include <string>
#include <vector>

#include "ViewRig.h"

namespace qrv {
namespace {

using Names = std::vector<const char*>;

struct WindowRow {
    const char* form;
    Names controls;
};

/// Makes each window through its factory, as the host does.
std::unique_ptr<FormView> windowOf(ViewRig& rig, const std::string& name) {
    EditorProgram& program = rig.program;
    BlockPanel& blocks = program.mainWindow.blocks;
    for (Form* form : std::initializer_list<Form*>{
             &program.splash, &program.mainWindow, &program.ask, &program.recent, &program.about, &program.general,
             &program.general.description, &program.blockQuestion, &program.comm, &program.allOutputs,
             &program.chosenOutputs, &program.tagQuestion, &program.warn, &program.select, &program.download,
             &program.upload, &blocks.comment, &blocks.picker}) {
        if (form->name() == name) return std::unique_ptr<FormView>(rig.host.makeView(*form));
    }
    return nullptr;
}

class EveryWindow : public testing::TestWithParam<WindowRow> {};

TEST_P(EveryWindow, HasItsControlsByName) {
    ViewRig rig;
    const auto view = windowOf(rig, GetParam().form);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->objectName().toStdString(), GetParam().form);
    for (const char* name : GetParam().controls) {
        EXPECT_NE(view->findChild<QObject*>(QString::fromLatin1(name)), nullptr) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Forms, EveryWindow,
    testing::Values(
        WindowRow{"frmStart", {"Image1", "lblTitle", "lblDescription", "lblVersion"}},
        WindowRow{"Form3",
                  {"Grid1", "Ig", "fg2", "fg3", "List1", "List2", "Command1", "cmdViewAlarmInfo", "txtCmt", "Label1",
                   "Label2", "Label3", "Label4", "Label5", "Label6", "Label7", "Label8", "Label9", "Label10"}},
        WindowRow{"MGrid", {"Grid2", "Command1", "Command2", "Command3", "mnuexit", "lblRate"}},
        WindowRow{
            "Monitor",
            {"Command1", "Command2", "Command3", "Command4", "Command5", "Command6", "munexit", "analog1", "analog25"}},
        WindowRow{"frmWarn", {"Label1", "Label9", "Command1", "Command2"}},
        WindowRow{"frmSelect",
                  {"Label1", "Blocks", "Alarms", "Pager", "Egus", "Modbus", "Menus", "Charts", "btnAll", "btnNone",
                   "Command1", "Command2"}},
        WindowRow{"frmDownload",
                  {"Download", "Cancel", "Progress", "Label6", "Label7", "Label8", "VerNum", "Label3", "Label5",
                   "Label1", "Label2", "progressSentence"}},
        WindowRow{"frmUpload",
                  {"Label5", "Blocks", "Modbus", "Alarms", "Pager", "Egus", "Charts", "Menus", "btnAll", "btnNone",
                   "Continue", "Cancel", "Uploading", "Section", "BytesRecLbl", "BytesReceived"}},
        WindowRow{"frmTag", {"Text1", "Text2", "Picture1", "Label3", "Command1"}},
        WindowRow{"FrmAsk", {"Frame1", "Option1", "Option2", "Option3", "Command1", "Command2"}},
        WindowRow{"FrmRecent", {"Command1", "Command2"}}, WindowRow{"frmAbout", {"lblVersion", "Command1"}},
        WindowRow{"frmGeneral",
                  {"txtTitle", "txtCfg", "Text1", "fg", "Label1", "Label2", "Label3", "Label4", "mnuexit"}},
        WindowRow{"frmvga", {"txtCmt", "mnuexit"}}, WindowRow{"FormComment", {"Text1", "Text2", "mnuexit"}},
        WindowRow{"frmBlock", {"Combo1", "Text1", "Lab1", "Command1", "Command2"}},
        WindowRow{"frmAaboPick", {"List1", "List2"}},
        WindowRow{"frmComm", {"Combo1", "Combo2", "Combo3", "Label1", "Label2", "Label3", "mnuExit"}}),
    [](const auto& row) { return row.param.form; });

/// Widgets that take the keyboard and have no name to be read by.
std::vector<std::string> namelessIn(const FormView& view) {
    std::vector<std::string> found;
    for (const QWidget* widget : view.findChildren<QWidget*>()) {
        const bool isInput = qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget) ||
                             qobject_cast<const QAbstractItemView*>(widget) || qobject_cast<const QComboBox*>(widget);
        const bool isPart = widget->objectName().isEmpty() || widget->objectName().startsWith(QLatin1String("qt_"));
        if (isInput && !isPart && widget->accessibleName().isEmpty())
            found.push_back(widget->objectName().toStdString());
    }
    return found;
}

TEST_P(EveryWindow, NamesItsInputsForAssistiveTools) {
    ViewRig rig;
    const auto view = windowOf(rig, GetParam().form);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(namelessIn(*view), std::vector<std::string>{});
}

TEST_P(EveryWindow, ReachesItsInputsByTab) {
    ViewRig rig;
    const auto view = windowOf(rig, GetParam().form);
    ASSERT_NE(view, nullptr);
    for (const QWidget* widget : view->findChildren<QWidget*>()) {
        const bool isInput = qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget) ||
                             qobject_cast<const QAbstractItemView*>(widget) || qobject_cast<const QComboBox*>(widget) ||
                             qobject_cast<const QAbstractButton*>(widget);
        const bool isPart = widget->objectName().isEmpty() || widget->objectName().startsWith(QLatin1String("qt_"));
        if (isInput && !isPart) {
            EXPECT_TRUE(widget->focusPolicy() & Qt::TabFocus) << widget->objectName().toStdString();
        }
    }
}

TEST(Form3View, HasEveryMenuEntryInOrder) {
    ViewRig rig;
    const auto view = windowOf(rig, "Form3");
    const std::vector<std::pair<const char*, Names>> menus = {
        {"mnuFile",
         {"mnuFileNew",     "mnuFileOpen",     "mnuFileSave",         "mnuFileSaveAs",       "mnuFileSep1",
          "mnuFileUpload",  "mnuFileDownload", "mnuFileImportSelect", "mnuFileExportSelect", "mnuFileStickChartSelect",
          "mnuFileCompare", "mnuFileCheck",    "mnuFileSep2a",        "mnuFilePrint",        "mnuFileSep3",
          "mnuFormExit",    "mnuRecentFile0",  "mnuRecentFile1",      "mnuRecentFile2",      "mnuRecentFile3",
          "mnuRecentFile4"}},
        {"mnuEdit",
         {"mnuEditCfg", "mnuEditBlk", "mnuEditSep1", "mnuEditLCD", "mnuEditAlarm", "mnuEditChart", "mnuEditEGU",
          "mnuEditPager", "mnuEditLoop", "mnuEditComments", "mnuEditPoll", "mnuEditSep2", "mnuEditComPort"}},
        {"mnuView", {"mnuViewAll", "mnuViewSel", "mnuAbout"}},
    };
    for (const auto& [menuName, entries] : menus) {
        auto* menu = view->findChild<QMenu*>(QString::fromLatin1(menuName));
        ASSERT_NE(menu, nullptr) << menuName;
        std::vector<std::string> found;
        for (const QAction* action : menu->actions()) found.push_back(action->objectName().toStdString());
        EXPECT_EQ(found, std::vector<std::string>(entries.begin(), entries.end()));
    }
    EXPECT_EQ(view->findChild<QAction*>("mnuFileSaveAs")->text(), "Sav&e As");
}

TEST(Form3View, AdditionsAreAbsentInTheClassicLook) {
    ViewRig modern;
    ViewRig classic("", Extras::Absent);
    const auto withThem = windowOf(modern, "Form3");
    const auto without = windowOf(classic, "Form3");
    for (const char* name : {"toolBar", "goToBlock", "mnuTools", "mnuHelp", "constantsMeter", "functionFilter"}) {
        EXPECT_NE(withThem->findChild<QObject*>(QString::fromLatin1(name)), nullptr) << name;
        EXPECT_EQ(without->findChild<QObject*>(QString::fromLatin1(name)), nullptr) << name;
    }
}

/// The names of the disabled entries of the main window, and of those that say that they are coming.
struct Disabled {
    std::vector<std::string> entries;
    std::vector<std::string> explained;
};

Disabled disabledEntries(Extras extras) {
    ViewRig rig("", extras);
    rig.startWithNewFile();
    Disabled found;
    for (const char* name : {"mnuFile", "mnuEdit", "mnuView"}) {
        const auto* menu = ViewRig::find<QMenu>(rig.mainView(), name);
        for (const QAction* action : menu->actions()) {
            if (action->isSeparator() || action->isEnabled() || !action->isVisible()) continue;
            found.entries.push_back(action->objectName().toStdString());
            const bool isRead = menu->toolTipsVisible() && action->toolTip() == "Coming: not in this version yet" &&
                                action->statusTip() == action->toolTip();
            if (isRead) found.explained.push_back(found.entries.back());
        }
    }
    return found;
}

TEST(Form3View, EachEntryThatIsComingSaysSo) {
    const Disabled found = disabledEntries(Extras::Shown);
    EXPECT_GT(found.entries.size(), 5U);
    EXPECT_EQ(found.explained, found.entries);
}

TEST(ClassicLook, NoEntrySaysThatItIsComing) {
    const Disabled found = disabledEntries(Extras::Absent);
    EXPECT_GT(found.entries.size(), 5U);
    EXPECT_EQ(found.explained, std::vector<std::string>{});
}

TEST(TransferBoxes, EachThatIsComingSaysSo) {
    ViewRig rig;
    for (const char* form : {"frmSelect", "frmUpload"}) {
        const auto view = windowOf(rig, form);
        view->refresh();
        for (const char* box : {"Blocks", "Alarms", "Pager", "Egus", "Modbus", "Menus", "Charts"}) {
            const auto* widget = ViewRig::find<QAbstractButton>(*view, box);
            EXPECT_EQ(widget->toolTip(), widget->isEnabled() ? "" : "Coming: not in this version yet") << form << box;
        }
        EXPECT_FALSE(ViewRig::find<QAbstractButton>(*view, "Charts")->isEnabled());
    }
}

TEST(ClassicLook, OnlyTheAlarmButtonHasAToolTip) {
    ViewRig rig("", Extras::Absent);
    rig.startWithNewFile();
    std::vector<std::string> tips;
    for (const char* name : {"Form3", "FrmAsk", "FrmRecent", "frmAbout", "frmGeneral", "FormComment", "frmBlock",
                             "frmComm", "MGrid", "Monitor", "frmTag", "frmWarn", "frmSelect", "frmDownload",
                             "frmUpload", "frmAaboPick", "frmvga", "frmStart"}) {
        const auto window = windowOf(rig, name);
        ASSERT_NE(window, nullptr) << name;
        for (const QWidget* child : window->findChildren<QWidget*>()) {
            if (!child->toolTip().isEmpty()) tips.push_back(child->objectName().toStdString());
        }
    }
    EXPECT_EQ(tips, std::vector<std::string>{"cmdViewAlarmInfo"});
}

/// What stands in a tool tip where the pointer rests on a cell whose column shows nearly nothing of it.
QString tipOfCutCell(Extras extras) {
    ViewRig rig("", extras);
    rig.startWithNewFile();
    auto* grid = ViewRig::find<GridView>(rig.mainView(), "Ig");
    grid->setFillsWidth(false);
    grid->setColumnWidth(0, 4);
    const QPoint place = grid->rectOf(1, 1).center();
    QHelpEvent rest(QEvent::ToolTip, place, grid->viewport()->mapToGlobal(place));
    QApplication::sendEvent(grid->viewport(), &rest);
    const QString text = QToolTip::text();
    QToolTip::hideText();
    return text;
}

TEST(ClassicLook, ACutCellIsNotReadInFull) {
    EXPECT_NE(tipOfCutCell(Extras::Shown), "");
    ASSERT_TRUE(QTest::qWaitFor([] { return QToolTip::text().isEmpty(); }));  // the tip goes with a delay
    EXPECT_EQ(tipOfCutCell(Extras::Absent), "");
}

TEST(FormCommentView, TellsWhichCommentIsWhichUnlessTheLookIsClassic) {
    ViewRig modern;
    ViewRig classic("", Extras::Absent);
    const auto window = windowOf(modern, "FormComment");
    EXPECT_EQ(ViewRig::find<QLabel>(*window, "whichIsWhich")->text(),
              "Above the comment; below a second one, shown instead unless it is empty");
    EXPECT_EQ(windowOf(classic, "FormComment")->findChild<QStatusBar*>(), nullptr);
}

TEST(TransferWindows, ProgressSentenceIsAbsentInTheClassicLook) {
    ViewRig modern;
    ViewRig classic("", Extras::Absent);
    for (const auto& [form, told] : {std::pair{"frmDownload", "Progress"}, std::pair{"frmUpload", "BytesReceived"}}) {
        EXPECT_NE(windowOf(modern, form)->findChild<QObject*>("progressSentence"), nullptr) << form;
        const auto plain = windowOf(classic, form);
        EXPECT_EQ(plain->findChild<QObject*>("progressSentence"), nullptr) << form;
        EXPECT_NE(plain->findChild<QObject*>(told), nullptr) << form;
    }
}

class Session : public testing::Test {
 protected:
    void SetUp() override { rig.startWithNewFile(); }
    GridView& grid(const char* name) { return *ViewRig::find<GridView>(rig.mainView(), name); }

    ViewRig rig;
};

TEST_F(Session, NewFileStandsInTheMainWindow) {
    ASSERT_TRUE(rig.host.isVisible(rig.program.mainWindow));
    EXPECT_EQ(rig.mainView().windowTitle().toStdString(), "QRV Edit - " + rig.path("boiler.qrv"));
    EXPECT_EQ(grid("Grid1").model()->index(0, 0).data().toString(), "ZERO");
    EXPECT_EQ(grid("Ig").model()->index(0, 0).data().toString(), "AI");
}

TEST_F(Session, ClickShowsABlock) {
    ViewRig::clickCell(grid("Ig"), 1, 1);
    EXPECT_EQ(ViewRig::find<QLabel>(rig.mainView(), "Label5")->text(), "BLOCK 600 - AIN");
}

TEST_F(Session, PlacedFunctionIsShownAndStored) {
    rig.place("ADD");
    EXPECT_EQ(grid("Grid1").model()->index(1, 0).data().toString(), "ADD");
    EXPECT_EQ(rig.program.bench.FnOfBlock[10], 10);
}

TEST_F(Session, AssignmentViewTakesThePlaceOfTheData) {
    auto* list = ViewRig::find<QListWidget>(rig.mainView(), "List1");
    EXPECT_FALSE(list->isVisible());
    ViewRig::choose(rig.mainView(), "mnuEditCfg");
    EXPECT_TRUE(list->isVisible());
    EXPECT_FALSE(grid("fg2").isVisible());
    ViewRig::choose(rig.mainView(), "mnuEditBlk");
    EXPECT_FALSE(list->isVisible());
    EXPECT_TRUE(grid("fg2").isVisible());
}

TEST_F(Session, TypedBlockNumberWiresAnInput) {
    rig.place("ADD");
    ViewRig::typeInto(grid("fg2"), 1, 1, "1");
    EXPECT_EQ(grid("fg2").model()->index(0, 4).data().toString(), "FULL");
    rig.boxes.expect("Enter A Block Number\n        0 to 704");
    ViewRig::typeInto(grid("fg2"), 1, 1, "705");
    EXPECT_TRUE(grid("fg2").isEditing());
    QTest::keyClick(grid("fg2").viewport()->findChild<QLineEdit*>("gridEditor"), Qt::Key_Escape);
    EXPECT_EQ(grid("fg2").model()->index(0, 1).data().toString(), "1");
}

TEST_F(Session, SourceWithMoreOutputsOpensThePicker) {
    rig.place("ADD");
    rig.whenUp("frmAaboPick", [](FormView& view) {
        EXPECT_EQ(view.windowTitle(), "BLOCK OUTPUT SELECTOR");
        auto* list = ViewRig::find<QListWidget>(view, "List1");
        ASSERT_EQ(list->count(), 2);
        EXPECT_EQ(list->item(0)->text(), "MAIN");
        EXPECT_EQ(list->item(1)->text(), "UNFILTERED VALUE");
        list->setCurrentRow(1);
        QTest::keyClick(list, Qt::Key_Return);
    });
    ViewRig::typeInto(grid("fg2"), 1, 1, "600");
    EXPECT_EQ(grid("fg2").model()->index(0, 2).data().toString(), "RAW");
    EXPECT_FALSE(grid("fg2").isEditing());
}

// A click into the other grid ends an edit, and moves the selection of the grid that was left: the value must be where
// it was typed by then.
TEST_F(Session, AnEditLeftForTheOtherGridBelongsToItsOwnRow) {
    rig.place("PID");
    const QString action = grid("fg3").model()->index(0, 0).data().toString();
    ViewRig::clickCell(grid("fg3"), 2, 1);
    QTest::keyClicks(&grid("fg3"), "7");
    ASSERT_TRUE(grid("fg3").isEditing());
    ViewRig::clickCell(grid("fg2"), 3, 1);
    EXPECT_EQ(grid("fg3").model()->index(1, 0).data().toString(), "7.000");
    EXPECT_EQ(grid("fg3").model()->index(0, 0).data().toString(), action);
    db1& db = rig.program.bench.db;
    db.ConstantSeek(10, 5);  // behind four inputs, the second parameter
    EXPECT_EQ(db.ConstantValue(), 7000);
}

TEST_F(Session, F6GoesToTheNextBlockFromTheParameters) {
    ViewRig::clickCell(grid("Grid1"), 1, 1);
    grid("fg3").setFocus();
    QTest::keyClick(&grid("fg3"), Qt::Key_F6);
    EXPECT_EQ(ViewRig::find<QLabel>(rig.mainView(), "Label5")->text().left(9), "BLOCK 1 -");
}

TEST_F(Session, WhoWaitsForTheConfigurationInfoWaitsThroughItsDescription) {
    bool isBack = false;
    rig.whenUp("frmvga", [](FormView& description) { ViewRig::choose(description, "mnuexit"); });
    rig.whenUp("frmGeneral", [this, &isBack](FormView& info) {
        auto* comments = ViewRig::find<QPlainTextEdit>(info, "Text1");
        QTest::mouseDClick(comments->viewport(), Qt::LeftButton, {}, comments->viewport()->rect().center());
        rig.whenUp("frmGeneral", [&isBack](FormView& again) {
            isBack = true;
            ViewRig::choose(again, "mnuexit");
        });
    });
    rig.host.showModal(rig.program.general);
    EXPECT_TRUE(isBack);
    EXPECT_TRUE(rig.host.isVisible(rig.program.mainWindow));
}

TEST_F(Session, GoToBlockFindsNumbersAndNames) {
    auto* box = ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock");
    QTest::keyClicks(box, QStringLiteral("602"));
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(ViewRig::find<QLabel>(rig.mainView(), "Label5")->text(), "BLOCK 602 - ROUT");
}

TEST_F(Session, GoToBlockSaysWhereThereIsNoBoard) {
    auto* box = ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock");
    const QString before = ViewRig::find<QLabel>(rig.mainView(), "Label5")->text();
    QTest::keyClicks(box, QStringLiteral("640"));
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(ViewRig::find<QStatusBar>(rig.mainView(), "statusBar")->currentMessage(), "Block 640 has no board");
    EXPECT_EQ(ViewRig::find<QLabel>(rig.mainView(), "Label5")->text(), before);
}

TEST_F(Session, GoToBlockFindsTheNextBlockOfAFunctionOfTheBoardsToo) {
    auto* box = ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock");
    auto* shown = ViewRig::find<QLabel>(rig.mainView(), "Label5");
    QTest::keyClicks(box, QStringLiteral("ain"));
    // A new file has the two of the CPU board.
    for (const int block : {600, 601, 600}) {
        QTest::keyClick(box, Qt::Key_Return);
        EXPECT_EQ(shown->text(), QStringLiteral("BLOCK %1 - AIN").arg(block));
    }
}

TEST_F(Session, SaveHasItsKeysInTheMenuAndSaysThatItIsDone) {
    auto* save = rig.mainView().findChild<QAction*>(QStringLiteral("mnuFileSave"));
    ASSERT_NE(save, nullptr);
    EXPECT_EQ(save->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_S));
    QTest::keyClick(&rig.mainView(), Qt::Key_S, Qt::ControlModifier);
    const QString words = ViewRig::find<QLabel>(rig.mainView(), "transferEnd")->text();
    EXPECT_TRUE(words.endsWith(QStringLiteral(".qrv is saved."))) << words.toStdString();
}

TEST_F(Session, FunctionPageFollowsTheBlock) {
    ViewRig::choose(rig.mainView(), "mnuHelpFunction");
    ViewRig::clickCell(grid("Ig"), 3, 1);
    const QString page = ViewRig::find<QPlainTextEdit>(rig.mainView(), "functionPage")->toPlainText();
    EXPECT_TRUE(page.contains(QLatin1String(" ROUT  "))) << page.toStdString();
}

TEST_F(Session, StepButtonsPlaceNothingInTheAssignmentView) {
    ViewRig::choose(rig.mainView(), "mnuEditCfg");
    const auto before = rig.program.bench.FnOfBlock;
    ViewRig::choose(rig.mainView(), "nextBlock");
    EXPECT_EQ(rig.program.bench.FnOfBlock, before);
}

TEST_F(Session, CloseBoxAsksTheSaveQuestion) {
    rig.boxes.expect({.text = "Save changes to " + rig.path("boiler.qrv") + "?",
                      .buttons = Buttons::YesNoCancel,
                      .icon = Icon::Question},
                     Answer::Cancel);
    rig.mainView().close();
    EXPECT_TRUE(rig.host.isVisible(rig.program.mainWindow));
}

}  // namespace
}  // namespace qrv
