#include "platform/UtcText.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace qrv {

std::string utcText(std::chrono::system_clock::time_point time) {
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time - whole).count();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(whole);
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> stamp{};
    std::strftime(stamp.data(), stamp.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    std::array<char, 8> rest{};
    std::snprintf(rest.data(), rest.size(), ".%03dZ", static_cast<int>(milliseconds));
    return std::string(stamp.data()) + rest.data();
}

}  // namespace qrv
