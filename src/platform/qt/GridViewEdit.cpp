// The editing half of GridView.
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QTimer>
#include <algorithm>

#include "platform/qt/GridModel.h"
#include "platform/qt/GridPainter.h"
#include "platform/qt/GridView.h"
#include "platform/qt/Texts.h"
#include "platform/qt/Theme.h"

namespace qrv {

namespace {

/// A line to type into that is no larger than its cell, with the selected cell's frame.
class CellEditor final : public QLineEdit {
 public:
    explicit CellEditor(QWidget* parent) : QLineEdit(parent) {
        setFrame(false);
        setTextMargins(kFrame, 0, kFrame, 0);
    }

 protected:
    void paintEvent(QPaintEvent* event) override {
        QLineEdit::paintEvent(event);
        QPainter painter(this);
        painter.setPen(QPen(theme::accent(), kFrame));
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }

 private:
    static constexpr int kFrame = 2;  // pixels
};

}  // namespace

void GridView::tick() {
    run([this] {
        if (!grid_->beginEdit()) return;
        const bool ticked = isTicked(grid_->editText());
        if (!grid_->commitEdit(ticked ? "0" : "-1")) grid_->cancelEdit();
    });
}

void GridView::startEdit(const std::optional<QString>& typed) {
    if (!grid_ || editor_) return;
    bool begun = false;
    run([&] { begun = grid_->beginEdit(); });
    if (begun && grid_ && grid_->editing()) openEditor(typed);
}

QWidget* GridView::makeDropDown(const std::optional<QString>& typed) {
    auto* box = new QComboBox(viewport());
    for (const std::string& choice : grid_->comboList()) box->addItem(shownText(choice));
    box->setCurrentIndex(typed ? box->findText(*typed, Qt::MatchStartsWith)
                               : box->findText(shownText(grid_->editText())));
    connect(box, &QComboBox::activated, this, [this](int) { takeEdit(); });
    box->view()->installEventFilter(this);
    return box;
}

QWidget* GridView::makeLine(const std::optional<QString>& typed) {
    auto* line = new CellEditor(viewport());
    line->setText(typed ? *typed : shownText(grid_->editText()));
    if (!typed) line->selectAll();
    return line;
}

void GridView::openEditor(const std::optional<QString>& typed) {
    const bool drops = grid_->colKind(grid_->col()) == ColumnKind::DropDown;
    editor_ = drops ? makeDropDown(typed) : makeLine(typed);
    editor_->setObjectName(QStringLiteral("gridEditor"));
    editor_->setFont(font());
    editor_->setAccessibleName(
        model_->data(model_->indexOf(grid_->row(), grid_->col()), Qt::AccessibleTextRole).toString());
    editor_->installEventFilter(this);
    reveal();
    placeEditor();
    editor_->show();
    editor_->setFocus(Qt::OtherFocusReason);
    if (drops) static_cast<QComboBox*>(editor_)->showPopup();
}

void GridView::placeEditor() {
    if (!editor_ || !grid_) return;
    const QRect cell = visualRect(model_->indexOf(grid_->row(), grid_->col()));
    if (qobject_cast<const QLineEdit*>(editor_)) {
        editor_->setGeometry(cell);
        return;
    }
    const QSize least = editor_->minimumSizeHint();
    editor_->setGeometry(cell.x(), cell.y(), std::max(cell.width(), least.width()),
                         std::max(cell.height(), least.height()));
}

std::string GridView::editorText() const {
    if (const auto* box = qobject_cast<const QComboBox*>(editor_)) return typedText(box->currentText());
    const QString text = static_cast<const QLineEdit*>(editor_)->text();
    // A text that nobody changed stays as it is to the last character.
    return text == shownText(grid_->editText()) ? grid_->editText() : typedLine(text);
}

bool GridView::finishEdit() {
    if (!editor_ || !grid_) return true;
    if (committing_) return false;
    // A list that is left without a choice is an edit given up.
    if (qobject_cast<QComboBox*>(editor_)) {
        giveUpEdit();
        return true;
    }
    isBeingLeft_ = true;
    const bool done = commitEditor();
    isBeingLeft_ = false;
    return done;
}

/// By Enter, or by a choice in the list.
void GridView::takeEdit() {
    if (!editor_ || !grid_ || committing_) return;
    const auto* box = qobject_cast<const QComboBox*>(editor_);
    box && box->currentIndex() < 0 ? giveUpEdit() : static_cast<void>(commitEditor());
}

bool GridView::commitEditor() {
    committing_ = true;
    bool done = false;
    const std::string typed = editorText();
    run([&] { done = grid_->commitEdit(typed) || !grid_->editing(); });
    committing_ = false;
    if (!editor_) return true;
    if (done) {
        removeEditor();
        return true;
    }
    if (auto* line = qobject_cast<QLineEdit*>(editor_)) line->selectAll();
    editor_->setFocus(Qt::OtherFocusReason);
    return false;
}

/// Once the toolkit has finished moving the focus: a text that was refused meanwhile has it back.
void GridView::finishLeftEdit() {
    if (editor_ && window()->focusWidget() != editor_) finishEdit();
}

void GridView::giveUpEdit() {
    committing_ = true;
    run([this] { grid_->cancelEdit(); });
    committing_ = false;
    removeEditor();
}

/// Gives the grid the focus that the editor has, before the toolkit looks for another heir.
void GridView::removeEditor() {
    if (!editor_) return;
    QWidget* old = editor_;
    editor_ = nullptr;
    old->removeEventFilter(this);
    const QWidget* focused = window()->focusWidget();
    if (!focused || focused == old || old->isAncestorOf(focused)) setFocus(Qt::OtherFocusReason);
    old->setObjectName({});
    old->hide();
    old->deleteLater();
    followFocus();
}

/// A closed list chooses nothing by itself: a key that would go along it opens it again.
bool GridView::listKey(const QKeyEvent& event) {
    static constexpr Qt::Key kLeave[] = {Qt::Key_Tab, Qt::Key_Backtab};
    static constexpr Qt::Key kGo[] = {Qt::Key_Up,   Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown,
                                      Qt::Key_Home, Qt::Key_End,  Qt::Key_F4};
    if (std::ranges::find(kLeave, event.key()) != std::end(kLeave)) return false;
    const bool goes = std::ranges::find(kGo, event.key()) != std::end(kGo) || !event.text().isEmpty();
    if (goes) static_cast<QComboBox*>(editor_)->showPopup();
    return goes;
}

bool GridView::editorKey(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: takeEdit(); return true;
        case Qt::Key_Escape: giveUpEdit(); return true;
        case Qt::Key_Up:
        case Qt::Key_Down: {
            if (qobject_cast<QComboBox*>(editor_)) return listKey(*event);
            const int step = event->key() == Qt::Key_Up ? -1 : 1;
            const QModelIndex here = currentIndex();
            if (finishEdit() && grid_)
                setCurrentIndex(here.siblingAtRow(std::clamp(here.row() + step, 0, model_->rowCount() - 1)));
            return true;
        }
        default: return qobject_cast<QComboBox*>(editor_) && listKey(*event);
    }
}

bool GridView::eventFilter(QObject* watched, QEvent* event) {
    if (auto* box = qobject_cast<QComboBox*>(editor_); box && watched == box->view()) {
        const bool isEscape =
            event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
        if (!isEscape) return false;
        box->hidePopup();
        giveUpEdit();
        return true;
    }
    if (watched != editor_) return QTableView::eventFilter(watched, event);
    if (event->type() == QEvent::Wheel && qobject_cast<QComboBox*>(editor_)) return true;
    if (event->type() == QEvent::KeyPress) return editorKey(static_cast<QKeyEvent*>(event));
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::FocusOut && !committing_) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        const bool stays = reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason;
        if (!stays) QTimer::singleShot(0, this, &GridView::finishLeftEdit);
    }
    return QTableView::eventFilter(watched, event);
}

}  // namespace qrv
