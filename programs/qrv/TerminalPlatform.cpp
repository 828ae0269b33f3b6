#include "TerminalPlatform.h"

#include <optional>
#include <utility>

#include "platform/Folders.h"

namespace qrv {

Answer TerminalBox::answerTo(Buttons buttons) {
    switch (buttons) {
        case Buttons::Ok: return terminal_.canAsk() ? Answer::Ok : Answer::None;
        case Buttons::OkCancel:
        case Buttons::YesNo: {
            const std::optional<bool> isYes = terminal_.askYesNo("Answer yes or no:");
            if (!isYes) return Answer::None;
            if (buttons == Buttons::OkCancel) return *isYes ? Answer::Ok : Answer::Cancel;
            return *isYes ? Answer::Yes : Answer::No;
        }
        case Buttons::YesNoCancel: {
            const std::optional<std::string> typed = terminal_.ask("Answer yes, no or cancel: [y/n/C]");
            if (!typed) return Answer::None;
            if (*typed == "y" || *typed == "yes") return Answer::Yes;
            return *typed == "n" || *typed == "no" ? Answer::No : Answer::Cancel;
        }
    }
    return Answer::None;
}

Answer TerminalBox::ask(const Notice& notice) {
    terminal_.say(notice.title == kUsualTitle ? notice.text : notice.title + ": " + notice.text);
    return answerTo(notice.buttons);
}

TerminalPlatform::TerminalPlatform(Terminal& terminal)
    : box_(terminal),
      settings_(settingsFile(systemEnvironment)),
      pump_(clock_),
      serialPorts_(settings_),
      serialPort_(
          [this](std::int16_t number) { return namedDevice_.empty() ? serialPorts_.pathOf(number) : namedDevice_; }) {}

void TerminalPlatform::nameDevice(std::string path) {
    namedDevice_ = std::move(path);
    serialPort_.setNaming(PosixSerialPort::Naming::ByPath);
}

Platform TerminalPlatform::services() {
    return {.messageBox = box_,
            .fileDialog = fileDialog_,
            .formHost = formHost_,
            .settings = settings_,
            .clock = clock_,
            .eventPump = pump_,
            .serialPort = serialPort_};
}

}  // namespace qrv
