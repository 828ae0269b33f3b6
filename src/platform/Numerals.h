// The only conversions between numbers and texts, and the only narrowing ones between numbers: what does not fit raises
// RunTimeError "Overflow", and nothing wraps. No text depends on the machine's locale; the decimal mark is a point.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace qrv {

// --- texts to numbers ---

/// True for an optional sign, digits with at most one ".", and an optional exponent (e, E, d or D), blanks at the ends
/// aside. Not so: an empty text, "nan", "inf", hexadecimal digits, groups of digits.
[[nodiscard]] bool isNumeric(std::string_view text);
/// The number of a numeric text. Raises "Type mismatch" on any other text and "Overflow" beyond the range of a double.
[[nodiscard]] double numberFrom(std::string_view text);
/// The number of a numeric text, and 0 for any other.
[[nodiscard]] double numberOrZero(std::string_view text);

// --- numbers to narrower numbers ---

[[noreturn]] void raiseOverflow();

/// To the nearest whole number; a half goes to the even one.
[[nodiscard]] double roundedHalfEven(double value);
[[nodiscard]] std::uint8_t toByte(double value);
[[nodiscard]] std::int16_t toInt16(double value);
[[nodiscard]] std::int32_t toInt32(double value);

/// To the nearest 32-bit float; what is none, as no number and the infinite, raises.
[[nodiscard]] float toSingle(double value);

template <std::integral To, std::integral From>
[[nodiscard]] To checkedTo(From value) {
    if (!std::in_range<To>(value)) raiseOverflow();
    return static_cast<To>(value);
}
template <std::integral From>
[[nodiscard]] std::uint8_t toByte(From value) {
    return checkedTo<std::uint8_t>(value);
}
template <std::integral From>
[[nodiscard]] std::int16_t toInt16(From value) {
    return checkedTo<std::int16_t>(value);
}
template <std::integral From>
[[nodiscard]] std::int32_t toInt32(From value) {
    return checkedTo<std::int32_t>(value);
}

/// The text's number as a 16-bit or 32-bit value, rounded half to even. Raises as numberFrom and toInt16 do.
[[nodiscard]] std::int16_t int16From(std::string_view text);
[[nodiscard]] std::int32_t int32From(std::string_view text);

// --- numbers to texts ---

/// The value with exactly `decimals` places (0 or more) and at least one digit before the point: "##0", "#0.0", "#0.00"
/// and so on, whatever the count of "#". Rounds half away from zero on the value's decimal text of 15 digits. A value
/// that shows as zero has no sign.
[[nodiscard]] std::string formatNumber(double value, int decimals);
/// The same for a stored count of 10^-`scaleDigits`, in whole numbers throughout: (1235, 3, 2) is "1.24".
[[nodiscard]] std::string formatScaled(std::int32_t value, int scaleDigits, int shownDecimals);

/// A number as it is joined into a text: shortest decimal text of at most 15 digits, no blank before it.
[[nodiscard]] std::string joined(double value);
template <std::integral Number>
[[nodiscard]] std::string joined(Number value) {
    return std::to_string(value);
}

/// A number as text files print it: a blank or the minus before it, a blank behind it.
template <typename Number>
[[nodiscard]] std::string printed(Number value) {
    const std::string digits = joined(value);
    return (digits.starts_with('-') ? digits : " " + digits) + " ";
}

}  // namespace qrv
