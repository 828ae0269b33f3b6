#include "platform/posix/PollPump.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <chrono>

#include "platform/SerialPort.h"

namespace qrv {

namespace {

// A signal handler reaches nothing but what is global.
volatile std::sig_atomic_t theSignalPipeEnd = -1;  // the end that is written

extern "C" void passOn(int signal) {
    const int savedErrno = errno;
    const auto number = static_cast<unsigned char>(signal);
    // A full pipe holds a signal already; one more says nothing new.
    if (::write(theSignalPipeEnd, &number, 1) < 0) errno = savedErrno;
    errno = savedErrno;
}

timespec timeUntil(Clock::TimePoint deadline, Clock::TimePoint now) {
    using namespace std::chrono;
    const auto left = std::max(nanoseconds::zero(), duration_cast<nanoseconds>(deadline - now));
    const auto whole = duration_cast<seconds>(left);
    return {.tv_sec = static_cast<time_t>(whole.count()), .tv_nsec = static_cast<long>((left - whole).count())};
}

}  // namespace

PollPump::~PollPump() {
    for (const auto& [signal, action] : formerActions_) ::sigaction(signal, &action, nullptr);
    if (signalPipe_ < 0) return;
    ::close(signalPipe_);
    ::close(static_cast<int>(theSignalPipeEnd));
    theSignalPipeEnd = -1;
}

void PollPump::catchSignals(std::initializer_list<int> signals, std::function<void(int)> onSignal) {
    assert(theSignalPipeEnd < 0 && "another pump catches the signals");
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_NONBLOCK | O_CLOEXEC) != 0) return;
    signalPipe_ = ends[0];
    theSignalPipeEnd = ends[1];
    onSignal_ = std::move(onSignal);
    for (const int signal : signals) {
        struct sigaction action {};
        action.sa_handler = passOn;
        sigemptyset(&action.sa_mask);
        struct sigaction former {};
        ::sigaction(signal, &action, &former);
        // Who starts a program so that it survives the terminal has a hang-up ignored.
        if (signal == SIGHUP && former.sa_handler == SIG_IGN) {
            ::sigaction(signal, &former, nullptr);
            continue;
        }
        formerActions_.emplace_back(signal, former);
    }
}

bool PollPump::handleSignals() {
    if (signalPipe_ < 0) return false;
    bool any = false;
    unsigned char number = 0;
    while (::read(signalPipe_, &number, 1) == 1) {
        any = true;
        if (onSignal_) onSignal_(number);
    }
    return any;
}

void PollPump::pumpUntil(Clock::TimePoint deadline, SerialPort* port) {
    if (handleSignals()) return;
    // A descriptor of -1 is passed over: without a port, or when its far end has gone, the deadline alone ends the
    // wait.
    const int portDescriptor = port != nullptr ? port->descriptor() : -1;
    std::array<pollfd, 2> wanted{pollfd{.fd = signalPipe_, .events = POLLIN, .revents = 0},
                                 pollfd{.fd = portDescriptor, .events = POLLIN, .revents = 0}};
    const timespec left = timeUntil(deadline, clock_.now());
    ::ppoll(wanted.data(), wanted.size(), &left, nullptr);
    handleSignals();
}

}  // namespace qrv
