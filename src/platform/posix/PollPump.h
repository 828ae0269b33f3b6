// Events and waits of the terminal program: its events are the signals it asked for (Ctrl+C), and a wait is one poll on
// them and on the port.
#pragma once

#include <functional>
#include <initializer_list>

#include "platform/EventPump.h"
#include "platform/posix/SignalPipe.h"

namespace qrv {

class PollPump final : public EventPump {
 public:
    explicit PollPump(const Clock& clock) : clock_(clock) {}

    /// From now on these signals don't end the program but are events: `onSignal` is called from within a pump.
    void catchSignals(std::initializer_list<int> signals, std::function<void(int signal)> onSignal);

    void pump() override { handleSignals(); }
    void pumpUntil(Clock::TimePoint deadline, SerialPort* port) override;

 private:
    /// True if there was one.
    bool handleSignals();

    const Clock& clock_;
    SignalPipe signals_;
    std::function<void(int)> onSignal_;
};

}  // namespace qrv
