// The codes in the function catalogue, and the word for an output that it doesn't have. On disk: never renumber.
#pragma once

#include <cstdint>
#include <string_view>

namespace qrv {

// What a function's main output is, and what an input takes.
inline constexpr std::int16_t kAnalog = 1;
inline constexpr std::int16_t kDiscrete = 2;

// A parameter's type.
inline constexpr std::int16_t kPlainParameter = 1;
inline constexpr std::int16_t kDecimalCountParameter = 2;  ///< the count of decimals of others
inline constexpr std::int16_t kStringParameter = 3;
inline constexpr std::int16_t kCountedParameter = 4;  ///< with as many decimals as the count before it says

/// Shown for an output that the block's function doesn't have.
inline constexpr std::string_view kNoSuchOutput = "BUNK";

}  // namespace qrv
