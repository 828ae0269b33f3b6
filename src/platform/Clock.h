// Time as the logic sees it: a test's clock stands still until it is told to go on.
#pragma once

#include <chrono>

namespace qrv {

class Clock {
 public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Milliseconds = std::chrono::milliseconds;

    virtual ~Clock() = default;

    [[nodiscard]] virtual TimePoint now() const = 0;
    /// Time of day, UTC, for stamps.
    [[nodiscard]] virtual std::chrono::system_clock::time_point wallTime() const = 0;
    /// Blocks the program: no event is handled meanwhile.
    virtual void sleep(Milliseconds duration) = 0;
};

/// The machine's clock.
class SystemClock final : public Clock {
 public:
    [[nodiscard]] TimePoint now() const override;
    [[nodiscard]] std::chrono::system_clock::time_point wallTime() const override;
    void sleep(Milliseconds duration) override;
};

}  // namespace qrv
