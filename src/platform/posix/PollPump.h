// Events and waits of the terminal program: its events are the signals it asked for (Ctrl+C), and a wait is one poll on
// them and on the port.
#pragma once

#include <csignal>
#include <functional>
#include <initializer_list>
#include <utility>
#include <vector>

#include "platform/EventPump.h"

namespace qrv {

class PollPump final : public EventPump {
 public:
    explicit PollPump(const Clock& clock) : clock_(clock) {}
    ~PollPump() override;
    PollPump(const PollPump&) = delete;
    PollPump& operator=(const PollPump&) = delete;

    /// From now on these signals don't end the program but are events: `onSignal` is called from within a pump. One
    /// pump of a program may catch signals; its end gives them back. A hang-up that is ignored stays ignored.
    void catchSignals(std::initializer_list<int> signals, std::function<void(int signal)> onSignal);

    void pump() override { handleSignals(); }
    void pumpUntil(Clock::TimePoint deadline, SerialPort* port) override;

 private:
    /// True if there was one.
    bool handleSignals();

    const Clock& clock_;
    int signalPipe_ = -1;  ///< the end that is read
    std::function<void(int)> onSignal_;
    std::vector<std::pair<int, struct sigaction>> formerActions_;
};

}  // namespace qrv
