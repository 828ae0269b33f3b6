#include "link/FirmwareVersion.h"

#include "platform/Numerals.h"

namespace qrv {

std::string versionDigits(std::string_view versionText, std::size_t count) {
    return std::string(versionText.substr(versionText.empty() ? 0 : 1, count));
}

std::optional<float> firmwareVersion(std::string_view digits) {
    // An exponent makes a number elsewhere, but no version.
    if (!isNumeric(digits) || digits.find_first_of("eEdD") != std::string_view::npos) return std::nullopt;
    return static_cast<float>(numberFrom(digits));
}

}  // namespace qrv
