#include "blocks/TypedNumber.h"

#include "platform/Numerals.h"
#include "platform/RunTimeError.h"

namespace qrv {

std::optional<double> typedNumber(const std::string& text) {
    if (!isNumeric(text)) return std::nullopt;
    double number = 0;
    // Beyond the range of a double there is no number to take, and the user is told as for any other wrong text.
    if (!ignoringErrors([&] { number = numberFrom(text); })) return std::nullopt;
    return number;
}

}  // namespace qrv
