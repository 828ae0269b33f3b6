// Small conversions between numbers and bytes, as the controller's formats ask for them. Each rule is its own: `Sint`
// and `longint` differ on negative numbers.
#pragma once

#include <cstdint>

namespace qrv {

/// The value's low 15 bits, with bit 15 set for every value above 32767. So 32768..65535 become their two's-complement
/// reading, and a negative value loses its sign: -1 gives 32767.
[[nodiscard]] std::int16_t Sint(std::int32_t value);

/// An unsigned 16-bit quantity, 0..65535, as the signed number of the same bits. Raises RunTimeError (Overflow) on any
/// other value.
[[nodiscard]] std::int16_t longint(std::int32_t value);

/// `acc` with `byte` in the place `position` of it, 0..3 from the least significant. Four calls with 3, 2, 1, 0
/// assemble a big-endian number; a high bit in place 3 makes it negative.
[[nodiscard]] std::int32_t blong(std::int32_t acc, std::uint8_t byte, int position);

}  // namespace qrv
