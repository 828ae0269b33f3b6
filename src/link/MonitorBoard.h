// The monitor's board as its file keeps it, beside the configuration. Used by Monitor.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace qrv {

/// A slot of the board.
struct MonitorEntry {
    static constexpr std::size_t kTagLength = 16;

    bool in_use = false;
    std::int16_t block = 0;
    std::int16_t kind = 0;                           ///< 1 analog, 2 discrete
    std::string tag = std::string(kTagLength, ' ');  ///< always 16 characters, code page 1252
    std::int32_t color = 0;                          ///< blue, green and red from the highest byte down
    friend bool operator==(const MonitorEntry&, const MonitorEntry&) = default;
};

inline constexpr std::size_t kMonitorSlots = 25;
using MonitorEntries = std::array<MonitorEntry, kMonitorSlots>;

/// The text as a tag: cut or filled with blanks to 16 characters.
[[nodiscard]] std::string fixedTag(std::string_view text);

/// On file: never renumber. 25 records of 52 bytes, numbers with the low byte first.
[[nodiscard]] std::string bytesOfBoard(const MonitorEntries& entries);
/// Whatever the bytes: what isn't there counts as zero, and a record of a block that no controller has as not in use.
[[nodiscard]] MonitorEntries boardFrom(std::string_view bytes);

/// The configuration's path with its last three characters replaced by "mon".
[[nodiscard]] std::string boardFileOf(const std::string& configuration);

}  // namespace qrv
