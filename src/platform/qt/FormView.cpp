#include "platform/qt/FormView.h"

#include <QAction>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPushButton>

#include "platform/qt/Application.h"
#include "platform/qt/DesktopHost.h"
#include "platform/qt/GridView.h"
#include "platform/qt/Texts.h"

namespace qrv {

namespace {

constexpr int kBesideTitle = 150;  // pixels: a window's icon and its three buttons, with some air

}  // namespace

FormView::FormView(Form& form, DesktopHost& host) : form_(form), host_(host) {
    setObjectName(QString::fromStdString(form.name()));
    setContextMenuPolicy(Qt::NoContextMenu);
}

void FormView::refresh() {
    if (retired_ || mirroring_) return;
    mirroring_ = true;
    const QString title = shownUtf8(form_.caption);
    if (windowTitle() != title) setWindowTitle(title);
    for (const Event& mirror : mirrors_) mirror();
    mirroring_ = false;
    afterRefresh();
    if (afterRefresh_) afterRefresh_();
}

QSize FormView::sizeHint() const {
    QFont bold = font();
    bold.setBold(true);
    const int title = QFontMetrics(bold).horizontalAdvance(windowTitle());
    return QMainWindow::sizeHint().expandedTo({title + kBesideTitle, 0});
}

bool FormView::finishEdits() {
    for (GridView* grid : grids_) {
        if (!grid->finishEdit()) return false;
    }
    return true;
}

void FormView::tell(const Event& event) {
    if (retired_ || mirroring_ || !finishEdits()) return;
    perform(event);
}

void FormView::perform(const Event& event) {
    if (retired_) return;
    ++busy_;
    // An exception must not travel through the toolkit's event loop.
    Application::guarded([&] {
        event();
        host_.onEventDone();
    });
    --busy_;
    host_.refreshAll();
    if (retired_ && busy_ == 0) deleteLater();
}

void FormView::retire() {
    if (retired_) return;
    retired_ = true;
    mirrors_.clear();
    watches_.clear();
    for (GridView* grid : grids_) grid->detach();
    grids_.clear();
    hide();
    if (busy_ == 0) deleteLater();
}

void FormView::setDefaultButton(QPushButton* button) {
    default_ = button;
    button->setDefault(true);
}

void FormView::watchKeys(QWidget* widget, std::function<bool(Key)> pressed) {
    watches_.push_back({widget, std::move(pressed), {}});
    widget->installEventFilter(this);
}

void FormView::watchDoubleClick(QWidget* widget, const Event& clicked) {
    watches_.push_back({widget, {}, clicked});
    widget->installEventFilter(this);
}

QBoxLayout* FormView::makeBody() {
    auto* body = new QWidget(this);
    auto* layout = new QVBoxLayout(body);
    layout->setContentsMargins(12, 10, 12, 12);
    layout->setSpacing(8);
    setCentralWidget(body);
    return layout;
}

QAction* FormView::addDone(const QString& name, const QString& caption, const Event& triggered) {
    QAction* action = menuBar()->addAction(caption);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, [this, triggered] { tell(triggered); });
    return action;
}

void FormView::closeEvent(QCloseEvent* event) {
    event->ignore();
    tell([this] { host_.closeByUser(form_); });
}

void FormView::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && default_ && default_->isEnabled() && default_->isVisible()) {
        default_->click();
        return;
    }
    if (event->key() == Qt::Key_Escape && cancel_ && cancel_->isEnabled() && cancel_->isVisible()) {
        cancel_->click();
        return;
    }
    // A dialog without such a button: Esc is its close box.
    if (event->key() == Qt::Key_Escape && !cancel_ && windowModality() == Qt::ApplicationModal) {
        close();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

bool FormView::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress;
    const bool isDouble = event->type() == QEvent::MouseButtonDblClick;
    if (!isKey && !isDouble) return QMainWindow::eventFilter(watched, event);
    for (const Watch& watch : watches_) {
        if (watch.widget != watched) continue;
        if (isDouble && watch.doubleClick) {
            const Event clicked = watch.doubleClick;
            tell(clicked);
            return true;
        }
        if (!isKey || !watch.key) continue;
        const int key = static_cast<QKeyEvent*>(event)->key();
        const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
        if (!isEnter && key != Qt::Key_Escape) continue;
        const auto pressed = watch.key;
        bool taken = false;
        tell([&] { taken = pressed(isEnter ? Key::Enter : Key::Escape); });
        if (taken) return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

}  // namespace qrv
