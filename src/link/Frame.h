// The frame of the controller's protocol, both ways: raw bytes of which the last two prove the others. A frame carries
// neither a start nor a length; where it ends is known from the command alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace qrv {

/// Bytes of the transmit buffer, and so the longest frame.
inline constexpr std::size_t kLongestFrame = 301;
/// A command or status byte and its checksum.
inline constexpr std::size_t kShortestFrame = 3;
inline constexpr std::size_t kChecksumLength = 2;

/// The two bytes behind a frame's body, in the order in which they are sent.
struct Checksum {
    std::uint8_t high = 0;
    std::uint8_t low = 0;
    friend bool operator==(const Checksum&, const Checksum&) = default;
};

/// The complement of the plain sum of the bytes. The sum is a 16-bit signed number on both sides: past 32767 it raises
/// RunTimeError (Overflow), and such a frame can't be sent.
[[nodiscard]] Checksum checksumOf(std::span<const std::uint8_t> bytes);

/// True if the sum of what stands before the checksum of `bytes` passes 32767: such a frame can't be checked.
[[nodiscard]] bool overflows(std::span<const std::uint8_t> bytes);

/// True if the last two of `bytes` are the checksum of those before: of all that arrived, whatever was expected. Fewer
/// than three bytes are never sound. Raises RunTimeError (Overflow) as checksumOf does.
[[nodiscard]] bool isSound(std::span<const std::uint8_t> bytes);

}  // namespace qrv
