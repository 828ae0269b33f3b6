#include "platform/qt/DesktopHost.h"

#include <QApplication>
#include <QEventLoop>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <vector>

#include "platform/WhileSet.h"
#include "platform/qt/FormView.h"

namespace qrv {

namespace {

constexpr int kTitleHeight = 30;  // pixels that a window's title may take

/// Puts a window over the middle of the one from which it was opened, no larger than the screen.
void centre(QWidget& window, const QWidget* over) {
    window.resize(window.size().boundedTo(window.screen()->availableSize() - QSize(0, kTitleHeight)));
    const QRect area = over ? over->frameGeometry() : window.screen()->availableGeometry();
    QRect place(QPoint(), window.size());
    place.moveCenter(area.center());
    const QRect screen = window.screen()->availableGeometry();
    place.moveLeft(std::clamp(place.left(), screen.left(), std::max(screen.left(), screen.right() - place.width())));
    place.moveTop(std::clamp(place.top(), screen.top(), std::max(screen.top(), screen.bottom() - place.height())));
    window.move(place.topLeft());
}

bool isInput(const QEvent& event) {
    switch (event.type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut: return true;
        case QEvent::Close: return event.spontaneous();
        default: return false;
    }
}

/// Keeps the user's input from the windows of forms while a form loads: its loading may take the events of a serial
/// line, and with them a click that would begin the same thing again. A box that the loading form shows takes input.
class InputBarrier final : public QObject {
 public:
    InputBarrier() {
        QCoreApplication::instance()->installEventFilter(this);
        QTimer::singleShot(kBusyAfter, this, [this] {
            isLong_ = true;
            showBusy(!boxIsUp());
        });
    }
    ~InputBarrier() override { showBusy(false); }

    bool eventFilter(QObject* /*receiver*/, QEvent* event) override {
        const bool answers = boxIsUp();
        showBusy(isLong_ && !answers);
        if (answers || !isInput(*event)) return false;
        event->ignore();
        return true;
    }

 private:
    static bool boxIsUp() {
        const QWidget* modal = QApplication::activeModalWidget();
        return modal && !dynamic_cast<const FormView*>(modal);
    }
    void showBusy(bool isBusy) {
        if (isBusy == isBusyShown_) return;
        isBusyShown_ = isBusy;
        isBusy ? QGuiApplication::setOverrideCursor(Qt::WaitCursor) : QGuiApplication::restoreOverrideCursor();
    }

    static constexpr std::chrono::milliseconds kBusyAfter{200};
    bool isLong_ = false;
    bool isBusyShown_ = false;
};

}  // namespace

DesktopHost::~DesktopHost() {
    for (auto& [form, window] : windows_) delete window.view;
}

void DesktopHost::add(const std::string& formName, Factory factory) {
    factories_.insert_or_assign(formName, std::move(factory));
}

DesktopHost::Window* DesktopHost::find(const Form& form) {
    const auto found = windows_.find(&form);
    return found == windows_.end() ? nullptr : &found->second;
}

FormView* DesktopHost::viewOf(const Form& form) const {
    const auto found = windows_.find(&form);
    return found == windows_.end() ? nullptr : found->second.view;
}

FormView* DesktopHost::makeView(Form& form) {
    const auto factory = factories_.find(form.name());
    Q_ASSERT_X(factory != factories_.end(), "DesktopHost", form.name().c_str());
    return factory->second(form, *this);
}

DesktopHost::Window* DesktopHost::loaded(Form& form) {
    if (exitCode_) return nullptr;
    // A form that is still loading can't be asked for again.
    if (Window* window = find(form)) return window->view ? window : nullptr;
    windows_[&form].form = &form;
    {
        const InputBarrier barrier;
        const WhileSet<int> loading(loading_, loading_ + 1);
        form.load();
    }
    Window* window = find(form);
    if (window && !window->view) window->view = makeView(form);
    return window;
}

void DesktopHost::bringUp(Window& window, bool modal) {
    FormView& view = *window.view;
    const bool isFirst = !view.testAttribute(Qt::WA_Moved);
    view.setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
    window.isShown = true;
    view.refresh();
    if (isFirst && !view.isMaximized()) {
        if (!view.testAttribute(Qt::WA_Resized)) {
            view.adjustSize();
            // The toolkit takes two thirds of the screen for enough.
            view.resize(view.size().expandedTo(view.sizeHint()));
        }
        FormView* over = active_ && active_ != window.form && isVisible(*active_) ? viewOf(*active_) : nullptr;
        centre(view, over);
    }
    view.show();
    view.raise();
    view.activateWindow();
}

void DesktopHost::activate(Form& form) {
    active_ = &form;
    form.activate();
    refreshAll();
}

void DesktopHost::show(Form& form) {
    Window* window = loaded(form);
    if (!window) return;
    bringUp(*window, window->loop != nullptr);
    activate(form);
}

void DesktopHost::showModal(Form& form) {
    Form* before = active_;
    Window* window = loaded(form);
    if (!window) return;
    Q_ASSERT_X(loading_ == 0, "DesktopHost", "a form that another shows while it loads would be deaf");
    QEventLoop loop;
    bringUp(*window, true);
    window->loop = &loop;
    activate(form);
    // A form that another took the place of for a while is back.
    while (isVisible(form) && !exitCode_) loop.exec();
    if (Window* left = find(form)) left->loop = nullptr;
    // Another form may have come up from within; then control is there already.
    const bool returns = active_ == &form || active_ == nullptr;
    if (exitCode_ || !returns) return;
    active_ = nullptr;
    if (before && isVisible(*before)) activate(*before);
}

void DesktopHost::hide(Form& form) {
    Window* window = find(form);
    if (!window) return;
    window->isShown = false;
    if (window->view) window->view->hide();
    if (window->loop) window->loop->quit();
}

void DesktopHost::unload(Form& form) {
    Window* window = find(form);
    if (!window || window->isUnloading) return;
    window->isUnloading = true;
    form.unload();
    hide(form);
    FormView* view = window->view;
    windows_.erase(&form);
    if (view) view->retire();
}

bool DesktopHost::isVisible(const Form& form) const {
    const auto found = windows_.find(&form);
    return found != windows_.end() && found->second.isShown;
}

void DesktopHost::refresh(Form& form) {
    refreshSoon(form);
    if (FormView* view = viewOf(form); view && isVisible(form)) view->repaint();
}

void DesktopHost::refreshSoon(Form& form) {
    if (FormView* view = viewOf(form); view && isVisible(form)) view->refresh();
}

void DesktopHost::refreshAll() {
    std::vector<FormView*> shown;
    for (const auto& [form, window] : windows_) {
        if (window.isShown && window.view) shown.push_back(window.view);
    }
    for (FormView* view : shown) view->refresh();
}

void DesktopHost::closeByUser(Form& form) {
    if (find(form) && form.queryUnload(UnloadMode::ByUser)) unload(form);
}

void DesktopHost::unloadAll() {
    while (!windows_.empty()) {
        Form* form = windows_.begin()->second.form;
        unload(*form);
        windows_.erase(form);
    }
    active_ = nullptr;
}

void DesktopHost::endProgram(int exitCode) {
    if (exitCode_) return;
    exitCode_ = exitCode;
    unloadAll();
    QCoreApplication::exit(exitCode);
}

}  // namespace qrv
