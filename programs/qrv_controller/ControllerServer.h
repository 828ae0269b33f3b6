// Puts a simulated controller behind a pseudo-terminal and keeps it there until a signal or a hang-up ends it.
#pragma once

#include <optional>

#include "platform/Clock.h"

namespace qrv {

class PseudoTerminal;
class SimulatedController;

class ControllerServer {
 public:
    enum class End { Signal, HungUp };

    ControllerServer(SimulatedController& controller, PseudoTerminal& terminal, const Clock& clock);

    /// Serves until SIGTERM or SIGINT comes or the controller hangs up. Sleeps wherever there is nothing to do.
    End serve();

 private:
    void await() const;
    void exchange();

    SimulatedController& controller_;
    PseudoTerminal& terminal_;
    const Clock& clock_;
};

}  // namespace qrv
