// What may be read and written where: one row for each size that the layouts of a section know. A frame that fits no
// row is refused, so a tool that reads or writes beside a layout is found out at its first frame.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qrv {

enum class SimAccessKind { Read, Write };

/// Offsets of the block table, of the strings and of the records behind the headers.
inline constexpr std::uint32_t kSimBlockCount = 705;
inline constexpr std::uint32_t kSimBlockRecord = 10;
inline constexpr std::uint32_t kSimBlockTable = kSimBlockCount * kSimBlockRecord;
inline constexpr std::uint32_t kSimStrings = 22528;
inline constexpr std::uint32_t kSimSectionSize = 65536;
inline constexpr std::uint32_t kSimMenuBlocks = 314;
inline constexpr std::uint32_t kSimChartBlocks = 144;

struct SimAccess {
    std::string_view name;
    SimAccessKind kind;
    std::uint8_t section;
    std::uint32_t leastCount, mostCount, countStep;     ///< counts: least, least + step, .. most
    std::uint32_t firstOffset, lastOffset, offsetStep;  ///< offsets: first, first + step, .. last
};

/// A row with one size, from `first` to `last` in steps.
[[nodiscard]] constexpr SimAccess simAccess(std::string_view name, SimAccessKind kind, std::uint8_t section,
                                            std::uint32_t count, std::uint32_t first, std::uint32_t last,
                                            std::uint32_t step) {
    return {name, kind, section, count, count, 1, first, last, step};
}

inline constexpr auto kR = SimAccessKind::Read;
inline constexpr auto kW = SimAccessKind::Write;
inline constexpr auto kEnd = kSimSectionSize - 1;

// On the wire: the layouts of all sections.
inline constexpr std::array kSimAccesses{
    simAccess("version text", kR, 0, 24, 0, 0, 1),
    simAccess("block table, 5 records", kW, 1, 50, 0, 7000, 50),
    simAccess("32 constants", kW, 3, 128, 0, 22400, 128),
    SimAccess{"string record", kW, 3, 4, 255, 1, kSimStrings, kEnd, 1},
    simAccess("end of the strings", kW, 3, 2, kSimStrings, kEnd, 1),
    // One read more than there are constants: the reader fetches ahead.
    simAccess("32 constants", kR, 3, 128, 0, 22528, 128),
    simAccess("string record", kR, 3, 20, kSimStrings, 24568, 20),
    simAccess("block table, 15 records", kR, 4, 150, 0, 6900, 150),
    simAccess("5 alarms", kW, 6, 180, 0, 2700, 180),
    simAccess("alarm", kR, 6, 36, 0, 2844, 36),
    simAccess("main header", kW, 9, 164, 0, 0, 1),
    simAccess("screen directory", kW, 9, 150, 164, 164, 1),
    simAccess("menu title", kW, 9, 22, kSimMenuBlocks, kEnd, 1),
    simAccess("menu item", kW, 9, 40, kSimMenuBlocks, kEnd, 1),
    simAccess("screen item", kW, 9, 80, kSimMenuBlocks, kEnd, 1),
    simAccess("checksum of menus and screens", kW, 9, 2, kSimMenuBlocks, kEnd, 1),
    simAccess("head with the loop list", kR, 9, 64, 0, 0, 1),
    simAccess("length and counts", kR, 9, 4, 0, 0, 1),
    simAccess("menu directory entry", kR, 9, 4, 64, 160, 4),
    simAccess("screen directory entry", kR, 9, 6, 164, 308, 6),
    simAccess("menu title", kR, 9, 22, kSimMenuBlocks, kEnd, 1),
    simAccess("menu item", kR, 9, 40, kSimMenuBlocks, kEnd, 1),
    simAccess("head of a screen item", kR, 9, 12, kSimMenuBlocks, kEnd, 1),
    simAccess("texts of a screen item", kR, 9, 68, kSimMenuBlocks + 12, kEnd, 1),
    simAccess("chart header", kW, 10, 144, 0, 0, 1),
    simAccess("chart title", kW, 10, 22, kSimChartBlocks, kEnd, 1),
    simAccess("pen", kW, 10, 38, kSimChartBlocks + 22, kEnd, 1),
    simAccess("checksum of charts", kW, 10, 2, kSimChartBlocks, kEnd, 1),
    simAccess("length, count or directory entry", kR, 10, 4, 0, 140, 4),
    // A title is read one byte short and a pen two bytes long.
    simAccess("chart title", kR, 10, 21, kSimChartBlocks, kEnd, 1),
    simAccess("pen", kR, 10, 40, kSimChartBlocks + 22, kEnd, 1),
    simAccess("head of the history", kW, 11, 4, 0, 0, 1),
    SimAccess{"analog list", kW, 11, 0, 240, 6, 4, 4, 1},
    SimAccess{"discrete list", kW, 11, 0, 160, 4, 4, 4 + 240, 6},
    simAccess("checksum of the history", kW, 11, 2, 4, 4 + 240 + 160, 2),
    simAccess("head or discrete record", kR, 11, 4, 0, 4 + 240 + 156, 2),
    simAccess("analog record", kR, 11, 6, 4, 4 + 234, 6),
    simAccess("header of the units", kW, 12, 6, 0, 0, 1),
    simAccess("global unit", kW, 12, 16, 6, 790, 16),
    simAccess("reserved record", kW, 12, 18, 806, 1688, 18),
    simAccess("block unit", kW, 12, 20, 1706, kEnd, 20),
    simAccess("checksum of the units", kW, 12, 2, 1706, kEnd, 20),
    simAccess("header of the units", kR, 12, 6, 0, 0, 1),
    simAccess("global unit", kR, 12, 16, 6, 790, 16),
    simAccess("block unit", kR, 12, 20, 1706, kEnd, 20),
    simAccess("64 registers", kW, 13, 192, 8, 584, 192),
    simAccess("Modbus port setup", kW, 13, 8, 0, 0, 1),
    simAccess("checksum of the Modbus map", kW, 13, 2, 776, 776, 1),
    simAccess("64 registers", kR, 13, 192, 8, 584, 192),
    simAccess("Modbus port setup", kR, 13, 8, 0, 0, 1),
    simAccess("pager record", kW, 14, 60, 0, 240, 60),
    simAccess("pager record", kR, 14, 60, 0, 240, 60),
};

/// How closely a frame is looked at.
enum class SimStrictness {
    Layouts,  ///< only the sizes and offsets of the layouts
    Sections  ///< any size anywhere within a section that is read, or written, at all
};

/// Why the controller won't take the access, in words; "" if it will.
[[nodiscard]] std::string simRefusalOf(SimAccessKind kind, std::uint8_t section, std::uint32_t offset,
                                       std::uint32_t count, SimStrictness strictness);

}  // namespace qrv
