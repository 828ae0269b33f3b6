#include "platform/qt/FormMenu.h"

#include <QAction>
#include <QKeyEvent>
#include <QKeySequence>

namespace qrv {

QAction* FormMenu::onlyChoice(const QKeyEvent& key) const {
    const Qt::KeyboardModifiers others = ~(Qt::ShiftModifier | Qt::AltModifier);
    const QString typed = key.text();
    if ((key.modifiers() & others) || typed.size() != 1) return nullptr;
    const QKeySequence letter = QKeySequence::mnemonic(QLatin1Char('&') + typed);
    if (letter.isEmpty()) return nullptr;
    QAction* found = nullptr;
    for (QAction* entry : actions()) {
        if (!entry->isVisible() || !entry->isEnabled() || QKeySequence::mnemonic(entry->text()) != letter) continue;
        if (found) return nullptr;
        found = entry;
    }
    return found;
}

void FormMenu::keyPressEvent(QKeyEvent* event) {
    QAction* chosen = onlyChoice(*event);
    if (!chosen) return QMenu::keyPressEvent(event);
    // As if the user had gone there and pressed Enter: the toolkit closes the menu first.
    setActiveAction(chosen);
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QMenu::keyPressEvent(&enter);
}

}  // namespace qrv
