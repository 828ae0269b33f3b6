#include "link/sim/SimMemory.h"

#include <algorithm>
#include <string_view>

#include "link/sim/SimSections.h"

namespace qrv {

namespace {

constexpr std::uint8_t kBlockTableWritten = 1;
constexpr std::uint8_t kBlockTableRead = 4;
constexpr std::uint32_t kFunctionByte = 1;
constexpr std::uint32_t kKindByte = 8;

// On disk: the file of a memory begins with this, then for each section its number, its length in four bytes and its
// bytes, and ends with the CRC-32 of all before it.
constexpr std::string_view kMagic = "QRVMEM1\n";

std::uint32_t crc32(std::span<const std::uint8_t> bytes) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const auto byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~crc;
}

void appendLong(std::vector<std::uint8_t>& bytes, std::uint32_t value) {
    for (unsigned shift : {24U, 16U, 8U, 0U}) bytes.push_back(static_cast<std::uint8_t>(value >> shift & 0xFFU));
}

std::uint32_t longAt(std::span<const std::uint8_t> bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (const auto byte : bytes.subspan(at, 4)) value = value << 8U | byte;
    return value;
}

}  // namespace

SimMemory::SimMemory() {
    std::vector<std::uint8_t> table(kSimBlockTable, 0);
    for (std::size_t block = 0; block < kSimBlockCount; ++block) table[block * kSimBlockRecord + kFunctionByte] = kNop;
    write(kBlockTableWritten, 0, table);
}

void SimMemory::write(std::uint8_t section, std::uint32_t offset, std::span<const std::uint8_t> bytes) {
    store(section, offset, bytes);
    if (section == kBlockTableWritten) store(kBlockTableRead, offset, bytes);
}

void SimMemory::store(std::uint8_t section, std::uint32_t offset, std::span<const std::uint8_t> bytes) {
    auto& space = sections_.at(section);
    if (space.size() < offset + bytes.size()) {
        // What lies behind the last byte is zero anyway.
        while (!bytes.empty() && bytes.back() == 0 && space.size() < offset + bytes.size()) {
            bytes = bytes.first(bytes.size() - 1);
        }
        if (bytes.empty()) return;
        space.resize(std::max(space.size(), offset + bytes.size()), 0);
    }
    std::ranges::copy(bytes, space.begin() + static_cast<std::ptrdiff_t>(offset));
    while (!space.empty() && space.back() == 0) space.pop_back();
}

std::vector<std::uint8_t> SimMemory::read(std::uint8_t section, std::uint32_t offset, std::size_t count) const {
    const auto& space = sections_.at(section);
    std::vector<std::uint8_t> bytes(count, 0);
    for (std::size_t i = 0; i < count && offset + i < space.size(); ++i) bytes[i] = space[offset + i];
    return bytes;
}

std::uint16_t SimMemory::wordAt(std::uint8_t section, std::uint32_t offset) const {
    const auto bytes = read(section, offset, 2);
    return static_cast<std::uint16_t>(bytes[0] << 8U | bytes[1]);
}

std::uint8_t SimMemory::functionOf(std::uint16_t block) const {
    return read(kBlockTableRead, block * kSimBlockRecord + kFunctionByte, 1).front();
}

std::uint8_t SimMemory::kindOf(std::uint16_t block) const {
    return read(kBlockTableRead, block * kSimBlockRecord + kKindByte, 1).front();
}

std::vector<std::uint8_t> SimMemory::serialised() const {
    std::vector<std::uint8_t> bytes(kMagic.begin(), kMagic.end());
    for (std::size_t number = 0; number < kSectionCount; ++number) {
        const auto& space = sections_[number];
        if (space.empty()) continue;
        bytes.push_back(static_cast<std::uint8_t>(number));
        appendLong(bytes, static_cast<std::uint32_t>(space.size()));
        bytes.insert(bytes.end(), space.begin(), space.end());
    }
    appendLong(bytes, crc32(bytes));
    return bytes;
}

std::optional<SimMemory> SimMemory::parsed(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kMagic.size() + 4 || !std::ranges::equal(bytes.first(kMagic.size()), kMagic))
        return std::nullopt;
    const auto body = bytes.first(bytes.size() - 4);
    if (crc32(body) != longAt(bytes, body.size())) return std::nullopt;
    SimMemory memory;
    for (auto& space : memory.sections_) space.clear();
    for (auto rest = body.subspan(kMagic.size()); !rest.empty();) {
        if (rest.size() < 5) return std::nullopt;
        const auto number = rest.front();
        const auto length = longAt(rest, 1);
        rest = rest.subspan(5);
        if (number >= kSectionCount || length > kSimSectionSize || length > rest.size()) return std::nullopt;
        memory.store(number, 0, rest.first(length));
        rest = rest.subspan(length);
    }
    return memory;
}

}  // namespace qrv
