#include "platform/Numerals.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/CodePage.h"
#include "platform/RunTimeError.h"

namespace qrv {

namespace {

constexpr int kMostDigits = 15;  // a double holds every decimal text of 15 digits

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t digitCount(std::string_view text) {
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
}

/// The pieces of a numeric text, each as typed.
struct NumeralParts {
    bool negative = false;
    std::string whole;
    std::string fraction;
    std::string exponent;  ///< with its sign; "" where there is none
};

bool takeSign(std::string_view& text, bool& negative) {
    if (text.empty() || (text.front() != '+' && text.front() != '-')) return false;
    negative = text.front() == '-';
    text.remove_prefix(1);
    return true;
}

std::string takeDigits(std::string_view& text) {
    const std::string digits(text.substr(0, digitCount(text)));
    text.remove_prefix(digits.size());
    return digits;
}

bool splitNumeral(std::string_view typed, NumeralParts& parts) {
    const std::string held = trimmed(typed);
    std::string_view text = held;
    takeSign(text, parts.negative);
    parts.whole = takeDigits(text);
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        parts.fraction = takeDigits(text);
    }
    if (parts.whole.empty() && parts.fraction.empty()) return false;
    if (text.empty()) return true;
    if (std::string_view("eEdD").find(text.front()) == std::string_view::npos) return false;
    text.remove_prefix(1);
    bool negativeExponent = false;
    takeSign(text, negativeExponent);
    const std::string digits = takeDigits(text);
    parts.exponent = (negativeExponent ? "-" : "") + digits;
    return !digits.empty() && text.empty();
}

/// True if a number too large or too small for a double is too large.
bool isHuge(const NumeralParts& parts) {
    const std::string digits = parts.whole + parts.fraction;
    const auto leadingZeros = static_cast<std::int64_t>(std::min(digits.find_first_not_of('0'), digits.size()));
    std::int64_t exponent = parts.exponent.starts_with('-') ? -1 : 1;
    const auto [end, fault] =
        std::from_chars(parts.exponent.data(), parts.exponent.data() + parts.exponent.size(), exponent);
    static_cast<void>(end);
    if (fault == std::errc::result_out_of_range) return exponent > 0;
    if (parts.exponent.empty()) exponent = 0;
    return static_cast<std::int64_t>(parts.whole.size()) - leadingZeros + exponent > 0;
}

/// A number as decimal digits: 0.d1d2d3... times 10 to the power `pointPlace`.
struct DecimalDigits {
    bool negative = false;
    std::string digits;  ///< no zeros at the end; "" for zero
    int pointPlace = 0;  ///< how many of the digits stand before the point; may be below 0 or beyond them
};

void dropEndZeros(std::string& digits) { digits.erase(digits.find_last_not_of('0') + 1); }

DecimalDigits digitsOf(double value) {
    if (!std::isfinite(value)) raiseOverflow();
    std::array<char, 40> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), std::abs(value),
                                       std::chars_format::scientific, kMostDigits - 1);
    const std::string_view all(text.data(), static_cast<std::size_t>(written.ptr - text.data()));
    const std::size_t mark = all.find('e');
    DecimalDigits result{.negative = value < 0, .digits = std::string(1, all.front()), .pointPlace = 0};
    result.digits += all.substr(2, mark - 2);
    const bool isBelowOne = all[mark + 1] == '-';
    int exponent = 0;
    std::from_chars(all.data() + mark + 2, all.data() + all.size(), exponent);
    result.pointPlace = (isBelowOne ? -exponent : exponent) + 1;
    dropEndZeros(result.digits);
    return result;
}

DecimalDigits digitsOf(std::int32_t value, int scaleDigits) {
    DecimalDigits result{.negative = value < 0, .digits = {}, .pointPlace = 0};
    result.digits = std::to_string(std::abs(std::int64_t{value}));
    result.pointPlace = static_cast<int>(result.digits.size()) - scaleDigits;
    dropEndZeros(result.digits);
    return result;
}

/// Keeps `decimals` places behind the point; a half goes away from zero.
void roundHalfAway(DecimalDigits& number, int decimals) {
    const int kept = number.pointPlace + decimals;
    if (kept >= static_cast<int>(number.digits.size())) return;
    const bool goesUp = kept >= 0 && number.digits[static_cast<std::size_t>(kept)] >= '5';
    number.digits.resize(static_cast<std::size_t>(std::max(kept, 0)));
    if (!goesUp) return;
    for (auto digit = number.digits.rbegin(); digit != number.digits.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    number.digits.insert(number.digits.begin(), '1');
    ++number.pointPlace;
}

/// Plain text with at least `decimals` places and at least one digit before the point.
std::string plainText(const DecimalDigits& number, int decimals) {
    const auto digitAt = [&](int place) {
        const bool isKept = place >= 0 && place < static_cast<int>(number.digits.size());
        return isKept ? number.digits[static_cast<std::size_t>(place)] : '0';
    };
    std::string text;
    const bool isZero = number.digits.find_first_not_of('0') == std::string::npos;
    if (number.negative && !isZero) text += '-';
    for (int place = std::min(number.pointPlace - 1, 0); place < number.pointPlace; ++place) text += digitAt(place);
    const int places =
        isZero ? decimals : std::max(decimals, static_cast<int>(number.digits.size()) - number.pointPlace);
    if (places > 0) text += '.';
    for (int i = 0; i < places; ++i) text += digitAt(number.pointPlace + i);
    return text;
}

std::string formatDigits(DecimalDigits number, int decimals) {
    roundHalfAway(number, decimals);
    if (number.digits.empty()) number.pointPlace = 1;
    return plainText(number, decimals);
}

std::string exponentText(const DecimalDigits& number) {
    const int exponent = number.pointPlace - 1;
    std::string text = (number.negative ? "-" : "") + number.digits.substr(0, 1);
    if (number.digits.size() > 1) text += "." + number.digits.substr(1);
    return text + (exponent < 0 ? "E-" : "E+") + std::to_string(std::abs(exponent));
}

template <typename To>
To roundedTo(double value) {
    const double whole = roundedHalfEven(value);
    // NaN fails both comparisons.
    const bool fits =
        whole >= double{std::numeric_limits<To>::min()} && whole <= double{std::numeric_limits<To>::max()};
    if (!fits) raiseOverflow();
    return static_cast<To>(whole);
}

}  // namespace

void raiseOverflow() { throw RunTimeError(ErrorNumber::Overflow); }

bool isNumeric(std::string_view text) {
    NumeralParts parts;
    return splitNumeral(text, parts);
}

double numberFrom(std::string_view text) {
    NumeralParts parts;
    if (!splitNumeral(text, parts)) throw RunTimeError(ErrorNumber::TypeMismatch);
    const std::string plain =
        "0" + parts.whole + "." + parts.fraction + "0" + (parts.exponent.empty() ? "" : "e" + parts.exponent);
    double value = 0;
    const auto [end, fault] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    static_cast<void>(end);
    if (fault == std::errc::result_out_of_range) {
        if (isHuge(parts)) raiseOverflow();
        value = 0;
    }
    return parts.negative ? -value : value;
}

double numberOrZero(std::string_view text) { return isNumeric(text) ? numberFrom(text) : 0; }

double roundedHalfEven(double value) { return std::nearbyint(value); }

std::uint8_t toByte(double value) { return roundedTo<std::uint8_t>(value); }
std::int16_t toInt16(double value) { return roundedTo<std::int16_t>(value); }
std::int32_t toInt32(double value) { return roundedTo<std::int32_t>(value); }

float toSingle(double value) {
    const bool fits = std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max());
    if (!fits) raiseOverflow();
    return static_cast<float>(value);
}

std::int16_t int16From(std::string_view text) { return toInt16(numberFrom(text)); }
std::int32_t int32From(std::string_view text) { return toInt32(numberFrom(text)); }

std::string formatNumber(double value, int decimals) { return formatDigits(digitsOf(value), decimals); }

std::string formatScaled(std::int32_t value, int scaleDigits, int shownDecimals) {
    return formatDigits(digitsOf(value, scaleDigits), shownDecimals);
}

std::string joined(double value) {
    const DecimalDigits number = digitsOf(value);
    if (number.digits.empty()) return "0";
    const bool isOrdinary = number.pointPlace > -kMostDigits && number.pointPlace <= kMostDigits;
    return isOrdinary ? plainText(number, 0) : exponentText(number);
}

}  // namespace qrv
