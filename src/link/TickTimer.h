// The timer of a wait for a reply: it counts ticks, and the third means that the time is up. Ticks are counted by
// looking at the clock, so that a wait is one sleep to a deadline and not a row of wakes.
#pragma once

#include <cstdint>

#include "platform/Clock.h"

namespace qrv {

class TickTimer {
 public:
    static constexpr std::int16_t kTicksToTimeOut = 3;

    /// Begins a wait: no tick yet. What `timedOut` said before still stands.
    void start(Clock::Milliseconds interval, Clock::TimePoint now) {
        interval_ = interval;
        started_ = now;
        ticks_ = 0;
        enabled_ = true;
    }
    void stop() { enabled_ = false; }
    void clearTimedOut() { timedOut_ = false; }

    [[nodiscard]] bool isEnabled() const { return enabled_; }
    [[nodiscard]] Clock::Milliseconds interval() const { return interval_; }

    /// Counts the ticks that are due.
    void look(Clock::TimePoint now) {
        if (!enabled_) return;
        const auto due = (now - started_) / interval_;
        ticks_ = due < kTicksToTimeOut ? static_cast<std::int16_t>(due) : kTicksToTimeOut;
        if (ticks_ == kTicksToTimeOut) timedOut_ = true;
    }

    /// When the third tick comes.
    [[nodiscard]] Clock::TimePoint timeOut() const { return started_ + kTicksToTimeOut * interval_; }
    [[nodiscard]] std::int16_t ticks() const { return ticks_; }
    [[nodiscard]] bool timedOut() const { return timedOut_; }

 private:
    Clock::Milliseconds interval_{1};
    Clock::TimePoint started_{};
    std::int16_t ticks_ = 0;
    bool enabled_ = false;
    bool timedOut_ = false;
};

}  // namespace qrv
