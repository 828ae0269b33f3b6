// The map of the block program: which function stands on which block, in the grids of the logic and of the I/O blocks,
// with the alarms' colours, and the step from a block to its neighbour.
#pragma once

#include "platform/Grid.h"

namespace qrv {

struct ListBox;
struct Workbench;

// Of the blocks in the alarm list.
inline constexpr Colour kAlarmColour{0xFF8080};
inline constexpr Colour kEventColour{0xC0C0FF};
inline constexpr Colour kPageColour{0xFFC080};

class BlockMap {
 public:
    BlockMap(Workbench& bench, Grid& logicBlocks, Grid& ioBlocks, ListBox& slotList)
        : bench_(bench), grid1_(logicBlocks), ig_(ioBlocks), list2_(slotList) {}

    /// Headings, widths and heights of both grids.
    void layOut();
    /// Writes the cells of the logic blocks: the function's name, a single blank for a NOP. Stands on block 599 then.
    void fill_grid1();
    /// Writes the cells of the I/O blocks and the list of the slots' descriptions, from the open file's slots; with no
    /// file open, as for seven empty ones. A cell without a board's block holds ".".
    void fillIg();
    /// Colours the cells of the blocks that have an alarm, an event or a page.
    void paintAlarmColours();

    /// Selects the cell of the next (+1) or previous (-1) block, around the ends of the numbers.
    void stepLogic(int step);
    /// The same, past the cells without a board's block.
    void stepIo(int step);

 private:
    Workbench& bench_;
    Grid& grid1_;
    Grid& ig_;
    ListBox& list2_;
};

}  // namespace qrv
