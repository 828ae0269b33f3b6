// The memory of the simulated controller: sections as byte spaces of 64 KiB. A new one holds 705 NOP blocks and is zero
// beside that. Knows of the layouts only what the controller itself needs: the block table.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace qrv {

class SimMemory {
 public:
    static constexpr std::size_t kSectionCount = 15;
    static constexpr std::uint8_t kNop = 127;

    SimMemory();

    /// The caller has seen to it that the bytes lie within the section. What goes into the block table's write side,
    /// section 1, stands in its read side, section 4, as well.
    void write(std::uint8_t section, std::uint32_t offset, std::span<const std::uint8_t> bytes);
    [[nodiscard]] std::vector<std::uint8_t> read(std::uint8_t section, std::uint32_t offset, std::size_t count) const;
    [[nodiscard]] std::uint16_t wordAt(std::uint8_t section, std::uint32_t offset) const;

    /// From the block table: the function on a block 0..704, and its type (1 analog, 2 discrete).
    [[nodiscard]] std::uint8_t functionOf(std::uint16_t block) const;
    [[nodiscard]] std::uint8_t kindOf(std::uint16_t block) const;

    /// The whole memory as bytes, with a check sum, and back. Bytes that are no such memory give nothing.
    [[nodiscard]] std::vector<std::uint8_t> serialised() const;
    [[nodiscard]] static std::optional<SimMemory> parsed(std::span<const std::uint8_t> bytes);

    friend bool operator==(const SimMemory&, const SimMemory&) = default;

 private:
    void store(std::uint8_t section, std::uint32_t offset, std::span<const std::uint8_t> bytes);

    /// Each only as long as its last byte that isn't zero asks for, so that equal memories are equal arrays.
    std::array<std::vector<std::uint8_t>, kSectionCount> sections_;
};

}  // namespace qrv
