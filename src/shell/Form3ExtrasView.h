// What we add to the main window, apart from what is told of it: the tool bar with "Go to block", the status bar with
// its meters, and the menus "Tools" and "Help" behind "View". None of it changes what the program does.
#pragma once

#include <QObject>
#include <string>

#include "platform/Grid.h"

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QPlainTextEdit;
class QProgressBar;
class QTimer;
class QToolBar;

namespace qrv {

class Form3View;
struct TopMenu;
struct Workbench;

class Form3ExtrasView final : public QObject {
 public:
    /// Lives as long as the window.
    Form3ExtrasView(Form3View& window, Workbench& bench);

    /// Shows the block with a number, or the next one of a function with that name. Gives why not, or "".
    QString goTo(const QString& wanted);

 private:
    struct Meter {
        QLabel* words;
        QProgressBar* bar;
    };

    void makeToolBar();
    void makeStatusBar();
    void makeMenus();
    void makeShortcuts();
    void explainIdleEntries();
    void explainComing(const TopMenu& menu);
    void makeKeysPanel(QMenu* help);
    void makeFunctionPanel(QMenu* help);
    void step(const char* name, const char* icon, const QString& tip, Key key);
    void showFunction();
    void showTransferEnd();
    QAction* borrow(const char* entry, const char* icon, const QString& tip);
    Meter makeMeter(const char* name, const QString& what, int most);
    void showMeters();
    void goToTyped();
    [[nodiscard]] int nextOf(const QString& name) const;
    [[nodiscard]] int here() const;

    Form3View& window_;
    Workbench& bench_;
    QToolBar* bar_ = nullptr;
    QLineEdit* goTo_ = nullptr;
    QAction* goToAction_ = nullptr;
    QPlainTextEdit* page_ = nullptr;
    QTimer* later_;
    QLabel* end_ = nullptr;  ///< of the last transfer
    int found_ = 0;          ///< the block that was gone to last
    Meter constants_{};
    Meter retentive_{};
};

}  // namespace qrv
