// The machine's services as a terminal has them: boxes are lines, questions are asked only where a user sits, and there
// are no windows and no file dialogs.
#pragma once

#include <string>

#include "Terminal.h"
#include "platform/Clock.h"
#include "platform/FileSettings.h"
#include "platform/MessageBox.h"
#include "platform/Platform.h"
#include "platform/Unattended.h"
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

/// The settings are the user's own, shared with the desktop: the line to a controller and what its ports stand for.
class TerminalPlatform {
 public:
    explicit TerminalPlatform(Terminal& terminal);

    [[nodiscard]] Platform services();
    [[nodiscard]] SerialPorts& serialPorts() { return serialPorts_; }
    [[nodiscard]] PollPump& pump() { return pump_; }
    /// From now on every port number stands for this device.
    void nameDevice(std::string path);
    [[nodiscard]] const std::string& namedDevice() const { return namedDevice_; }

 private:
    TerminalBox box_;
    NoFileDialog fileDialog_;  // every file is named on the command line
    NoFormHost formHost_;      // what a form would show is the command's to tell
    FileSettings settings_;
    SystemClock clock_;
    PollPump pump_;
    SerialPorts serialPorts_;
    std::string namedDevice_;
    PosixSerialPort serialPort_;
};

}  // namespace qrv
