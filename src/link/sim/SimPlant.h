// The outputs of a plant that never was: analog values that drift about set points, discrete ones that switch in
// cycles. Each value follows from seed, block and time alone, so two runs with one seed show the same.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace qrv {

/// What the functions give that are constant by their nature (ZERO, FULL, OFF, ON), in hundredths or as 0 and 1;
/// nothing for all others. In a plant these don't move.
[[nodiscard]] std::optional<std::int16_t> constantOutputOf(std::uint8_t function);

class SimPlant {
 public:
    explicit SimPlant(std::uint64_t seed) : seed_(seed) {}

    /// In hundredths, between 0.00 and 100.00: a measurement that follows its set point, swings slowly about it and
    /// trembles in the last digits.
    [[nodiscard]] std::int16_t analogAt(std::uint16_t block, std::chrono::milliseconds time) const;
    /// 0 or 1: on for a part of each cycle, that part differing a little from cycle to cycle.
    [[nodiscard]] std::uint8_t discreteAt(std::uint16_t block, std::chrono::milliseconds time) const;

 private:
    /// A number from 0 up to `limit`, not included, that belongs to this block and this use of it.
    [[nodiscard]] std::int64_t pick(std::uint16_t block, std::uint64_t use, std::int64_t limit) const;

    std::uint64_t seed_;
};

}  // namespace qrv
