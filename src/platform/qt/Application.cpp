#include "platform/qt/Application.h"

#include <QWidget>
#include <cstdio>
#include <cstdlib>

#include "platform/RunTimeError.h"
#include "platform/RunTimeErrorNotice.h"
#include "platform/qt/QtMessageBox.h"
#include "platform/qt/Theme.h"

namespace qrv {

namespace {

void showAndLeave(const RunTimeError& error) {
    QtMessageBox().ask(noticeOf(error));
    std::fflush(nullptr);
    // At once: what was under way must not go on with half of its work done, and the work file is kept.
    std::_Exit(kRunTimeErrorExitCode);
}

std::function<void(const RunTimeError&)>& ending() {
    static std::function<void(const RunTimeError&)> chosen = showAndLeave;
    return chosen;
}

}  // namespace

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    setApplicationName(QStringLiteral("QRV_Edit"));
    // The main window hides while others are up; only the way out ends the program.
    setQuitOnLastWindowClosed(false);
    theme::apply(*this);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const RunTimeError& error) {
        endWith(error);
        return false;
    }
}

QWidget* Application::frontWindow() {
    QWidget* window = activeWindow();
    return window && window->isVisible() ? window : nullptr;
}

void Application::endWith(const RunTimeError& error) { ending()(error); }

void Application::guarded(const std::function<void()>& action) {
    try {
        action();
    } catch (const RunTimeError& error) {
        endWith(error);
    }
}

void Application::setEnding(std::function<void(const RunTimeError&)> chosen) { ending() = std::move(chosen); }

}  // namespace qrv
