// The base of every window: the mirror of one form. A view makes its widgets with the functions here, which tie each to
// the form's data under the control's name; an event goes to the form in one call, and the host shows every form again.
#pragma once

#include <QMainWindow>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "platform/Controls.h"
#include "platform/FormHost.h"
#include "platform/Grid.h"
#include "platform/NamedChoice.h"

class QAbstractButton;
class QBoxLayout;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QPlainTextEdit;
class QPushButton;

namespace qrv {

class DesktopHost;
class GridView;

/// What is said of an entry or a box that stands there disabled until there is something behind it.
inline constexpr const char* kComing = "Coming: not in this version yet";

class FormView : public QMainWindow {
 public:
    using Event = std::function<void()>;

    /// The window's object name is the form's name.
    FormView(Form& form, DesktopHost& host);

    [[nodiscard]] Form& form() { return form_; }
    /// Shows the form's data.
    void refresh();
    /// Ends every edit in a grid of this window. False: a text was refused, and its editor stays open.
    bool finishEdits();
    /// The form is about to go: hides the window, lets go of the form's data, and destroys itself as soon as no event
    /// of this window is on its way.
    void retire();
    /// True while an event of this window is on its way through the form.
    [[nodiscard]] bool isBusy() const { return busy_ > 0; }

    /// Sends an event of the user to the form: ends grid edits first (a refused one stops the event), then shows every
    /// form again.
    void tell(const Event& event);

    /// Wide enough for the title, too.
    [[nodiscard]] QSize sizeHint() const override;

    /// Runs after each time the form's data was shown.
    void setAfterRefresh(Event afterRefresh) { afterRefresh_ = std::move(afterRefresh); }

 protected:
    // --- widgets tied to the form's data; the name is the control's ---
    QLabel* addLabel(const QString& name, const Label& source);
    /// A line of our own words, apart from the form's controls.
    QLabel* addWords(const QString& name, const std::function<QString()>& words);
    QPushButton* addButton(const QString& name, const Button& source, const Event& clicked);
    QLineEdit* addLine(const QString& name, TextBox& source, const Event& changed);
    QPlainTextEdit* addText(const QString& name, TextBox& source, const Event& changed);
    QListWidget* addList(const QString& name, ListBox& source, const Event& clicked);
    QComboBox* addDropDown(const QString& name, ListBox& source, const Event& chosen);
    QAbstractButton* addOption(const QString& name, Choice& source, const Event& clicked);
    QAbstractButton* addCheck(const QString& name, Choice& source, const Event& clicked);
    /// What is to be chosen among: check boxes one below the other, and under them the buttons for all and none.
    struct ChoiceGroup {
        std::span<const NamedChoice> boxes;
        const Button& all;
        Event allClicked;
        const Button& none;
        Event noneClicked;
    };
    void addChoiceGroup(QBoxLayout* body, const ChoiceGroup& group);
    struct ButtonOf {
        QString name;
        const Button& source;
        Event clicked;
    };
    /// The last row of most dialogs, at its right end: the button that goes on, and the one that Esc clicks.
    void addLastRow(QBoxLayout* body, const ButtonOf& goOn, const ButtonOf& cancel);
    GridView* addGrid(Grid& source);
    void addTimer(const Timer& source, const Event& tick);
    /// A menu entry that follows the form's; "-" is a separator.
    QAction* addEntry(QMenu* menu, const MenuEntry& source, const Event& triggered);
    /// A menu entry that stays as it is.
    QAction* addEntry(QMenu* menu, const QString& name, const QString& caption, const Event& triggered);
    /// A menu bar with the one entry of most dialogs, which is shown as a button of the bar.
    QAction* addDone(const QString& name, const QString& caption, const Event& triggered);
    /// An object that is done with the form's data at each refresh.
    void addMirror(Event mirror) { mirrors_.push_back(std::move(mirror)); }

    /// A tool tip of our own, where the windows have such tips.
    void addTip(QWidget* widget, const QString& text);
    /// A widget's accessible name: the caption that stands beside it, without blanks around it.
    static void nameAfter(QWidget* widget, const Label& label);

    /// Enter, where no widget takes it, clicks this one.
    void setDefaultButton(QPushButton* button);
    /// Esc, where no widget takes it, clicks this one.
    void setCancelButton(QPushButton* button) { cancel_ = button; }
    /// Tells the form of Enter and Escape pressed in `widget`; the given routine says whether it took the key.
    void watchKeys(QWidget* widget, std::function<bool(Key)> pressed);
    /// A double click in `widget`.
    void watchDoubleClick(QWidget* widget, const Event& clicked);

    /// A central widget with a layout that runs downwards.
    QBoxLayout* makeBody();

    /// Runs after each time the form's data was shown; may raise events.
    virtual void afterRefresh() {}

    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    [[nodiscard]] DesktopHost& host() { return host_; }

 private:
    struct Watch {
        QObject* widget;
        std::function<bool(Key)> key;
        Event doubleClick;
    };

    /// As tell, but leaves grid edits alone: a grid's own events come this way.
    void perform(const Event& event);
    QAbstractButton* tie(QAbstractButton* widget, const QString& name, Choice& source, const Event& clicked);
    void setUp(QWidget* widget, const QString& name);

    Form& form_;
    DesktopHost& host_;
    std::vector<Event> mirrors_;
    std::vector<GridView*> grids_;
    std::vector<Watch> watches_;
    Event afterRefresh_;
    QPushButton* default_ = nullptr;
    QPushButton* cancel_ = nullptr;
    int busy_ = 0;
    bool mirroring_ = false;
    bool retired_ = false;
};

}  // namespace qrv
