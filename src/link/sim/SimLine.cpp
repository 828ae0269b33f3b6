#include "link/sim/SimLine.h"

#include <algorithm>
#include <charconv>

namespace qrv {

std::optional<SimPace> SimPace::ofSettings(std::string_view settings) {
    SimPace pace;
    const auto [end, error] = std::from_chars(settings.data(), settings.data() + settings.size(), pace.baud);
    if (error != std::errc{} || pace.baud == 0) return std::nullopt;
    const auto behindBaud = settings.substr(static_cast<std::size_t>(end - settings.data()));
    if (behindBaud.starts_with(",N")) pace.bitsPerByte = 10;
    return pace;
}

std::chrono::nanoseconds SimPace::timeOf(std::size_t byteCount) const {
    return std::chrono::nanoseconds(1'000'000'000ULL * byteCount * bitsPerByte / baud);
}

Clock::TimePoint SimLine::arrivalOf(Clock::TimePoint sentAt) {
    inFreeAt_ = std::max(inFreeAt_, sentAt);
    if (pace_) inFreeAt_ += pace_->timeOf(1);
    return inFreeAt_;
}

void SimLine::send(std::span<const std::uint8_t> answer, Clock::TimePoint readyAt) {
    const auto start = std::max(readyAt, outFreeAt_);
    for (std::size_t sent = 0; sent < answer.size();) {
        const auto lump = answer.subspan(sent, pace_ ? std::min(kLump, answer.size() - sent) : answer.size());
        sent += lump.size();
        outFreeAt_ = pace_ ? start + pace_->timeOf(sent) : start;
        queue_.push_back({.at = outFreeAt_, .bytes = {lump.begin(), lump.end()}});
    }
}

std::vector<std::uint8_t> SimLine::take(Clock::TimePoint now) {
    std::vector<std::uint8_t> bytes;
    for (; !queue_.empty() && queue_.front().at <= now; queue_.pop_front()) {
        bytes.insert(bytes.end(), queue_.front().bytes.begin(), queue_.front().bytes.end());
    }
    return bytes;
}

void SimLine::clear() {
    queue_.clear();
    inFreeAt_ = outFreeAt_ = {};
}

std::optional<Clock::TimePoint> SimLine::nextArrival() const {
    if (queue_.empty()) return std::nullopt;
    return queue_.front().at;
}

}  // namespace qrv
