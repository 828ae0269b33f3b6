// Bytes as hexadecimal digits: in traces, in what the terminal program shows, and in escapes.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qrv {

inline constexpr std::string_view kHexDigits = "0123456789ABCDEF";

/// " 04 00 1C": a blank before each byte.
[[nodiscard]] inline std::string hexPairs(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) text += {' ', kHexDigits[byte >> 4U], kHexDigits[byte & 15U]};
    return text;
}

}  // namespace qrv
