// The controller's side of framing. A request has no start byte and no length field, so its end follows from its
// command byte alone, and for a write from its count. Written apart from the tool's own frame code, and meant to stay
// apart: two readings of one protocol catch what one reading, shared by both ends, would agree on wrongly.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/Clock.h"

namespace qrv {

/// On the wire: never renumber.
enum class SimCommandCode : std::uint8_t {
    Poll = 1,
    Write = 2,
    Read = 4,
    Commit = 8,
    ActivateMenus = 31,
    ReadOutput = 32,
    PressKey = 33,
    ActivateCharts = 37,
    ActivateUnits = 39,
    ActivateModbus = 40,
    Announce = 48,
};

struct SimCommand {
    SimCommandCode code;
    std::string_view name;
    /// Whole request, checksum included; for a write the part beside its data.
    std::size_t length;
};

inline constexpr std::array kSimCommands{
    SimCommand{.code = SimCommandCode::Poll, .name = "poll", .length = 3},
    SimCommand{.code = SimCommandCode::Write, .name = "write", .length = 7},
    SimCommand{.code = SimCommandCode::Read, .name = "read", .length = 7},
    SimCommand{.code = SimCommandCode::Commit, .name = "commit", .length = 3},
    SimCommand{.code = SimCommandCode::ActivateMenus, .name = "activate menus", .length = 3},
    SimCommand{.code = SimCommandCode::ReadOutput, .name = "read output", .length = 5},
    SimCommand{.code = SimCommandCode::PressKey, .name = "press key", .length = 4},
    SimCommand{.code = SimCommandCode::ActivateCharts, .name = "activate charts", .length = 3},
    SimCommand{.code = SimCommandCode::ActivateUnits, .name = "activate units", .length = 3},
    SimCommand{.code = SimCommandCode::ActivateModbus, .name = "activate Modbus", .length = 3},
    SimCommand{.code = SimCommandCode::Announce, .name = "announce", .length = 3},
};

/// The command with that code, or null.
[[nodiscard]] const SimCommand* simCommandOf(std::uint8_t code);

/// The two checksum bytes, first byte in the high half: the one's complement of the low 16 bits of the plain sum.
[[nodiscard]] std::uint16_t simChecksumOf(std::span<const std::uint8_t> bytes);
/// Appends the checksum.
void sealSimFrame(std::vector<std::uint8_t>& frame);

/// What came of the bytes up to here.
enum class SimFinding {
    Frame,           ///< a whole request with a good checksum
    BadChecksum,     ///< a whole request with a bad one
    UnknownCommand,  ///< a first byte that no request has: all is dropped until the line pauses or filler comes
    Torn,            ///< a request that broke off: the line paused in the middle of it
};

struct SimReceived {
    SimFinding finding;
    std::vector<std::uint8_t> bytes;
    Clock::TimePoint at;  ///< when its last byte had come
};

class SimFrameReader {
 public:
    /// A pause of more than this within a request ends it: what comes next is a new request. Well below the 1.8 s after
    /// which the tool sends again, well above what lies between two bytes of one write.
    static constexpr std::chrono::milliseconds kPause{500};
    /// No request is longer: a write of 255 bytes.
    static constexpr std::size_t kLongestRequest = 262;

    /// Takes one byte and appends what it brought to light, if anything.
    void take(std::uint8_t byte, Clock::TimePoint at, std::vector<SimReceived>& found);

    /// Drops half a request: the controller has just been switched on.
    void forget();

    /// Zeros that came where a request might begin: the tool's filler.
    [[nodiscard]] std::uint64_t fillerCount() const { return fillerCount_; }

 private:
    void endAtPause(Clock::TimePoint at, std::vector<SimReceived>& found);
    void skipLost(std::uint8_t byte);
    [[nodiscard]] bool isWhole() const;

    std::vector<std::uint8_t> pending_;
    const SimCommand* command_ = nullptr;  ///< of the request that is pending
    bool isLost_ = false;
    std::size_t zerosInRow_ = 0;
    std::uint64_t fillerCount_ = 0;
    Clock::TimePoint lastAt_{};
};

}  // namespace qrv
