// The machine's services as a terminal has them: boxes are lines, questions are asked only where a user sits, and there
// are no windows and no file dialogs.
#pragma once

#include <string>

#include "Terminal.h"
#include "platform/Clock.h"
#include "platform/FileDialog.h"
#include "platform/FormHost.h"
#include "platform/MessageBox.h"
#include "platform/Platform.h"
#include "platform/Settings.h"
#include "platform/posix/PollPump.h"
#include "platform/posix/PosixSerialPort.h"
#include "platform/posix/SerialPorts.h"

namespace qrv {

class TerminalBox final : public MessageBox {
 public:
    explicit TerminalBox(Terminal& terminal) : terminal_(terminal) {}
    Answer ask(const Notice& notice) override;

 private:
    [[nodiscard]] Answer answerTo(Buttons buttons);

    Terminal& terminal_;
};

/// Every file is named on the command line.
class NoFileDialog final : public FileDialog {
 public:
    std::string ask(const FileQuestion&) override { return {}; }
};

/// No form has a window here: what a form would show is the command's to tell.
class NoFormHost final : public FormHost {
 public:
    void showModal(Form&) override {}
    void show(Form&) override {}
    void hide(Form&) override {}
    void unload(Form&) override {}
    [[nodiscard]] bool isVisible(const Form&) const override { return false; }
    void refresh(Form&) override {}
    void endProgram(int) override {}
};

/// Nothing of the desktop's is read or changed from here.
class NoSettings final : public Settings {
 public:
    [[nodiscard]] std::string get(std::string_view, std::string_view, std::string_view fallback) const override {
        return std::string(fallback);
    }
    void save(std::string_view, std::string_view, std::string_view) override {}
    void remove(std::string_view, std::string_view) override {}
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> all(std::string_view) const override { return {}; }
};

class TerminalPlatform {
 public:
    explicit TerminalPlatform(Terminal& terminal);

    [[nodiscard]] Platform services();
    [[nodiscard]] SerialPorts& serialPorts() { return serialPorts_; }
    [[nodiscard]] PollPump& pump() { return pump_; }

 private:
    TerminalBox box_;
    NoFileDialog fileDialog_;
    NoFormHost formHost_;
    NoSettings settings_;
    SystemClock clock_;
    PollPump pump_;
    SerialPorts serialPorts_;
    PosixSerialPort serialPort_;
};

}  // namespace qrv
