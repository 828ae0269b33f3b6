// How much a controller holds: what the catalogue must fit into, what a download tests, and what the meters show.
#pragma once

#include <cstdint>

namespace qrv {

inline constexpr std::int32_t kMostConstants = 5632;
inline constexpr std::int32_t kMostRetentiveBytes = 634;
/// Texts of parameters.
inline constexpr std::int16_t kMostStrings = 100;

}  // namespace qrv
