// The desktop's host of forms: finds the window of a form by the form's name, shows it, and runs it where it is modal.
// Every nested event loop of the program runs here, in QtMessageBox, QtFileDialog or QtPump.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "platform/FormHost.h"

class QEventLoop;

namespace qrv {

class FormView;

class DesktopHost final : public FormHost {
 public:
    /// Makes the window of a form. The host takes it over.
    using Factory = std::function<FormView*(Form&, DesktopHost&)>;

    DesktopHost() = default;
    ~DesktopHost() override;

    void add(const std::string& formName, Factory factory);
    template <typename View, typename FormClass>
    void add(const std::string& formName) {
        add(formName,
            [](Form& form, DesktopHost& host) -> FormView* { return new View(static_cast<FormClass&>(form), host); });
    }

    /// Whether the windows tell more in tool tips than a control's text says; on from the start.
    void setTips(bool shown) { hasTips_ = shown; }
    [[nodiscard]] bool hasTips() const { return hasTips_; }

    void showModal(Form& form) override;
    void load(Form& form) override { loaded(form); }
    void show(Form& form) override;
    void hide(Form& form) override;
    void unload(Form& form) override;
    [[nodiscard]] bool isVisible(const Form& form) const override;
    void refresh(Form& form) override;
    void refreshSoon(Form& form) override;
    void endProgram(int exitCode) override;

    /// Runs after each event of the user's, before the windows show their forms again.
    std::function<void()> onEventDone = [] {};

    /// A new window of the form, as the host makes it; nothing is loaded or shown.
    [[nodiscard]] FormView* makeView(Form& form);
    /// Shows the data of every visible form again.
    void refreshAll();
    /// Takes every form away, without asking it.
    void unloadAll();
    /// The user closes a window by its frame.
    void closeByUser(Form& form);
    /// The window of a loaded form; null where there is none.
    [[nodiscard]] FormView* viewOf(const Form& form) const;
    /// The exit code once the program is ending.
    [[nodiscard]] std::optional<int> exitCode() const { return exitCode_; }

 private:
    struct Window {
        Form* form = nullptr;
        FormView* view = nullptr;
        QEventLoop* loop = nullptr;
        bool isShown = false;
        bool isUnloading = false;
    };

    Window* find(const Form& form);
    /// The form's window, made and loaded if need be; null if the form went away while it loaded, is loading still, or
    /// the program ends.
    Window* loaded(Form& form);
    void bringUp(Window& window, bool modal);
    void activate(Form& form);

    std::map<std::string, Factory> factories_;
    std::map<const Form*, Window> windows_;
    Form* active_ = nullptr;
    std::optional<int> exitCode_;
    bool hasTips_ = true;
    int loading_ = 0;  ///< forms whose load is under way
};

}  // namespace qrv
