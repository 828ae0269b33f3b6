// Where the blocks stand in the two maps of the main window: the logic blocks ten to a row, the I/O blocks a slot to a
// column. Row and column 0 of both hold the headings.
#pragma once

#include "store/Workbench.h"

namespace qrv {

struct BlockCell {
    int row = 0;
    int col = 0;
    friend bool operator==(const BlockCell&, const BlockCell&) = default;
};

inline constexpr int kLogicBlocksPerRow = 10;
inline constexpr int kLogicRows = kFirstIoBlock / kLogicBlocksPerRow;

[[nodiscard]] constexpr int logicBlockAt(BlockCell cell) {
    return (cell.row - 1) * kLogicBlocksPerRow + (cell.col - 1);
}
[[nodiscard]] constexpr BlockCell logicCellOf(int block) {
    return {.row = block / kLogicBlocksPerRow + 1, .col = block % kLogicBlocksPerRow + 1};
}
[[nodiscard]] constexpr int ioBlockAt(BlockCell cell) {
    return kFirstIoBlock + (cell.col - 1) * kBlocksPerSlot + (cell.row - 1);
}
[[nodiscard]] constexpr BlockCell ioCellOf(int block) {
    return {.row = (block - kFirstIoBlock) % kBlocksPerSlot + 1, .col = (block - kFirstIoBlock) / kBlocksPerSlot + 1};
}
/// The first of a slot's 15 blocks. @param slot  0..6
[[nodiscard]] constexpr std::int16_t firstBlockOf(int slot) {
    return static_cast<std::int16_t>(kFirstIoBlock + slot * kBlocksPerSlot);
}

static_assert(logicCellOf(599) == BlockCell{.row = 60, .col = 10});
static_assert(ioCellOf(kLastBlock) == BlockCell{.row = kBlocksPerSlot, .col = kSlotCount});

}  // namespace qrv
