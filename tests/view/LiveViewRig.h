// The whole program with its real windows, offscreen, and a far end on a pseudo-terminal, in real time: our own port
// and the desktop's own pump.
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
        : path(std::move(device)), real{clock, pump, port}, rig(commandLine, Extras::Shown, &real) {}

    /// Comes up with a new file and the view that an entry of the main window's menu opens.
    FormView& startWith(const char* entry, Form& view) {
        rig.startWithNewFile();
        ViewRig::choose(rig.mainView(), entry);
        return *rig.host.viewOf(view);
    }

    std::string path;
    SystemClock clock;
    QtPump pump;
    PosixSerialPort port{[this](std::int16_t) { return path; }};
    RealTime real;
    ViewRig rig;
};

}  // namespace qrv
