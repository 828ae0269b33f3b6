// A number that the user typed.
#pragma once

#include <optional>
#include <string>

namespace qrv {

/// The number; none if the text is not numeric, or so great that the machine has no number for it.
[[nodiscard]] std::optional<double> typedNumber(const std::string& text);

}  // namespace qrv
