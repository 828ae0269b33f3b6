// Every frame on the line as a line of text, both ways: when, which way, what it asks, its bytes, what it was worth.
#pragma once

#include <functional>
#include <string>

#include "link/LinkObserver.h"
#include "platform/Clock.h"

namespace qrv {

class FrameTrace final : public LinkObserver {
 public:
    using Line = std::function<void(const std::string& line)>;

    /// Times count from now.
    FrameTrace(const Clock& clock, Line line) : clock_(clock), started_(clock.now()), line_(std::move(line)) {}

    void sent(std::span<const std::uint8_t> frame, int attempt) override;
    void received(std::span<const std::uint8_t> reply, Verdict verdict) override;
    void discarded(std::span<const std::uint8_t> bytes) override;
    void resynchronised(std::span<const std::uint8_t> filler) override;

 private:
    [[nodiscard]] std::string stamp() const;

    const Clock& clock_;
    Clock::TimePoint started_;
    Line line_;
};

}  // namespace qrv
