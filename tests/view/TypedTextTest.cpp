// What becomes of the characters that a user types or pastes into a box or a cell, and of those that he leaves alone.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <string>
#include <vector>

#include "ViewRig.h"
#include "platform/RunTimeError.h"
#include "platform/qt/Application.h"
#include "platform/qt/Texts.h"

namespace qrv {
namespace {

class TypedText : public testing::Test {
 protected:
    void SetUp() override { rig.startWithNewFile(); }

    static void paste(QWidget* box, const QString& text) {
        QGuiApplication::clipboard()->setText(text);
        QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
    }
    /// Types a text and takes it away again.
    static void typeAndDelete(QWidget* box, const QString& text) {
        QTest::keyClicks(box, text);
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(box, Qt::Key_Delete);
    }
    FormView& info() {
        ViewRig::choose(rig.mainView(), "mnuEditComments");
        return *rig.host.viewOf(rig.program.general);
    }
    void showBlock(int block) { ViewRig::clickCell(grid("Grid1"), 1, block + 1); }
    /// Opens the comments of one of the first blocks.
    void comment(int block, const std::function<void(FormView&)>& act) {
        showBlock(block);
        auto* shown = ViewRig::find<QPlainTextEdit>(rig.mainView(), "txtCmt");
        rig.whenUp("FormComment", [act](FormView& window) {
            act(window);
            ViewRig::choose(window, "mnuexit");
        });
        QTest::mouseDClick(shown->viewport(), Qt::LeftButton, {}, shown->viewport()->rect().center());
    }
    void storeComment(std::int16_t block, const std::string& text) {
        db().BlockSeek(block);
        db().BlockEdit();
        db().BlockComment(text);
        db().BlockUpdate();
    }
    std::string commentOf(std::int16_t block) {
        db().BlockSeek(block);
        return db().BlockComment();
    }
    std::string secondCommentOf(std::int16_t block) {
        db().BlockSeek(block);
        return db().BlockVisioComment();
    }
    /// Pastes a text over a cell's and presses Enter.
    void pasteInto(const char* name, int row, const QString& text) {
        ViewRig::clickCell(grid(name), row, 1);
        QTest::keyClick(&grid(name), Qt::Key_F2);
        auto* editor = grid(name).viewport()->findChild<QLineEdit*>(QStringLiteral("gridEditor"));
        ASSERT_NE(editor, nullptr);
        paste(editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
        EXPECT_FALSE(grid(name).isEditing());
    }
    std::int32_t constantOf(std::int16_t block, std::int16_t slot) {
        db().ConstantSeek(block, slot);
        return db().ConstantValue();
    }
    GridView& grid(const char* name) { return *ViewRig::find<GridView>(rig.mainView(), name); }
    db1& db() { return rig.program.bench.db; }

    ViewRig rig;
};

// --- one line ---

TEST_F(TypedText, APastedLineBreakIsNotInALine) {
    auto* title = ViewRig::find<QLineEdit>(info(), "txtTitle");
    paste(title, QStringLiteral("AA\nBB\n"));
    EXPECT_EQ(db().CommentTitle(), "AA BB");
    EXPECT_EQ(title->text(), "AA BB");
    auto* configuration = ViewRig::find<QLineEdit>(info(), "txtCfg");
    paste(configuration, QStringLiteral("CC\tDD\r\n"));
    EXPECT_EQ(db().CommentConfig(), "CC DD");
    EXPECT_EQ(configuration->text(), "CC DD");
}

TEST_F(TypedText, ACharacterThatTheCodePageLacksIsShownAsItIsStored) {
    auto* title = ViewRig::find<QLineEdit>(info(), "txtTitle");
    title->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([title] { return title->hasFocus(); }));
    paste(title, QStringLiteral("5 kΩ at 20 °C"));
    EXPECT_EQ(db().CommentTitle(),
              "5 k? at 20 \xB0"
              "C");
    EXPECT_EQ(title->text(), QStringLiteral("5 k? at 20 °C"));
    EXPECT_EQ(title->cursorPosition(), 13);
}

TEST_F(TypedText, APastedLineBreakIsNotInACell) {
    rig.place("LININT");
    pasteInto("fg3", 1, QStringLiteral("aa\nbb\n"));
    EXPECT_EQ(rig.program.mainWindow.blocks.fg3.text(1, 1), "AA BB");
    db().ParmstrSeek(10, rig.program.bench.CurInputs);
    EXPECT_EQ(db().ParmstrStr(), "AA BB");
}

TEST_F(TypedText, ANumberCopiedFromAnotherTableIsANumber) {
    rig.place("PID");
    pasteInto("fg2", 1, QStringLiteral("12\n"));
    EXPECT_EQ(constantOf(10, 0), 12);
    EXPECT_EQ(rig.program.mainWindow.blocks.fg2.text(1, 1), "12");
    pasteInto("fg3", 2, QStringLiteral("7.5\r\n"));
    EXPECT_EQ(constantOf(10, 5), 7500);  // behind four inputs, the second parameter
}

TEST_F(TypedText, ALineThatComesUpHasNothingToUndo) {
    typeAndDelete(ViewRig::find<QLineEdit>(info(), "txtTitle"), QStringLiteral("secret"));
    ViewRig::choose(info(), "mnuexit");
    auto* title = ViewRig::find<QLineEdit>(info(), "txtTitle");
    QTest::keyClick(title, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(title->text(), "");
    EXPECT_EQ(db().CommentTitle(), "");
    QTest::keyClicks(title, QStringLiteral("A"));
    QTest::keyClick(title, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(title->text(), "");
}

TEST_F(TypedText, TheCaretStaysWhereLettersAreTypedIntoALine) {
    auto* title = ViewRig::find<QLineEdit>(info(), "txtTitle");
    QTest::keyClicks(title, QStringLiteral("AD"));
    QTest::keyClick(title, Qt::Key_Left);
    QTest::keyClicks(title, QStringLiteral("BC"));
    EXPECT_EQ(title->text(), "ABCD");
    EXPECT_EQ(db().CommentTitle(), "ABCD");
}

// --- many lines ---

TEST_F(TypedText, ACommentThatComesUpHasNothingToUndo) {
    comment(0, [](FormView& window) {
        typeAndDelete(ViewRig::find<QPlainTextEdit>(window, "Text2"), QStringLiteral("secret"));
    });
    comment(1, [](FormView& window) {
        auto* box = ViewRig::find<QPlainTextEdit>(window, "Text2");
        QTest::keyClick(box, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(box->toPlainText(), "");
    });
    EXPECT_EQ(secondCommentOf(0), "");
    EXPECT_EQ(secondCommentOf(1), "");
}

TEST_F(TypedText, EveryCharacterOfACommentStaysButForWhatIsTyped) {
    std::string text;
    for (int code = 0x20; code <= 0xFF; ++code) text += static_cast<char>(code);
    storeComment(0, text + "\r\nof day");
    comment(0, [](FormView& window) { QTest::keyClicks(ViewRig::find<QPlainTextEdit>(window, "Text1"), "x"); });
    EXPECT_EQ(commentOf(0), "x" + text + "\r\nof day");
}

TEST_F(TypedText, ALineBreakOfAnotherKindIsALineBreak) {
    comment(0, [](FormView& window) {
        auto* box = ViewRig::find<QPlainTextEdit>(window, "Text2");
        QTest::keyClicks(box, QStringLiteral("a"));
        QTest::keyClick(box, Qt::Key_Return, Qt::ShiftModifier);
        QTest::keyClicks(box, QStringLiteral("b"));
    });
    EXPECT_EQ(secondCommentOf(0), "a\r\nb");
}

TEST_F(TypedText, ANoBreakSpaceLeavesTheSelectionAndIsCopied) {
    storeComment(0,
                 "Time\xA0of\xA0"
                 "day");
    showBlock(0);
    auto* shown = ViewRig::find<QPlainTextEdit>(rig.mainView(), "txtCmt");
    shown->selectAll();
    rig.host.refreshAll();
    EXPECT_TRUE(shown->textCursor().hasSelection());
    shown->copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("Time\u00A0of\u00A0day"));
}

// --- the toolkit's signals ---

TEST_F(TypedText, AnErrorOfTheSearchForABlockGoesToTheProgramsEdge) {
    auto* box = ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock");
    box->setText(QStringLiteral("ain"));
    db().close_database();
    std::vector<ErrorNumber> errors;
    Application::setEnding([&errors](const RunTimeError& error) { errors.push_back(error.number()); });
    EXPECT_NO_THROW(Q_EMIT box->returnPressed());
    Application::setEnding([](const RunTimeError&) { FAIL() << "no error was expected"; });
    EXPECT_EQ(errors, std::vector<ErrorNumber>{ErrorNumber::ObjectNotSet});
}

}  // namespace
}  // namespace qrv
