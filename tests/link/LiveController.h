// A simulated controller behind a real pseudo-terminal, served by a thread of its own in real time.
#pragma once

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <optional>
#include <string>
#include <thread>

#include "link/sim/SimulatedController.h"
#include "platform/Clock.h"
#include "platform/posix/PseudoTerminal.h"

namespace qrv::test {

class LiveController {
 public:
    /// The controller is the thread's own from start() to stop().
    SimulatedController controller;
    /// So long before an answer is due it looks at the clock without a break, for a sleeper oversleeps.
    std::chrono::microseconds wakefulFor{0};

    explicit LiveController(SimSetup setup = {}) : controller(std::move(setup)) {}
    ~LiveController() {
        stop();
        ::close(stop_);
    }
    LiveController(const LiveController&) = delete;
    LiveController& operator=(const LiveController&) = delete;

    [[nodiscard]] const std::string& path() const { return terminal_.path(); }
    void start() {
        thread_ = std::thread([this] { serve(); });
    }
    /// The line goes away for good.
    void hangUp() {
        stop();
        terminal_.hangUp();
    }
    void stop() {
        if (!thread_.joinable()) return;
        const std::uint64_t one = 1;
        static_cast<void>(::write(stop_, &one, sizeof one));
        thread_.join();
        // So that it can be started again.
        std::uint64_t count = 0;
        static_cast<void>(::read(stop_, &count, sizeof count));
    }

 private:
    void serve() {
        std::array<pollfd, 2> wanted{pollfd{.fd = stop_, .events = POLLIN, .revents = 0},
                                     pollfd{.fd = terminal_.descriptor(), .events = POLLIN, .revents = 0}};
        while (true) {
            const auto left = timeToNextArrival();
            ::ppoll(wanted.data(), wanted.size(), left ? &*left : nullptr, nullptr);
            if (wanted[0].revents != 0) return;
            if (wanted[1].revents != 0) controller.feed(terminal_.readAll(), clock_.now());
            terminal_.write(controller.take(clock_.now()));
            if (!controller.hasHungUp()) continue;
            terminal_.hangUp();
            return;
        }
    }
    /// To the nanosecond: at 38400 baud a byte takes a third of a millisecond.
    [[nodiscard]] std::optional<timespec> timeToNextArrival() const {
        using namespace std::chrono;
        const auto next = controller.nextArrival();
        if (!next) return std::nullopt;
        const auto left = std::max(nanoseconds::zero(), duration_cast<nanoseconds>(*next - clock_.now()) - wakefulFor);
        const auto whole = floor<seconds>(left);
        return timespec{.tv_sec = static_cast<time_t>(whole.count()),
                        .tv_nsec = static_cast<long>((left - whole).count())};
    }

    SystemClock clock_;
    PseudoTerminal terminal_;
    int stop_ = ::eventfd(0, EFD_CLOEXEC);
    std::thread thread_;
};

}  // namespace qrv::test
