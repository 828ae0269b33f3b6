#include "platform/UtcText.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace qrv {

std::string utcText(std::chrono::system_clock::time_point time) {
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time - whole).count();
    std::array<char, 8> rest{};
    std::snprintf(rest.data(), rest.size(), ".%03dZ", static_cast<int>(milliseconds));
    return utcText(whole, "%Y-%m-%dT%H:%M:%S") + rest.data();
}

std::string utcText(std::chrono::system_clock::time_point time, const char* format) {
    // Down to the whole second, which a conversion need not do before 1970.
    const std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), format, &parts)};
}

}  // namespace qrv
