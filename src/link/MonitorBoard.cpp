#include "link/MonitorBoard.h"

#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr std::size_t kRecordLength = 52;
// In a record: in_use, block, kind, tag, color. The rest is zero.
constexpr std::size_t kBlockAt = 2;
constexpr std::size_t kKindAt = 4;
constexpr std::size_t kTagAt = 6;
constexpr std::size_t kColorAt = kTagAt + MonitorEntry::kTagLength;
constexpr std::int16_t kTrue = -1;

constexpr int kExtension = 3;  // characters of a configuration's name that give way to the board's

void putNumber(std::string& bytes, std::size_t at, std::size_t width, std::int32_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    for (std::size_t i = 0; i < width; ++i) bytes[at + i] = static_cast<char>(bits >> (8 * i) & 0xFF);
}

std::uint32_t numberAt(std::string_view bytes, std::size_t at, std::size_t width) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < width; ++i) {
        bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
    }
    return bits;
}

std::int16_t wordAt(std::string_view bytes, std::size_t at) {
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(numberAt(bytes, at, 2)));
}

MonitorEntry entryFrom(std::string_view record) {
    MonitorEntry entry{.in_use = wordAt(record, 0) != 0,
                       .block = wordAt(record, kBlockAt),
                       .kind = wordAt(record, kKindAt),
                       .tag = std::string(record.substr(kTagAt, MonitorEntry::kTagLength)),
                       .color = static_cast<std::int32_t>(numberAt(record, kColorAt, 4))};
    const bool isBlock = entry.block >= 0 && entry.block <= kLastBlock;
    return entry.in_use && isBlock ? entry : MonitorEntry{};
}

/// Of a path, whose characters may take more than one byte.
void dropLastCharacter(std::string& utf8) {
    const auto goesOn = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    while (!utf8.empty() && goesOn(utf8.back())) utf8.pop_back();
    if (!utf8.empty()) utf8.pop_back();
}

}  // namespace

std::string fixedTag(std::string_view text) {
    std::string tag(text.substr(0, MonitorEntry::kTagLength));
    tag.resize(MonitorEntry::kTagLength, ' ');
    return tag;
}

std::string bytesOfBoard(const MonitorEntries& entries) {
    std::string bytes;
    for (const MonitorEntry& entry : entries) {
        std::string record(kRecordLength, '\0');
        putNumber(record, 0, 2, entry.in_use ? kTrue : 0);
        putNumber(record, kBlockAt, 2, entry.block);
        putNumber(record, kKindAt, 2, entry.kind);
        record.replace(kTagAt, MonitorEntry::kTagLength, fixedTag(entry.tag));
        putNumber(record, kColorAt, 4, entry.color);
        bytes += record;
    }
    return bytes;
}

MonitorEntries boardFrom(std::string_view bytes) {
    std::string whole(bytes.substr(0, kMonitorSlots * kRecordLength));
    whole.resize(kMonitorSlots * kRecordLength, '\0');
    MonitorEntries entries;
    for (std::size_t i = 0; i < kMonitorSlots; ++i) {
        entries.at(i) = entryFrom(std::string_view(whole).substr(i * kRecordLength, kRecordLength));
    }
    return entries;
}

std::string boardFileOf(const std::string& configuration) {
    std::string name = configuration;
    for (int i = 0; i < kExtension; ++i) dropLastCharacter(name);
    return name + "mon";
}

}  // namespace qrv
