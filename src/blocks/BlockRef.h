// A block reference word: how inputs, alarms, pens, menu and screen items and the poll list name one output of a block.
// Packed and unpacked here and nowhere else; the text of a reference is made here for every grid and report.
#pragma once

#include <cstdint>
#include <string>

namespace qrv {

struct Workbench;

struct BlockRef {
    /// The block's main output, or one of its auxiliary outputs.
    enum class Kind { Main, Analog, Discrete };

    std::int16_t block = 0;    ///< 0..1023 as the word may hold it; past 704 there is no such block
    std::int16_t ordinal = 0;  ///< auxiliary output from 1; 0 for the main output
    Kind kind = Kind::Main;

    friend bool operator==(const BlockRef&, const BlockRef&) = default;

    /// Ordinal 0 is the main output.
    [[nodiscard]] static BlockRef analog(std::int16_t block, std::int16_t ordinal);
    [[nodiscard]] static BlockRef discrete(std::int16_t block, std::int16_t ordinal);
    /// Any 16-bit word, or the same sign-extended, as a constant slot holds it.
    [[nodiscard]] static BlockRef ofWord(std::int32_t word);

    [[nodiscard]] std::int16_t word() const;
    /// There is a block of this number.
    [[nodiscard]] bool isBlock() const;
};

/// The short name of the output that a reference word names: "" for a main output and where there is no such block,
/// "BUNK" for an output that the block's function doesn't have. Moves the cursor of the auxiliary outputs.
[[nodiscard]] std::string BlockOutputName(Workbench& bench, std::int32_t word);

}  // namespace qrv
