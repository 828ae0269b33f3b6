#include "platform/qt/TextBoxes.h"

#include <QMimeData>
#include <QShowEvent>
#include <QTextCursor>
#include <QTextDocument>

#include "platform/qt/Texts.h"

namespace qrv {

void LineBox::showEvent(QShowEvent* event) {
    QLineEdit::showEvent(event);
    if (event->spontaneous()) return;
    const int caret = cursorPosition();
    // Set anew, for that empties the history.
    setText(text());
    setCursorPosition(caret);
}

QString PageBox::exactText() const { return withPlainBreaks(document()->toRawText()); }

QMimeData* PageBox::createMimeDataFromSelection() const {
    auto* copied = new QMimeData;
    copied->setText(withPlainBreaks(textCursor().selectedText()));
    return copied;
}

void PageBox::showEvent(QShowEvent* event) {
    QPlainTextEdit::showEvent(event);
    if (!event->spontaneous()) document()->clearUndoRedoStacks();
}

}  // namespace qrv
