#include "link/Frame.h"

#include <limits>

#include "platform/RunTimeError.h"

namespace qrv {

Checksum checksumOf(std::span<const std::uint8_t> bytes) {
    int sum = 0;
    for (const std::uint8_t byte : bytes) {
        sum += byte;
        if (sum > std::numeric_limits<std::int16_t>::max()) throw RunTimeError(ErrorNumber::Overflow);
    }
    const int complement = ~sum;
    return {.high = static_cast<std::uint8_t>((complement >> 8) & 0xFF),
            .low = static_cast<std::uint8_t>(complement & 0xFF)};
}

bool isSound(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kShortestFrame) return false;
    const auto body = bytes.first(bytes.size() - kChecksumLength);
    const Checksum arrived{.high = bytes[bytes.size() - 2], .low = bytes[bytes.size() - 1]};
    return checksumOf(body) == arrived;
}

}  // namespace qrv
