#include "blocks/ParameterScale.h"

#include <array>

#include "platform/Numerals.h"

namespace qrv {

namespace {

constexpr std::array kPowersOfTen{1.0, 10.0, 100.0, 1000.0, 10000.0};
constexpr std::int32_t kMostDecimals = 3;
constexpr std::int32_t kMostCounted = 4;
constexpr int kThousandths = 3;

}  // namespace

std::optional<ParameterScale> ParameterScale::ofDecimal(std::int32_t decimal) {
    if (decimal < 0 || decimal > kMostDecimals) return std::nullopt;
    return ParameterScale{.storedDigits = decimal == 0 ? 0 : kThousandths, .shownDecimals = decimal};
}

std::optional<ParameterScale> ParameterScale::ofCount(std::int32_t count) {
    if (count < 0 || count > kMostCounted) return std::nullopt;
    return ParameterScale{.storedDigits = count, .shownDecimals = count};
}

double ParameterScale::factor() const { return kPowersOfTen.at(static_cast<std::size_t>(storedDigits)); }

std::string ParameterScale::shown(std::int32_t stored) const {
    return formatScaled(stored, storedDigits, shownDecimals);
}

}  // namespace qrv
