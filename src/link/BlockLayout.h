// The block program as it stands in a controller: sizes and places of the block table, the constants and the strings.
// On the wire: never renumber.
#pragma once

#include <cstdint>

namespace qrv {

inline constexpr std::int16_t kBlockRecordLength = 10;
/// Place of the function's number within a block's record.
inline constexpr std::int16_t kFunctionInRecord = 1;

inline constexpr std::int16_t kSlotLength = 4;
inline constexpr std::int16_t kSlotsPerFrame = 32;
inline constexpr std::int16_t kConstantsFrame = kSlotsPerFrame * kSlotLength;

/// Where the strings begin: behind the last constant that is sent.
inline constexpr std::int16_t kStringsStart = 22528;
/// Block number, constant number.
inline constexpr std::int16_t kStringHead = 3;
/// A block number that no block has: the strings end here.
inline constexpr std::int16_t kStringsEnd = -1;

}  // namespace qrv
