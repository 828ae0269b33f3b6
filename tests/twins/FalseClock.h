// A clock that stands still until it is told to go on, and a pump that goes on to the next thing that happens. Ten
// time-outs take no time.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <vector>

#include "platform/Clock.h"
#include "platform/EventPump.h"

namespace qrv {

class FalseClock final : public Clock {
 public:
    [[nodiscard]] TimePoint now() const override { return now_; }
    [[nodiscard]] std::chrono::system_clock::time_point wallTime() const override {
        return std::chrono::system_clock::time_point(std::chrono::seconds(1'790'000'000)) + (now_ - TimePoint{});
    }
    void sleep(Milliseconds duration) override {
        sleeps.push_back(duration);
        now_ += duration;
    }
    void advanceTo(TimePoint time) { now_ = std::max(now_, time); }
    [[nodiscard]] Milliseconds elapsed() const { return std::chrono::duration_cast<Milliseconds>(now_ - TimePoint{}); }

    std::vector<Milliseconds> sleeps;

 private:
    TimePoint now_{};
};

class FalsePump final : public EventPump {
 public:
    explicit FalsePump(FalseClock& clock) : clock_(clock) {}

    /// Runs an action of the user's at a time, while something pumps.
    void at(Clock::TimePoint time, std::function<void()> action) { events_.emplace(time, std::move(action)); }

    void pump() override {
        ++pumps;
        runWaiting();
    }
    void pumpUntil(Clock::TimePoint deadline, SerialPort* /*port*/) override {
        ++waits;
        const bool hasWaiting = !events_.empty() && events_.begin()->first <= clock_.now();
        const Clock::TimePoint next = nextAfterNow(deadline);
        if (next == Clock::TimePoint::max()) throw std::logic_error("a wait that nothing would ever end");
        if (!hasWaiting) clock_.advanceTo(next);
        runWaiting();
    }

    /// When bytes next arrive on a port, if any are under way: asked before time goes on.
    std::function<std::optional<Clock::TimePoint>()> nextArrival;
    int pumps = 0;
    int waits = 0;

 private:
    void runWaiting() {
        while (!events_.empty() && events_.begin()->first <= clock_.now()) {
            const auto action = std::move(events_.begin()->second);
            events_.erase(events_.begin());
            action();
        }
    }
    [[nodiscard]] Clock::TimePoint nextAfterNow(Clock::TimePoint deadline) const {
        Clock::TimePoint next = deadline;
        if (!events_.empty()) next = std::min(next, events_.begin()->first);
        if (nextArrival) {
            if (const auto arrival = nextArrival()) next = std::min(next, *arrival);
        }
        return next;
    }

    FalseClock& clock_;
    std::multimap<Clock::TimePoint, std::function<void()>> events_;
};

}  // namespace qrv
