// A simulated controller behind a real pseudo-terminal, served by a thread of its own in real time.
#pragma once

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
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
    void stop() {
        if (!thread_.joinable()) return;
        const std::uint64_t one = 1;
        static_cast<void>(::write(stop_, &one, sizeof one));
        thread_.join();
    }

 private:
    void serve() {
        std::array<pollfd, 2> wanted{pollfd{.fd = stop_, .events = POLLIN, .revents = 0},
                                     pollfd{.fd = terminal_.descriptor(), .events = POLLIN, .revents = 0}};
        while (true) {
            ::poll(wanted.data(), wanted.size(), millisecondsToNextArrival());
            if (wanted[0].revents != 0) return;
            if (wanted[1].revents != 0) controller.feed(terminal_.readAll(), clock_.now());
            terminal_.write(controller.take(clock_.now()));
            if (!controller.hasHungUp()) continue;
            terminal_.hangUp();
            return;
        }
    }
    [[nodiscard]] int millisecondsToNextArrival() const {
        const auto next = controller.nextArrival();
        if (!next) return -1;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - clock_.now()).count();
        return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left, 0));
    }

    SystemClock clock_;
    PseudoTerminal terminal_;
    int stop_ = ::eventfd(0, EFD_CLOEXEC);
    std::thread thread_;
};

}  // namespace qrv::test
