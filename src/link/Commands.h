// The commands that a controller obeys, by code and length. Frames are told apart by their command alone, so these
// lengths are what both ends agree on.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qrv {

/// On the wire: never renumber.
enum class Command : std::uint8_t {
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
    AnnounceDownload = 48,
};

/// Bytes around the data of a write's request and of a read's reply: five before, the checksum behind.
inline constexpr std::int16_t kDataStart = 5;
inline constexpr std::int16_t kAroundData = 7;
/// Every reply but a read's.
inline constexpr std::int16_t kShortReply = 5;
/// A read's request.
inline constexpr std::int16_t kReadRequest = 7;
/// A count is one byte.
inline constexpr std::int16_t kMostData = 255;
/// What a poll's reply begins with.
inline constexpr std::uint8_t kControllerIsThere = 16;

struct CommandRow {
    Command command;
    std::string_view name;
    std::int16_t requestLength;  ///< whole frame; a write's data come on top
    std::int16_t replyLength;    ///< whole frame; a read's data come on top
};

inline constexpr std::array kCommands{
    CommandRow{Command::Poll, "poll", 3, kShortReply},
    CommandRow{Command::Write, "write", kAroundData, kShortReply},
    CommandRow{Command::Read, "read", kReadRequest, kAroundData},
    CommandRow{Command::Commit, "commit", 3, kShortReply},
    CommandRow{Command::ActivateMenus, "activate menus and screens", 3, kShortReply},
    CommandRow{Command::ReadOutput, "read output", 5, kShortReply},
    CommandRow{Command::PressKey, "press key", 4, kShortReply},
    CommandRow{Command::ActivateCharts, "activate charts", 3, kShortReply},
    CommandRow{Command::ActivateUnits, "activate units", 3, kShortReply},
    CommandRow{Command::ActivateModbus, "activate Modbus map", 3, kShortReply},
    CommandRow{Command::AnnounceDownload, "announce download", 3, kShortReply},
};

/// The row of a command byte, or null.
[[nodiscard]] constexpr const CommandRow* commandOf(std::uint8_t code) {
    for (const CommandRow& row : kCommands) {
        if (static_cast<std::uint8_t>(row.command) == code) return &row;
    }
    return nullptr;
}

constexpr bool codesAreUnique() {
    for (const CommandRow& row : kCommands) {
        if (commandOf(static_cast<std::uint8_t>(row.command)) != &row) return false;
    }
    return true;
}
static_assert(codesAreUnique());

/// What a request asks, in words: "read section 3 (constants and strings) offset 128 count 128".
[[nodiscard]] std::string describedRequest(std::span<const std::uint8_t> frame);

}  // namespace qrv
