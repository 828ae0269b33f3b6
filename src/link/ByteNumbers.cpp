#include "link/ByteNumbers.h"

#include <cassert>
#include <limits>

#include "platform/RunTimeError.h"

namespace qrv {

std::int16_t Sint(std::int32_t value) {
    const std::int32_t low = value & 0x7FFF;
    const bool isAbove = value > std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(isAbove ? low - 0x8000 : low);
}

std::int16_t longint(std::int32_t value) {
    if (value < 0 || value > 0xFFFF) throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<std::int16_t>(value);
}

std::int32_t blong(std::int32_t acc, std::uint8_t byte, int position) {
    assert(position >= 0 && position <= 3);
    const int shift = 8 * position;
    const auto kept = static_cast<std::uint32_t>(acc) & ~(0xFFU << shift);
    return static_cast<std::int32_t>(kept | (static_cast<std::uint32_t>(byte) << shift));
}

}  // namespace qrv
