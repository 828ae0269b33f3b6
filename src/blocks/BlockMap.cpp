#include "blocks/BlockMap.h"

#include <array>
#include <optional>
#include <string>

#include "blocks/BlockNumbers.h"
#include "blocks/BlockRef.h"
#include "blocks/Boards.h"
#include "blocks/PageFlag.h"
#include "platform/Controls.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr const char* kNopCell = " ";
constexpr const char* kNoBoardBlock = ".";

using SlotTexts = std::array<std::string, kSlotCount>;
using BlockColours = std::array<std::optional<Colour>, kBlockCount>;

SlotTexts slotTexts(Workbench& bench) {
    SlotTexts texts;
    if (!bench.FileIsOpen) return texts;
    db1& db = bench.db;
    db.SlotMoveFirst();
    for (std::string& text : texts) {
        text = db.SlotDescription();
        db.SlotMoveNext();
    }
    return texts;
}

std::string_view tagOf(int slot, int offset, const std::string& description) {
    if (slot == 0 && offset < static_cast<int>(kCpuBlocks.size()))
        return kCpuBlocks.at(static_cast<std::size_t>(offset)).tag;
    const Board* board = boardIn(description);
    return board != nullptr && offset < board->blockCount ? board->tag : kNoBoardBlock;
}

Colour colourOfAlarm(db1& db) {
    if (isPage(db.AlarmDescription())) return kPageColour;
    return db.AlarmIsAlarm() ? kAlarmColour : kEventColour;
}

BlockColours alarmColours(Workbench& bench) {
    BlockColours colours{};
    if (!bench.FileIsOpen) return colours;
    db1& db = bench.db;
    for (db.AlarmMoveFirst(); !db.AlarmEOF(); db.AlarmMoveNext()) {
        const BlockRef ref = BlockRef::ofWord(db.AlarmBlockNumber());
        if (ref.isBlock()) colours.at(static_cast<std::size_t>(ref.block)) = colourOfAlarm(db);
    }
    return colours;
}

void numberHeadings(Grid& grid, int firstRowNumber) {
    for (int col = 1; col < grid.cols(); ++col) grid.setText(0, col, std::to_string(col - 1));
    for (int row = 1; row < grid.rows(); ++row) grid.setText(row, 0, std::to_string(row - 1 + firstRowNumber));
}

void setSizes(Grid& grid, int firstWidth, int width, int height) {
    for (int col = 0; col < grid.cols(); ++col) grid.setColWidth(col, col == 0 ? firstWidth : width);
    for (int row = 0; row < grid.rows(); ++row) grid.setRowHeight(row, height);
}

}  // namespace

void BlockMap::layOut() {
    numberHeadings(grid1_, 0);
    setSizes(grid1_, 300, 875, 200);
    numberHeadings(ig_, 1);
    setSizes(ig_, 300, 400, 220);
}

void BlockMap::fill_grid1() {
    db1& db = bench_.db;
    db.FuncSetIndex("FN");
    for (int block = 0; block < kFirstIoBlock; ++block) {
        const std::int16_t function = bench_.FnOfBlock.at(static_cast<std::size_t>(block));
        db.FuncSeekI(function);
        const BlockCell cell = logicCellOf(block);
        grid1_.setText(cell.row, cell.col, function == kNop ? kNopCell : db.FuncName());
    }
    const BlockCell last = logicCellOf(kFirstIoBlock - 1);
    grid1_.select(last.row, last.col);
}

void BlockMap::fillIg() {
    const SlotTexts texts = slotTexts(bench_);
    for (int block = kFirstIoBlock; block < kBlockCount; ++block) {
        const BlockCell cell = ioCellOf(block);
        const int slot = cell.col - 1;
        ig_.setText(cell.row, cell.col,
                    std::string(tagOf(slot, cell.row - 1, texts.at(static_cast<std::size_t>(slot)))));
    }
    list2_.items.assign(texts.begin(), texts.end());
}

void BlockMap::paintAlarmColours() {
    const BlockColours colours = alarmColours(bench_);
    for (int block = 0; block < kBlockCount; ++block) {
        const bool isLogic = block < kFirstIoBlock;
        Grid& grid = isLogic ? grid1_ : ig_;
        const BlockCell cell = isLogic ? logicCellOf(block) : ioCellOf(block);
        const std::optional<Colour>& colour = colours.at(static_cast<std::size_t>(block));
        grid.setBack(cell.row, cell.col, colour);
        grid.setBold(cell.row, cell.col, colour.has_value());
    }
}

void BlockMap::stepLogic(int step) {
    const int block = logicBlockAt({.row = grid1_.row(), .col = grid1_.col()});
    const BlockCell next = logicCellOf((block + step + kFirstIoBlock) % kFirstIoBlock);
    grid1_.select(next.row, next.col);
}

void BlockMap::stepIo(int step) {
    constexpr int kIoBlocks = kBlockCount - kFirstIoBlock;
    int place = ioBlockAt({.row = ig_.row(), .col = ig_.col()}) - kFirstIoBlock;
    // The CPU's cells end the search; the count only bounds it.
    for (int tried = 0; tried < kIoBlocks; ++tried) {
        place = (place + step + kIoBlocks) % kIoBlocks;
        const BlockCell cell = ioCellOf(kFirstIoBlock + place);
        ig_.select(cell.row, cell.col);
        if (ig_.text(cell.row, cell.col) != kNoBoardBlock) return;
    }
}

}  // namespace qrv
