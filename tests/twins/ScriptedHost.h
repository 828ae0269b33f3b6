// A host of forms without windows: it keeps the order of load, activate and unload, and a test plays the user of each
// modal form. A modal form that no script waits for fails the test.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/FormHost.h"

namespace qrv {

class ScriptedHost final : public FormHost {
 public:
    using User = std::function<void(Form&)>;

    ~ScriptedHost() override {
        for (const auto& [name, user] : users_) ADD_FAILURE() << "the form " << name << " never came up";
    }

    /// Plays the user of the next modal showing of the named form, from its activation on.
    void onModal(std::string name, User user) { users_.emplace_back(std::move(name), std::move(user)); }

    void showModal(Form& form) override {
        Form* before = active_;
        if (!comeUp(form)) return;
        if (isVisible(form)) play(form);
        // Another form may have come up from within; then control is there already.
        const bool returns = active_ == &form || active_ == nullptr;
        if (ended || !returns) return;
        active_ = nullptr;
        if (before != nullptr && isVisible(*before)) activate(*before);
    }
    void load(Form& form) override {
        if (ended || isLoaded(form)) return;
        loaded_.push_back(&form);
        happened.push_back("load " + form.name());
        form.load();
    }
    void show(Form& form) override { comeUp(form); }
    void hide(Form& form) override { std::erase(visible_, &form); }
    void unload(Form& form) override {
        if (std::erase(loaded_, &form) == 0) return;
        happened.push_back("unload " + form.name());
        form.unload();
        hide(form);
    }
    [[nodiscard]] bool isVisible(const Form& form) const override {
        return std::find(visible_.begin(), visible_.end(), &form) != visible_.end();
    }
    void refresh(Form& form) override { happened.push_back("refresh " + form.name()); }
    void endProgram(int exitCode) override {
        if (ended) return;
        ended = exitCode;
        while (!loaded_.empty()) unload(*loaded_.back());
        active_ = nullptr;
    }

    /// The user closes the window by its frame. Gives true if the form went away.
    bool close(Form& form) {
        if (!form.queryUnload(UnloadMode::ByUser)) return !isVisible(form);
        unload(form);
        return true;
    }
    [[nodiscard]] bool isLoaded(const Form& form) const {
        return std::find(loaded_.begin(), loaded_.end(), &form) != loaded_.end();
    }

    std::vector<std::string> happened;  ///< "load x", "activate x", "unload x", "refresh x"
    std::optional<int> ended;           ///< the exit code, once the program was ended

 private:
    /// False if the form went away while it loaded, or the program has ended.
    bool comeUp(Form& form) {
        load(form);
        if (!isLoaded(form)) return false;
        if (!isVisible(form)) visible_.push_back(&form);
        activate(form);
        return true;
    }
    void activate(Form& form) {
        active_ = &form;
        happened.push_back("activate " + form.name());
        form.activate();
    }
    /// Plays the form's user and sees to it that the form is gone afterwards.
    void play(Form& form) {
        const auto user =
            std::find_if(users_.begin(), users_.end(), [&](const auto& u) { return u.first == form.name(); });
        if (user == users_.end()) {
            ADD_FAILURE() << "an unexpected modal form: " << form.name();
        } else {
            const User action = std::move(user->second);
            users_.erase(user);
            action(form);
            EXPECT_FALSE(isVisible(form)) << form.name() << " was left open";
        }
        if (isVisible(form)) unload(form);
    }

    std::deque<std::pair<std::string, User>> users_;
    std::vector<Form*> loaded_;
    std::vector<Form*> visible_;
    Form* active_ = nullptr;  ///< the form that has control
};

}  // namespace qrv
