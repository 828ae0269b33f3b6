#include "link/Frame.h"

#include <limits>
#include <numeric>

#include "platform/RunTimeError.h"

namespace qrv {

namespace {

using Bytes = std::span<const std::uint8_t>;

std::int64_t sumOf(Bytes bytes) { return std::accumulate(bytes.begin(), bytes.end(), std::int64_t{0}); }

bool isTooLarge(std::int64_t sum) { return sum > std::numeric_limits<std::int16_t>::max(); }

Bytes bodyOf(Bytes frame) { return frame.first(frame.size() - kChecksumLength); }

}  // namespace

Checksum checksumOf(std::span<const std::uint8_t> bytes) {
    const std::int64_t sum = sumOf(bytes);
    if (isTooLarge(sum)) throw RunTimeError(ErrorNumber::Overflow);
    const std::int64_t complement = ~sum;
    return {.high = static_cast<std::uint8_t>((complement >> 8) & 0xFF),
            .low = static_cast<std::uint8_t>(complement & 0xFF)};
}

bool overflows(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= kShortestFrame && isTooLarge(sumOf(bodyOf(bytes)));
}

bool isSound(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kShortestFrame) return false;
    const Checksum arrived{.high = bytes[bytes.size() - 2], .low = bytes[bytes.size() - 1]};
    return checksumOf(bodyOf(bytes)) == arrived;
}

}  // namespace qrv
