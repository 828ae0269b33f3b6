// What we add to the main window, apart from what is told of it: the tool bar with "Go to block", the status bar with
// its meters, and the menus "Tools" and "Help" behind "View". None of it changes what the program does.
#pragma once

#include <QObject>

class QAction;
class QLabel;
class QLineEdit;
class QProgressBar;
class QTimer;
class QToolBar;

namespace qrv {

class Form3View;
struct Workbench;

class Form3ExtrasView final : public QObject {
 public:
    /// Lives as long as the window.
    Form3ExtrasView(Form3View& window, Workbench& bench);

    /// Shows the block with a number, or the next one of a function with that name. False: there is none.
    bool goTo(const QString& wanted);

 private:
    struct Meter {
        QLabel* words;
        QProgressBar* bar;
    };

    void makeToolBar();
    void makeStatusBar();
    void makeMenus();
    void makeShortcuts();
    QAction* borrow(const char* entry, const char* icon, const QString& tip);
    Meter makeMeter(const char* name, const QString& what, int most);
    void showMeters();
    void goToTyped();
    [[nodiscard]] int nextOf(const QString& name) const;

    Form3View& window_;
    Workbench& bench_;
    QToolBar* bar_ = nullptr;
    QLineEdit* goTo_ = nullptr;
    QAction* goToAction_ = nullptr;
    QTimer* later_;
    Meter constants_{};
    Meter retentive_{};
};

}  // namespace qrv
