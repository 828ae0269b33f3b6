#include "link/TransferProgress.h"

#include <algorithm>

namespace qrv {

namespace {

/// Painting is dearer than a frame.
constexpr std::chrono::milliseconds kShownEach{100};

}  // namespace

void TransferProgress::count(std::int32_t bytes, std::int32_t total, Clock::TimePoint now) {
    bytes_ = bytes;
    total_ = total;
    now_ = now;
    if (total <= 0) return;
    const auto percent = static_cast<int>(std::min<std::int64_t>(100, std::int64_t{bytes} * 100 / total));
    percent_ = std::max(percent_, percent);
}

bool TransferProgress::isToBeShown() {
    if (now_ < shownAt_ + kShownEach) return false;
    shownAt_ = now_;
    return true;
}

std::int32_t TransferProgress::bytesPerSecond() const {
    const double seconds = std::chrono::duration<double>(now_ - started_).count();
    return seconds > 0 ? static_cast<std::int32_t>(bytes_ / seconds) : 0;
}

std::optional<std::chrono::milliseconds> TransferProgress::timeLeft() const {
    if (bytes_ <= 0 || total_ <= 0) return std::nullopt;
    const double passed = std::chrono::duration<double>(now_ - started_).count();
    const double left = passed * std::max(0, total_ - bytes_) / bytes_;
    return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(left));
}

std::string TransferProgress::sentence() const {
    std::string text = "Section " + std::to_string(section_) + " of " + std::to_string(sectionCount_) + ", " +
                       std::to_string(bytesPerSecond()) + " bytes a second";
    if (const auto left = timeLeft()) {
        text += ", " + std::to_string(std::chrono::round<std::chrono::seconds>(*left).count()) + " s left";
    }
    return text + ", " + std::to_string(retries_) + (retries_ == 1 ? " retry" : " retries");
}

}  // namespace qrv
