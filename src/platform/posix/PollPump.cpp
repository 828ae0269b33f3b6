#include "platform/posix/PollPump.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "platform/SerialPort.h"

namespace qrv {

namespace {

timespec timeUntil(Clock::TimePoint deadline, Clock::TimePoint now) {
    using namespace std::chrono;
    const auto left = std::max(nanoseconds::zero(), duration_cast<nanoseconds>(deadline - now));
    const auto whole = duration_cast<seconds>(left);
    return {.tv_sec = static_cast<time_t>(whole.count()), .tv_nsec = static_cast<long>((left - whole).count())};
}

}  // namespace

void PollPump::catchSignals(std::initializer_list<int> signals, std::function<void(int)> onSignal) {
    onSignal_ = std::move(onSignal);
    signals_.catchSignals(signals);
}

bool PollPump::handleSignals() {
    bool any = false;
    while (const auto signal = signals_.take()) {
        any = true;
        if (onSignal_) onSignal_(*signal);
    }
    return any;
}

void PollPump::pumpUntil(Clock::TimePoint deadline, SerialPort* port) {
    if (handleSignals()) return;
    // A descriptor of -1 is passed over: without a port, or when its far end has gone, the deadline alone ends the
    // wait.
    const int portDescriptor = port != nullptr ? port->descriptor() : -1;
    std::array<pollfd, 2> wanted{pollfd{.fd = signals_.descriptor(), .events = POLLIN, .revents = 0},
                                 pollfd{.fd = portDescriptor, .events = POLLIN, .revents = 0}};
    const timespec left = timeUntil(deadline, clock_.now());
    ::ppoll(wanted.data(), wanted.size(), &left, nullptr);
    handleSignals();
}

}  // namespace qrv
