// The controller's memory as the tool sees it: numbered sections, each a space of bytes with 16-bit offsets.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace qrv {

/// On the wire: never renumber. The block table is written through one section and read back through another.
enum class Section : std::uint8_t {
    Version = 0,
    BlockTable = 1,
    Constants = 3,
    BlockTableBack = 4,
    Alarms = 6,
    Menus = 9,
    Charts = 10,
    History = 11,
    Units = 12,
    Modbus = 13,
    Pager = 14,
};

struct SectionRow {
    Section section;
    std::string_view name;
};

inline constexpr std::array kSections{
    SectionRow{Section::Version, "version text"},
    SectionRow{Section::BlockTable, "block table, write side"},
    SectionRow{Section::Constants, "constants and strings"},
    SectionRow{Section::BlockTableBack, "block table, read side"},
    SectionRow{Section::Alarms, "alarms"},
    SectionRow{Section::Menus, "menus and screens"},
    SectionRow{Section::Charts, "charts"},
    SectionRow{Section::History, "historical data"},
    SectionRow{Section::Units, "engineering units"},
    SectionRow{Section::Modbus, "Modbus map"},
    SectionRow{Section::Pager, "pager"},
};

/// "" for a number that no section has.
[[nodiscard]] constexpr std::string_view sectionNameOf(std::uint8_t number) {
    for (const SectionRow& row : kSections) {
        if (static_cast<std::uint8_t>(row.section) == number) return row.name;
    }
    return {};
}

/// Bytes of the firmware's version text.
inline constexpr std::int16_t kVersionLength = 24;

}  // namespace qrv
