// The wire between the tool and the simulated controller as time: when a byte that was sent has arrived. Without a pace
// bytes need no time; with one they take what a real line of that speed takes.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/Clock.h"

namespace qrv {

struct SimPace {
    unsigned baud = 38400;
    unsigned bitsPerByte = 11;  ///< start, eight data bits, parity, stop; 10 without parity

    /// From settings such as "38400,O,8, 1"; nothing where they name no speed.
    [[nodiscard]] static std::optional<SimPace> ofSettings(std::string_view settings);
    [[nodiscard]] std::chrono::nanoseconds timeOf(std::size_t byteCount) const;
};

class SimLine {
 public:
    /// A paced answer comes in lumps of so many bytes, as a serial chip's buffer gives it up; its last byte is on time.
    static constexpr std::size_t kLump = 16;

    void setPace(std::optional<SimPace> pace) { pace_ = pace; }

    /// One byte leaves the tool: gives when the controller has it.
    [[nodiscard]] Clock::TimePoint arrivalOf(Clock::TimePoint sentAt);

    /// Queues an answer that is ready at `readyAt`. Answers keep their order: one that is late holds up those behind
    /// it.
    void send(std::span<const std::uint8_t> answer, Clock::TimePoint readyAt);
    /// The bytes of answers that have reached the tool by `now`, in order; each is given once.
    [[nodiscard]] std::vector<std::uint8_t> take(Clock::TimePoint now);
    /// When the next bytes, not yet taken, reach the tool.
    [[nodiscard]] std::optional<Clock::TimePoint> nextArrival() const;
    /// Drops all that is on its way.
    void clear();

 private:
    struct Lump {
        Clock::TimePoint at;
        std::vector<std::uint8_t> bytes;
    };

    std::optional<SimPace> pace_;
    std::deque<Lump> queue_;
    Clock::TimePoint inFreeAt_{};
    Clock::TimePoint outFreeAt_{};
};

}  // namespace qrv
