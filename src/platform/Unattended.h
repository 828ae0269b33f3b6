// The services of a program at which nobody sits: no box is answered, no file chosen, no form shown. What a caller does
// without an answer is its own rule; nothing here ever answers for the user.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <utility>

#include "platform/FileDialog.h"
#include "platform/FormHost.h"
#include "platform/MessageBox.h"

namespace qrv {

class NoAnswerBox final : public MessageBox {
 public:
    /// @param listener  is told of each box, to put its words where they can be read; may be empty
    explicit NoAnswerBox(std::function<void(const Notice&)> listener = {}) : listener_(std::move(listener)) {}

    Answer ask(const Notice& notice) override {
        if (listener_) listener_(notice);
        return Answer::None;
    }

 private:
    std::function<void(const Notice&)> listener_;
};

class NoFileDialog final : public FileDialog {
 public:
    std::string ask(const FileQuestion&) override { return {}; }
};

/// Forms are loaded and unloaded as ever, but none is seen: a modal one is gone as soon as it came.
class NoFormHost final : public FormHost {
 public:
    void showModal(Form& form) override {
        load(form);
        unload(form);
    }
    void load(Form& form) override {
        if (loaded_.insert(&form).second) form.load();
    }
    void show(Form& form) override { load(form); }
    void hide(Form&) override {}
    void unload(Form& form) override {
        if (loaded_.erase(&form) > 0) form.unload();
    }
    [[nodiscard]] bool isVisible(const Form&) const override { return false; }
    void refresh(Form&) override {}
    void endProgram(int) override {
        while (!loaded_.empty()) unload(**loaded_.begin());
    }

 private:
    std::set<Form*> loaded_;
};

}  // namespace qrv
