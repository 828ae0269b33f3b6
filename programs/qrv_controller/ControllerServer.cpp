#include "ControllerServer.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <ctime>

#include "link/sim/SimulatedController.h"
#include "platform/posix/PseudoTerminal.h"

namespace qrv {

namespace {

volatile std::sig_atomic_t mustEnd = 0;

void noteSignal(int) { mustEnd = 1; }

/// The signals that end the program stay blocked but for the time of a wait, so that none comes between the look at
/// `mustEnd` and the wait.
void catchEndSignals() {
    struct sigaction action {};
    action.sa_handler = noteSignal;
    ::sigemptyset(&action.sa_mask);
    sigset_t ends;
    ::sigemptyset(&ends);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        ::sigaction(number, &action, nullptr);
        ::sigaddset(&ends, number);
    }
    ::sigprocmask(SIG_BLOCK, &ends, nullptr);
}

}  // namespace

ControllerServer::ControllerServer(SimulatedController& controller, PseudoTerminal& terminal, const Clock& clock)
    : controller_(controller), terminal_(terminal), clock_(clock) {
    catchEndSignals();
}

ControllerServer::End ControllerServer::serve() {
    while (mustEnd == 0) {
        await();
        exchange();
        if (controller_.hasHungUp()) {
            terminal_.hangUp();
            return End::HungUp;
        }
    }
    return End::Signal;
}

void ControllerServer::await() const {
    timespec timeout{};
    const timespec* limit = nullptr;
    if (const auto next = controller_.nextArrival()) {
        const auto rest = std::max(std::chrono::nanoseconds{0}, std::chrono::nanoseconds(*next - clock_.now()));
        const auto seconds = std::chrono::floor<std::chrono::seconds>(rest);
        timeout.tv_sec = static_cast<std::time_t>(seconds.count());
        timeout.tv_nsec = static_cast<long>((rest - seconds).count());
        limit = &timeout;
    }
    std::array<pollfd, 2> ends{pollfd{.fd = terminal_.descriptor(), .events = POLLIN, .revents = 0},
                               pollfd{.fd = terminal_.usersDescriptor(), .events = POLLIN, .revents = 0}};
    sigset_t none;
    ::sigemptyset(&none);
    ::ppoll(ends.data(), ends.size(), limit, &none);
    if ((ends[1].revents & POLLIN) != 0) terminal_.heedUsers();
}

void ControllerServer::exchange() {
    const auto bytes = terminal_.readAll();
    if (!bytes.empty()) controller_.feed(bytes, clock_.now());
    const auto answers = controller_.take(clock_.now());
    if (!answers.empty()) terminal_.write(answers);
}

}  // namespace qrv
