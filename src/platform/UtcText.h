// A point in time as text, in UTC. Logs and live values are stamped to the millisecond and sort as text.
#pragma once

#include <chrono>
#include <string>

namespace qrv {

/// "2026-03-01T12:34:56.789Z"
[[nodiscard]] std::string utcText(std::chrono::system_clock::time_point time);
/// @param format  as of `strftime`, at most 31 characters when filled in
[[nodiscard]] std::string utcText(std::chrono::system_clock::time_point time, const char* format);

}  // namespace qrv
