// The controller's block table: which function stands on each block, and where the block's data lie. The tool computes
// the places itself, by adding up what the catalogue says each function needs.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "link/BlockLayout.h"

namespace qrv {

class db1;

/// Where a block's data begin in the controller's three memory areas: the needs of all earlier blocks, added up.
struct BlockPlaces {
    std::int32_t temporary = 0;
    std::int32_t constant = 0;
    std::int32_t retentive = 0;
};

/// The places of the next block, by the needs of the catalogue's current function.
[[nodiscard]] BlockPlaces placesBehind(db1& catalogue, const BlockPlaces& places);

/// One record as it was read back. Its first and last byte mean nothing: they are written as 0, and a controller may
/// give back anything in their place.
struct BlockRecord {
    std::uint8_t function = 0;
    BlockPlaces places;
    std::uint8_t type = 0;
};

[[nodiscard]] BlockRecord blockRecordOf(std::span<const std::uint8_t, kBlockRecordLength> bytes);

/// A field of a record that isn't what a download of the same functions writes.
struct BlockTableFault {
    std::int16_t block = 0;
    std::string_view field;
    std::int32_t wanted = 0;
    std::int32_t found = 0;
};

/// @param table  a record for each block, in order; empty where none were read
/// Each place is measured by the block before, so that one wrong record doesn't make all behind it wrong, too. Raises
/// nothing for a function that the catalogue lacks: what it needs is not known, and so not the next block's places.
/// Leaves the catalogue's functions in number order ("FN").
[[nodiscard]] std::vector<BlockTableFault> faultsOf(std::span<const BlockRecord> table, db1& catalogue);

}  // namespace qrv
