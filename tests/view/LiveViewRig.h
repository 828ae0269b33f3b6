// The whole program with its real windows, offscreen, and a real line: our own port, the desktop's own pump, and the
// machine's clock.
#pragma once

#include <string>

#include "ViewRig.h"
#include "platform/Clock.h"
#include "platform/posix/PosixSerialPort.h"
#include "platform/qt/QtPump.h"

namespace qrv {

struct LiveViewRig {
    /// @param device  what every port number stands for
    explicit LiveViewRig(std::string device, const std::string& commandLine = "")
        : path(std::move(device)), line{clock, pump, port}, rig(commandLine, Extras::Shown, &line) {}

    std::string path;
    SystemClock clock;
    QtPump pump;
    PosixSerialPort port{[this](std::int16_t) { return path; }};
    LineServices line;
    ViewRig rig;
};

}  // namespace qrv
