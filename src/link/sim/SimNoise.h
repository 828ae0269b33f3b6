// A small source of repeatable noise for the simulated controller: the same seed gives the same numbers on every
// machine.
#pragma once

#include <cstdint>

namespace qrv {

/// Spreads the bits of a number evenly: neighbouring inputs give unrelated outputs.
[[nodiscard]] constexpr std::uint64_t scrambled(std::uint64_t value) {
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

class SimNoise {
 public:
    explicit SimNoise(std::uint64_t seed) : state_(seed) {}

    [[nodiscard]] std::uint64_t next() { return scrambled(state_++); }
    [[nodiscard]] std::uint8_t nextByte() { return static_cast<std::uint8_t>(next() & 0xFFU); }
    /// True in `permille` of a thousand calls.
    [[nodiscard]] bool chance(unsigned permille) { return next() % 1000U < permille; }

 private:
    std::uint64_t state_;
};

}  // namespace qrv
