#include "link/TransferProgress.h"

#include <algorithm>

namespace qrv {

namespace {

/// Painting is dearer than a frame.
constexpr std::chrono::milliseconds kShownEach{100};
/// The first frames are counted before their time has passed.
constexpr std::chrono::milliseconds kMeasurable{500};

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

std::optional<std::int32_t> TransferProgress::bytesPerSecond() const {
    if (taken() < kMeasurable) return std::nullopt;
    return static_cast<std::int32_t>(bytes_ / std::chrono::duration<double>(taken()).count());
}

std::optional<std::chrono::milliseconds> TransferProgress::timeLeft() const {
    if (taken() < kMeasurable || bytes_ <= 0 || total_ <= 0) return std::nullopt;
    const double passed = std::chrono::duration<double>(taken()).count();
    const double left = passed * std::max(0, total_ - bytes_) / bytes_;
    return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(left));
}

std::string TransferProgress::sentence() const {
    std::string text = "Section " + std::to_string(section_) + " of " + std::to_string(sectionCount_);
    if (const auto rate = bytesPerSecond()) text += ", " + std::to_string(*rate) + " bytes a second";
    if (const auto left = timeLeft()) {
        text += ", " + std::to_string(std::chrono::round<std::chrono::seconds>(*left).count()) + " s left";
    }
    return text + ", " + std::to_string(retries_) + (retries_ == 1 ? " retry" : " retries");
}

}  // namespace qrv
