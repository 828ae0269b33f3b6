#include "link/sim/SimSections.h"

#include <algorithm>

namespace qrv {

namespace {

bool isCountOf(const SimAccess& row, std::uint32_t count) {
    return count >= row.leastCount && count <= row.mostCount && (count - row.leastCount) % row.countStep == 0;
}

bool isOffsetOf(const SimAccess& row, std::uint32_t offset) {
    return offset >= row.firstOffset && offset <= row.lastOffset && (offset - row.firstOffset) % row.offsetStep == 0;
}

constexpr bool areSound() {
    return std::ranges::all_of(kSimAccesses, [](const SimAccess& row) {
        return row.leastCount <= row.mostCount && row.mostCount <= 255 && row.countStep > 0 && row.offsetStep > 0 &&
               row.firstOffset <= row.lastOffset && row.lastOffset < kSimSectionSize &&
               row.firstOffset + row.mostCount <= kSimSectionSize;
    });
}
static_assert(areSound());

}  // namespace

std::string simRefusalOf(SimAccessKind kind, std::uint8_t section, std::uint32_t offset, std::uint32_t count,
                         SimStrictness strictness) {
    const auto isSection = [&](const SimAccess& row) { return row.kind == kind && row.section == section; };
    if (std::ranges::none_of(kSimAccesses, isSection)) {
        return kind == SimAccessKind::Read ? "the section is never read" : "the section is never written";
    }
    if (offset + count > kSimSectionSize) return "it runs past the section's end";
    if (strictness == SimStrictness::Sections) return "";
    const auto isSize = [&](const SimAccess& row) { return isSection(row) && isCountOf(row, count); };
    if (std::ranges::none_of(kSimAccesses, isSize)) return "the section has no record of that size";
    const auto fits = [&](const SimAccess& row) { return isSize(row) && isOffsetOf(row, offset); };
    if (std::ranges::none_of(kSimAccesses, fits)) return "no record of that size begins there";
    return "";
}

}  // namespace qrv
