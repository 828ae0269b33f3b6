#include "platform/posix/SignalPipe.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cassert>
#include <cerrno>

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

}  // namespace

SignalPipe::~SignalPipe() {
    for (const auto& [signal, action] : formerActions_) ::sigaction(signal, &action, nullptr);
    if (read_ < 0) return;
    ::close(read_);
    ::close(static_cast<int>(theSignalPipeEnd));
    theSignalPipeEnd = -1;
}

void SignalPipe::catchSignals(std::initializer_list<int> numbers) {
    assert(theSignalPipeEnd < 0 && "another pipe catches the signals");
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_NONBLOCK | O_CLOEXEC) != 0) return;
    read_ = ends[0];
    theSignalPipeEnd = ends[1];
    for (const int signal : numbers) {
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

std::optional<int> SignalPipe::take() {
    unsigned char number = 0;
    if (read_ < 0 || ::read(read_, &number, 1) != 1) return std::nullopt;
    return number;
}

}  // namespace qrv
