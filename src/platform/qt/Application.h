// The program's edge: a run-time error that reaches it is shown in one box, and the program ends. The work file is left
// where it is.
#pragma once

#include <QApplication>
#include <functional>

namespace qrv {

class RunTimeError;

class Application final : public QApplication {
 public:
    Application(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;

    /// The window that a box belongs to; null where none is up. A window on its way out counts as none.
    [[nodiscard]] static QWidget* frontWindow();
    /// Shows the error and ends the program with exit code 1.
    static void endWith(const RunTimeError& error);
    /// Runs an action; a run-time error that leaves it ends the program.
    static void guarded(const std::function<void()>& action);
    /// Stands in for the way a program ends; for tests.
    static void setEnding(std::function<void(const RunTimeError&)> ending);
};

}  // namespace qrv
