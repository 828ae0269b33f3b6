// How far a transfer has come, for those who show it: which section, how fast, how much longer, how often it had to ask
// again.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/Clock.h"

namespace qrv {

class TransferProgress {
 public:
    void start(int sectionCount, Clock::TimePoint now) {
        *this = {};
        sectionCount_ = sectionCount;
        started_ = now;
        now_ = now;
    }
    void beginSection(std::string name) {
        ++section_;
        name_ = std::move(name);
        shownAt_ = Clock::TimePoint::min();
    }
    /// @param total  an estimate, which may change from one count to the next; 0 where none can be made
    void count(std::int32_t bytes, std::int32_t total, Clock::TimePoint now);
    void setRetries(int retries) { retries_ = retries; }
    /// Whether a window is to show all this again: at a section's beginning, then every so often.
    [[nodiscard]] bool isToBeShown();

    [[nodiscard]] int section() const { return section_; }  ///< from 1
    [[nodiscard]] int sectionCount() const { return sectionCount_; }
    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] std::int32_t bytes() const { return bytes_; }
    [[nodiscard]] int retries() const { return retries_; }
    /// Absent in the first half second, of which no rate can be told.
    [[nodiscard]] std::optional<std::int32_t> bytesPerSecond() const;
    /// From the start until the last count.
    [[nodiscard]] std::chrono::nanoseconds taken() const { return now_ - started_; }
    /// Absent where there is no rate, before the first bytes, and where there is no total.
    [[nodiscard]] std::optional<std::chrono::milliseconds> timeLeft() const;
    /// 0..100. Waits where the total grows beyond what was told, and never goes back.
    [[nodiscard]] int percent() const { return percent_; }
    /// All of it in one line.
    [[nodiscard]] std::string sentence() const;

 private:
    int section_ = 0;
    int sectionCount_ = 0;
    int retries_ = 0;
    std::string name_;
    std::int32_t bytes_ = 0;
    std::int32_t total_ = 0;
    int percent_ = 0;
    Clock::TimePoint started_{};
    Clock::TimePoint now_{};
    Clock::TimePoint shownAt_ = Clock::TimePoint::min();
};

}  // namespace qrv
