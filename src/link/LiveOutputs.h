// What everything that shows a running controller's outputs has in common: the way to the controller and back, one
// output read, and the words of its value. Used by MGrid, Monitor and the terminal's watch.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/Clock.h"

namespace qrv {

class frmComm;
struct Workbench;

/// A function's `FuncFtype`, which is the kind of its block's main output.
enum class OutputKind : std::int16_t { Analog = 1, Discrete = 2 };

/// Whether a value that is no longer answered for is marked as such.
enum class StaleMarks { Shown, Absent };

/// An analog value comes in hundredths and is shown as "-0.05"; a discrete one as it came.
[[nodiscard]] std::string outputText(OutputKind kind, std::int32_t value);
/// The kind of a block's output by its function; absent for a function that is neither or that the catalogue lacks.
/// Moves the catalogue's cursor.
[[nodiscard]] std::optional<OutputKind> outputKindOf(Workbench& bench, std::int16_t block);
/// The tool tip of a value that has been asked for in vain since then.
[[nodiscard]] std::string silenceText(std::chrono::system_clock::time_point since);

/// How fast outputs come: readings of the last whole second or more.
class PollRate {
 public:
    void restart(Clock::TimePoint now);
    void count(Clock::TimePoint now);
    /// "12.5 readings/s"; "" until the first second is over, and where none has come for a while.
    [[nodiscard]] std::string text(Clock::TimePoint now) const;

 private:
    Clock::TimePoint since_{};
    Clock::TimePoint last_{};
    int readings_ = 0;
    std::string text_;
};

class LiveOutputs {
 public:
    LiveOutputs(Workbench& bench, frmComm& comm) : bench_(bench), comm_(comm) {}

    /// Opens the port and polls. False: the user was told why not, and the port is closed.
    bool connect();
    void disconnect();
    /// One reading, with all its retries. Absent after a bad exchange, be it silence, a bad checksum, a sum that
    /// overflows or a reply too short for a value. A port that was closed meanwhile is RunTimeError.
    [[nodiscard]] std::optional<std::int32_t> value(std::int16_t block, OutputKind kind);
    /// The same as shown text.
    [[nodiscard]] std::optional<std::string> text(std::int16_t block, OutputKind kind);
    /// When the last reading began: since then, if it came to nothing, there is no answer.
    [[nodiscard]] std::chrono::system_clock::time_point askedAt() const { return askedAt_; }
    /// The rate of the readings, in words.
    [[nodiscard]] std::string rate() const;
    /// Readings begin anew: the rate is that of those to come.
    void restartRate();

 private:
    Workbench& bench_;
    frmComm& comm_;
    std::chrono::system_clock::time_point askedAt_{};
    PollRate rate_;
};

}  // namespace qrv
