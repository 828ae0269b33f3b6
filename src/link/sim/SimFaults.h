// The faults that the simulated controller can play, one row each, and when to play them.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "link/sim/SimNoise.h"
#include "platform/Clock.h"

namespace qrv {

/// One answer on its way out, checksum included, as a fault finds it and leaves it.
struct SimAnswer {
    std::vector<std::uint8_t> bytes;
    Clock::Milliseconds delay{0};
    bool isLast = false;   ///< the controller falls silent for good after it
    bool hangsUp = false;  ///< the line goes away
};

/// What a fault may draw on.
struct SimFaultContext {
    Clock::Milliseconds lateBy;
    std::span<const std::uint8_t> previousAnswer;
    SimNoise& noise;
};

struct SimFault {
    std::string_view name;
    std::string_view what;
    bool obeys;  ///< the request takes effect, whatever becomes of its answer
    void (*spoil)(SimAnswer& answer, const SimFaultContext& context);
};

namespace simfault {
void swallow(SimAnswer& answer, const SimFaultContext& context);
void delay(SimAnswer& answer, const SimFaultContext& context);
void shorten(SimAnswer& answer, const SimFaultContext& context);
void lengthen(SimAnswer& answer, const SimFaultContext& context);
void flipChecksum(SimAnswer& answer, const SimFaultContext& context);
void replaceStatus(SimAnswer& answer, const SimFaultContext& context);
void breakOff(SimAnswer& answer, const SimFaultContext& context);
void prependStale(SimAnswer& answer, const SimFaultContext& context);
void scramble(SimAnswer& answer, const SimFaultContext& context);
void hangUp(SimAnswer& answer, const SimFaultContext& context);
}  // namespace simfault

inline constexpr std::array kFaults{
    SimFault{"silence", "the request is lost: nothing is done and nothing is answered", false, simfault::swallow},
    SimFault{"lost-answer", "the request is obeyed and its answer lost", true, simfault::swallow},
    SimFault{"late", "the answer comes late, and all later ones behind it", true, simfault::delay},
    SimFault{"short", "the answer's last byte is missing", true, simfault::shorten},
    SimFault{"surplus", "one byte more stands behind the answer", true, simfault::lengthen},
    SimFault{"bad-checksum", "the answer's checksum is wrong", true, simfault::flipChecksum},
    SimFault{"wrong-status", "the answer's byte 0 is 17, its checksum right", true, simfault::replaceStatus},
    SimFault{"cut-off", "the answer breaks off half way and the controller is dead from then on", true,
             simfault::breakOff},
    SimFault{"stale", "bytes of an older answer stand before the answer", true, simfault::prependStale},
    SimFault{"garbage", "as many bytes as were asked for, and all of them noise", true, simfault::scramble},
    SimFault{"hang-up", "the line goes away before the answer", false, simfault::hangUp},
};

/// The row with that name, or null.
[[nodiscard]] const SimFault* simFaultNamed(std::string_view name);

/// Good requests are counted from 1, re-sends included, from when the plan was made.
struct SimFaultPlan {
    static constexpr std::uint64_t kForEver = std::numeric_limits<std::uint64_t>::max();

    const SimFault* fault = nullptr;
    std::uint64_t first = 1;
    std::uint64_t last = kForEver;
    unsigned permille = 1000;  ///< how many in a thousand of these are struck

    [[nodiscard]] static SimFaultPlan always(std::string_view name);
    [[nodiscard]] static SimFaultPlan once(std::string_view name) { return at(name, 1); }
    [[nodiscard]] static SimFaultPlan at(std::string_view name, std::uint64_t request);
    [[nodiscard]] static SimFaultPlan from(std::string_view name, std::uint64_t request);

    /// "NAME" for ever, "NAME:once", "NAME:7" the 7th request only, "NAME:7+" from the 7th on, "NAME:2%" of all.
    [[nodiscard]] static std::optional<SimFaultPlan> parsed(std::string_view text);
};

}  // namespace qrv
