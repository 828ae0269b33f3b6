#include "link/sim/SimFrameReader.h"

#include <algorithm>
#include <utility>

namespace qrv {

const SimCommand* simCommandOf(std::uint8_t code) {
    const auto* const found = std::ranges::find(kSimCommands, static_cast<SimCommandCode>(code), &SimCommand::code);
    return found == kSimCommands.end() ? nullptr : found;
}

std::uint16_t simChecksumOf(std::span<const std::uint8_t> bytes) {
    std::uint32_t sum = 0;
    for (const auto byte : bytes) sum += byte;
    return static_cast<std::uint16_t>(~sum & 0xFFFFU);
}

void sealSimFrame(std::vector<std::uint8_t>& frame) {
    const auto checksum = simChecksumOf(frame);
    frame.push_back(static_cast<std::uint8_t>(checksum >> 8U));
    frame.push_back(static_cast<std::uint8_t>(checksum & 0xFFU));
}

void SimFrameReader::endAtPause(Clock::TimePoint at, std::vector<SimReceived>& found) {
    if (at - lastAt_ <= kPause) return;
    isLost_ = false;
    if (pending_.empty()) return;
    found.push_back({.finding = SimFinding::Torn, .bytes = std::exchange(pending_, {}), .at = lastAt_});
}

// Where the command is unknown no end is known either. A run of zeros longer than any request, which is what the tool's
// filler is for, or a pause leads back to a beginning.
void SimFrameReader::skipLost(std::uint8_t byte) {
    zerosInRow_ = byte == 0 ? zerosInRow_ + 1 : 0;
    if (zerosInRow_ >= kLongestRequest) isLost_ = false;
}

void SimFrameReader::forget() {
    pending_.clear();
    isLost_ = false;
}

bool SimFrameReader::isWhole() const {
    if (command_->code != SimCommandCode::Write) return pending_.size() == command_->length;
    return pending_.size() > 2 && pending_.size() == command_->length + pending_[2];
}

void SimFrameReader::take(std::uint8_t byte, Clock::TimePoint at, std::vector<SimReceived>& found) {
    endAtPause(at, found);
    lastAt_ = at;
    if (isLost_) return skipLost(byte);
    if (pending_.empty() && byte == 0) {
        ++fillerCount_;
        return;
    }
    pending_.push_back(byte);
    if (pending_.size() == 1) command_ = simCommandOf(byte);
    if (command_ == nullptr) {
        isLost_ = true;
        zerosInRow_ = 0;
        found.push_back({.finding = SimFinding::UnknownCommand, .bytes = std::exchange(pending_, {}), .at = at});
        return;
    }
    if (!isWhole()) return;
    const auto body = std::span(pending_).first(pending_.size() - 2);
    const auto sent = static_cast<std::uint16_t>(pending_[body.size()] << 8U | pending_[body.size() + 1]);
    const auto finding = sent == simChecksumOf(body) ? SimFinding::Frame : SimFinding::BadChecksum;
    found.push_back({.finding = finding, .bytes = std::exchange(pending_, {}), .at = at});
}

}  // namespace qrv
