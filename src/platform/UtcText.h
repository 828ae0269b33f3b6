// A point in time as logs and live values stamp it: UTC, to the millisecond, sorting as text.
#pragma once

#include <chrono>
#include <string>

namespace qrv {

/// "2026-03-01T12:34:56.789Z"
[[nodiscard]] std::string utcText(std::chrono::system_clock::time_point time);

}  // namespace qrv
