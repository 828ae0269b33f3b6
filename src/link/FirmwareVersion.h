// The version of a controller's firmware as a number, and the versions from which it can do something.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qrv {

// Compared in single precision, for the version itself is kept so: 6.20 as a double is above 6.20 as a float.
inline constexpr float kTriacFirmware = 6.2F;
inline constexpr float kModbusFirmware = 4.1F;
inline constexpr float kPagerFirmware = 4.38F;
inline constexpr float kChartFirmware = 4.38F;
inline constexpr float kAnnounceFirmware = 4.4F;

/// `count` characters of a version text, from the second on: behind the letter stands the number.
[[nodiscard]] std::string versionDigits(std::string_view versionText, std::size_t count);

/// The number of such digits; nothing where they are no decimal number. Blanks around it don't matter.
[[nodiscard]] std::optional<float> firmwareVersion(std::string_view digits);

}  // namespace qrv
