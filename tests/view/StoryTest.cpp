// A new user's first day, with real keys and clicks: a block program is written, saved, found again as it was, and
// found again where it may only be read.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <array>

#include "ViewRig.h"

namespace qrv {
namespace {

struct Placed {
    int block;
    const char* function;
};

constexpr std::array kProgram{Placed{10, "ADD"},  Placed{11, "MUL"},    Placed{12, "LIMIT"}, Placed{13, "FILTER"},
                              Placed{14, "SQRT"}, Placed{15, "LININT"}, Placed{16, "HICMP"}, Placed{17, "AND2"},
                              Placed{18, "NOT"},  Placed{19, "OPSP"}};

struct Wire {
    int block;
    int input;  // from 1
    const char* source;
};

constexpr std::array kWires{Wire{11, 1, "10"}, Wire{11, 2, "19"}, Wire{12, 1, "11"}, Wire{13, 1, "10"},
                            Wire{13, 2, "17"}, Wire{14, 1, "11"}, Wire{15, 1, "10"}, Wire{17, 1, "16"},
                            Wire{17, 2, "3"},  Wire{18, 1, "17"}};

struct Slot {
    int slot;
    int choice;  // in the list, from 0
    const char* board;
};

constexpr std::array kBoards{Slot{1, 1, "ANALOG INPUT      610014"}, Slot{2, 0, "DISCRETE INPUT   610012"},
                             Slot{3, 4, "RELAY OUTPUT     610027"}};

/// One run of the program, at whose window the user sits.
class Desk {
 public:
    explicit Desk(const std::string& commandLine = "") : rig(commandLine) {}

    void start() {
        rig.host.load(rig.program.splash);
        rig.program.splash.Timer1_Timer();
        ASSERT_TRUE(QTest::qWaitFor([this] { return rig.host.isVisible(rig.program.general); }));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&general()));
    }
    void startWithNew(const std::string& path) {
        rig.dialogs.answer(path);
        rig.whenUp("FrmAsk", [](FormView& ask) { QTest::keyClick(ask.focusWidget(), Qt::Key_Return); });
        start();
    }
    /// Answers No to the save question of the close box, and waits for the program's end.
    void quit(Answer answer) {
        rig.boxes.expect({.text = "Save changes to " + rig.program.bench.CurrentFileName + "?",
                          .title = "Warning!",
                          .buttons = Buttons::YesNoCancel,
                          .icon = Icon::Question},
                         answer);
        QTimer::singleShot(0, qApp, [this] { main().close(); });
        EXPECT_EQ(QApplication::exec(), 0);
    }

    FormView& main() { return rig.mainView(); }
    FormView& general() { return *rig.host.viewOf(rig.program.general); }
    GridView& grid(const char* name) { return *ViewRig::find<GridView>(main(), name); }
    [[nodiscard]] std::string cell(const char* name, int row, int col) {
        return grid(name)
            .model()
            ->index(row - 1, name == std::string("fg2") ? col : col - 1)
            .data()
            .toString()
            .toStdString();
    }
    [[nodiscard]] std::string blockText(int block) {
        return block < 600 ? cell("Grid1", block / 10 + 1, block % 10 + 1)
                           : cell("Ig", (block - 600) % 15 + 1, (block - 600) / 15 + 1);
    }
    [[nodiscard]] std::string label(const char* name) {
        return ViewRig::find<QLabel>(main(), name)->text().toStdString();
    }
    [[nodiscard]] std::string comment() {
        return ViewRig::find<QPlainTextEdit>(main(), "txtCmt")->toPlainText().toStdString();
    }

    /// Presses Alt and a letter that the window's menu bar underlines.
    static void pressAlt(FormView& window, Qt::Key letter) {
        window.activateWindow();  // there is no window manager that does it when a list has dropped down
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, letter, Qt::AltModifier);
    }
    /// Chooses an entry by the letters that its menu underlines.
    static void chooseByKeys(FormView& window, Qt::Key menu, Qt::Key entry) {
        pressAlt(window, menu);
        QWidget* popup = QApplication::activePopupWidget();
        ASSERT_NE(popup, nullptr);
        QTest::keyClick(popup, entry);
    }
    void clickBlock(int block) {
        if (block < 600) {
            ViewRig::clickCell(grid("Grid1"), block / 10 + 1, block % 10 + 1);
        } else {
            ViewRig::clickCell(grid("Ig"), (block - 600) % 15 + 1, (block - 600) / 15 + 1);
        }
    }

    ViewRig rig;
};

void typeInto(QWidget* widget, const char* text) {
    widget->setFocus();
    for (const char* letter = text; *letter; ++letter) {
        *letter == '\n' ? QTest::keyClick(widget, Qt::Key_Return) : QTest::keyClick(widget, *letter);
    }
}

class Story : public testing::Test {
 protected:
    void nameIt(Desk& desk) {
        auto* title = ViewRig::find<QLineEdit>(desk.general(), "txtTitle");
        EXPECT_TRUE(title->hasFocus());
        QTest::keyClicks(title, QStringLiteral("Boiler house"));
        QTest::keyClick(title, Qt::Key_Tab);
        auto* cfg = ViewRig::find<QLineEdit>(desk.general(), "txtCfg");
        EXPECT_TRUE(cfg->hasFocus());
        QTest::keyClicks(cfg, QStringLiteral("Revision A"));
    }
    void describeIt(Desk& desk) {
        auto* comments = ViewRig::find<QPlainTextEdit>(desk.general(), "Text1");
        desk.rig.whenUp("frmvga", [&desk](FormView& description) {
            EXPECT_FALSE(desk.general().isVisible());
            typeInto(ViewRig::find<QPlainTextEdit>(description, "txtCmt"), "Two boilers\nand their pumps");
            Desk::pressAlt(description, Qt::Key_D);
        });
        QTest::mouseDClick(comments->viewport(), Qt::LeftButton, {}, comments->viewport()->rect().center());
        EXPECT_TRUE(desk.general().isVisible());
        EXPECT_EQ(comments->toPlainText(), "Two boilers\nand their pumps");
    }
    void setBoards(Desk& desk) {
        auto* boards = ViewRig::find<GridView>(desk.general(), "fg");
        for (const Slot& slot : kBoards) {
            ViewRig::clickCell(*boards, slot.slot, 1);
            QTest::keyClick(boards, Qt::Key_F2);
            auto* list = boards->viewport()->findChild<QComboBox*>(QStringLiteral("gridEditor"));
            ASSERT_NE(list, nullptr);
            QTest::keyClick(list->view(), Qt::Key_Home);
            for (int n = 0; n < slot.choice; ++n) QTest::keyClick(list->view(), Qt::Key_Down);
            QTest::keyClick(list->view(), Qt::Key_Return);
            EXPECT_EQ(boards->model()->index(slot.slot, 0).data().toString(), slot.board);
        }
    }
    void leaveGeneral(Desk& desk) {
        Desk::pressAlt(desk.general(), Qt::Key_D);
        ASSERT_TRUE(desk.main().isVisible());
        EXPECT_FALSE(desk.general().isVisible());
    }
    void placeFunctions(Desk& desk) {
        Desk::chooseByKeys(desk.main(), Qt::Key_E, Qt::Key_F);
        auto* list = ViewRig::find<QListWidget>(desk.main(), "List1");
        ASSERT_TRUE(list->isVisible());
        for (const Placed& placed : kProgram) {
            QListWidgetItem* item = list->findItems(QString::fromLatin1(placed.function), Qt::MatchFixedString).first();
            list->scrollToItem(item);
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
            desk.clickBlock(placed.block);
            EXPECT_EQ(desk.blockText(placed.block), placed.function);
        }
        Desk::chooseByKeys(desk.main(), Qt::Key_E, Qt::Key_B);
        EXPECT_FALSE(list->isVisible());
    }
    void wireThem(Desk& desk) {
        for (const Wire& wire : kWires) {
            desk.clickBlock(wire.block);
            ViewRig::typeInto(desk.grid("fg2"), wire.input, 1, wire.source);
        }
    }
    void setParameters(Desk& desk) {
        desk.clickBlock(10);
        ViewRig::typeInto(desk.grid("fg3"), 1, 1, "12.5");
        desk.clickBlock(15);
        ViewRig::typeInto(desk.grid("fg3"), 1, 1, "feed water");
        desk.rig.boxes.expect("Invalid Parameter Value\nMin   2  Max  6");
        ViewRig::typeInto(desk.grid("fg3"), 2, 1, "7");
        auto* editor = desk.grid("fg3").viewport()->findChild<QLineEdit*>(QStringLiteral("gridEditor"));
        ASSERT_NE(editor, nullptr);
        QTest::keyClick(editor, Qt::Key_Escape);
    }
    void commentABlock(Desk& desk) {
        desk.clickBlock(10);
        desk.rig.whenUp("FormComment", [](FormView& window) {
            EXPECT_EQ(window.windowTitle(), "Block Comments");
            typeInto(ViewRig::find<QPlainTextEdit>(window, "Text1"), "Sum of both\nfeeders");
            Desk::pressAlt(window, Qt::Key_D);
        });
        auto* box = ViewRig::find<QPlainTextEdit>(desk.main(), "txtCmt");
        QTest::mouseDClick(box->viewport(), Qt::LeftButton, {}, box->viewport()->rect().center());
        EXPECT_EQ(desk.comment(), "Sum of both\nfeeders");
    }

    void expectGeneral(Desk& desk) {
        EXPECT_EQ(ViewRig::find<QLineEdit>(desk.general(), "txtTitle")->text(), "Boiler house");
        EXPECT_EQ(ViewRig::find<QLineEdit>(desk.general(), "txtCfg")->text(), "Revision A");
        EXPECT_EQ(ViewRig::find<QPlainTextEdit>(desk.general(), "Text1")->toPlainText(),
                  "Two boilers\nand their pumps");
        auto* boards = ViewRig::find<GridView>(desk.general(), "fg");
        EXPECT_EQ(boards->model()->index(0, 0).data().toString(), "CPU BOARD - 610050");
        for (const Slot& slot : kBoards) EXPECT_EQ(boards->model()->index(slot.slot, 0).data().toString(), slot.board);
        for (const int slot : {4, 5, 6}) EXPECT_EQ(boards->model()->index(slot, 0).data().toString(), "NONE");
    }
    void expectProgram(Desk& desk) {
        for (const Placed& placed : kProgram) EXPECT_EQ(desk.blockText(placed.block), placed.function);
        EXPECT_EQ(desk.blockText(20), " ");
        for (const Wire& wire : kWires) {
            desk.clickBlock(wire.block);
            EXPECT_EQ(desk.cell("fg2", wire.input, 1), wire.source) << wire.block;
            EXPECT_EQ(desk.cell("fg2", wire.input, 2), "MAIN") << wire.block;
        }
        desk.clickBlock(10);
        EXPECT_EQ(desk.label("Label5"), "BLOCK 10 - ADD");
        EXPECT_EQ(desk.cell("fg3", 1, 1), "12.500");
        EXPECT_EQ(desk.label("Label4"), "COMMENTS:");
        EXPECT_EQ(desk.comment(), "Sum of both\nfeeders");
        desk.clickBlock(15);
        EXPECT_EQ(desk.cell("fg3", 1, 1), "FEED WATER");
        EXPECT_EQ(desk.blockText(615), "AI");
        EXPECT_EQ(desk.blockText(623), ".");
        EXPECT_EQ(desk.blockText(644), "DI");
        EXPECT_EQ(desk.blockText(645), "RO");
        desk.clickBlock(645);
        EXPECT_EQ(desk.label("Label5"), "BLOCK 645 - ROUT");
    }

    TemporaryFolder folder;
    std::string path = folder.file("boiler house.qrv");
};

TEST_F(Story, AProgramIsWrittenAndFoundAgain) {
    {
        Desk desk;
        desk.startWithNew(path);
        nameIt(desk);
        describeIt(desk);
        setBoards(desk);
        leaveGeneral(desk);
        EXPECT_EQ(desk.main().windowTitle().toStdString(), "QRV Edit - " + path);
        placeFunctions(desk);
        wireThem(desk);
        setParameters(desk);
        commentABlock(desk);
        expectProgram(desk);
        Desk::chooseByKeys(desk.main(), Qt::Key_F, Qt::Key_S);
        desk.quit(Answer::No);
    }
    {
        Desk desk("\"" + path + "\"");
        desk.start();
        expectGeneral(desk);
        leaveGeneral(desk);
        expectProgram(desk);
        desk.quit(Answer::No);
    }
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    Desk desk("\"" + path + "\"");
    desk.start();
    expectGeneral(desk);
    EXPECT_TRUE(ViewRig::find<QLineEdit>(desk.general(), "txtTitle")->isReadOnly());
    desk.rig.boxes.expect("The file is read-only.");
    leaveGeneral(desk);
    EXPECT_EQ(desk.main().windowTitle().toStdString(), "QRV Edit - " + path + " - READ ONLY");
    for (const char* entry : {"mnuFileSave", "mnuFileUpload", "mnuEditCfg"}) {
        EXPECT_FALSE(ViewRig::find<QAction>(desk.main(), entry)->isEnabled()) << entry;
    }
    EXPECT_TRUE(ViewRig::find<QAction>(desk.main(), "mnuFileSaveAs")->isEnabled());
    expectProgram(desk);
    desk.quit(Answer::Yes);
}

}  // namespace
}  // namespace qrv
