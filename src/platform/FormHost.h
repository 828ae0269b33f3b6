// A form is a window of the tool as a plain class: what the user sees as data, one method for each event. The host
// shows forms: the desktop's makes the view and runs it, a test's plays the user.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace qrv {

/// Who asks a form to go away.
enum class UnloadMode { ByUser, ByCode };

class Form {
 public:
    /// @param name  the form's given name, as `frmPager`; views and tests find it by this
    Form(std::string_view name, std::string title) : caption(std::move(title)), name_(name) {}
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }

    /// Runs once each time the form comes up after having been unloaded, before it is shown.
    virtual void load() {}
    /// Runs when the form is shown and when control comes back to it from another form of the program; not after a
    /// message box or a file dialog.
    virtual void activate() {}
    /// May the form go away? False refuses; a form that leaves by itself refuses and does what its way out does.
    virtual bool queryUnload(UnloadMode) { return true; }
    /// Runs when the form goes away, whatever the way.
    virtual void unload() {}

    std::string caption;  ///< title line, UTF-8

 private:
    std::string name_;
};

class FormHost {
 public:
    virtual ~FormHost() = default;

    /// Loads the form if it isn't loaded, shows it, and comes back when it has been hidden or unloaded. A form that
    /// hides while a modal one of its own is up, and is shown again when that one goes, stays modal. Not to be called
    /// while another form loads.
    virtual void showModal(Form& form) = 0;
    /// Loads the form if it isn't loaded, and shows nothing. A host that doesn't, loads it when it is first shown.
    virtual void load(Form&) {}
    /// Loads the form if it isn't loaded, and shows it beside the others.
    virtual void show(Form& form) = 0;
    virtual void hide(Form& form) = 0;
    /// Takes the form away by the program's own will, without asking it.
    virtual void unload(Form& form) = 0;
    [[nodiscard]] virtual bool isVisible(const Form& form) const = 0;
    /// Shows the form's data again at once, for a form that changes during a long action.
    virtual void refresh(Form& form) = 0;
    /// The same, painted when events are next handled: a transfer's frame goes out first, and the line is busy while
    /// the window paints.
    virtual void refreshSoon(Form& form) { refresh(form); }
    /// Unloads every form and ends the program with `exitCode`.
    virtual void endProgram(int exitCode) = 0;
};

}  // namespace qrv
