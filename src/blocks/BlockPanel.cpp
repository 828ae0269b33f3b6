#include "blocks/BlockPanel.h"

#include <algorithm>
#include <array>

#include "blocks/BlockNumbers.h"
#include "blocks/BlockProgram.h"
#include "blocks/CommentText.h"
#include "blocks/DataRow.h"
#include "platform/CodePage.h"
#include "platform/MessageBox.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr int kInputRows = 75;
constexpr int kParameterRows = 256;
constexpr const char* kNoBoardCell = ".";  // of Ig
constexpr Colour kFocused{0x808080};

/// The functions that belong to boards, and are not placed by hand.
constexpr std::array<std::string_view, 6> kBoardFunctions{"AIN", "DIN", "AOUT", "DOUT", "ROUT", "TOUT"};

constexpr const char* kBlockMapText =
    "    I/O BLOCK MAP\n"
    "Slot 0:  CPU   600 - 614\n"
    "Slot 1:            615 - 629\n"
    "Slot 2:            630 - 644\n"
    "Slot 3:            645 - 659\n"
    "Slot 4:            660 - 674\n"
    "Slot 5:            675 - 689\n"
    "Slot 6:            690 - 704";

bool isInside(const Grid& grid) { return grid.row() >= 1 && grid.col() >= 1; }

/// Empties the grid and puts it on its first row.
void clearRows(Grid& grid) {
    grid.clearFrom(1, 0);
    for (int row = 0; row < grid.rows(); ++row) grid.setRowHeight(row, kDataRowHeight);
    grid.select(1, 1);
    grid.setTopRow(1);
}

/// Refills a grid, which stays on its row.
template <typename Refill>
void keepingPlace(Grid& grid, const Refill& refill) {
    const int row = grid.row();
    const int col = grid.col();
    const int topRow = grid.topRow();
    refill();
    grid.select(row, col);
    grid.setTopRow(topRow);
}

/// Only cells with a described row behind them take input.
void setEditability(Grid& grid, int firstInputCol, int lastInputCol, int descriptionCol) {
    const bool isInput = grid.col() >= firstInputCol && grid.col() <= lastInputCol;
    grid.setEditable(isInput && grid.row() >= 1 && !grid.text(grid.row(), descriptionCol).empty());
}

void setInputsEditable(Grid& fg2) { setEditability(fg2, 0, 2, 3); }
void setParametersEditable(Grid& fg3) { setEditability(fg3, 1, 1, 2); }

}  // namespace

BlockPanel::BlockPanel(Workbench& bench)
    : Grid1("Grid1", kLogicRows + 1, kLogicBlocksPerRow + 1),
      Ig("Ig", kBlocksPerSlot + 1, kSlotCount + 1),
      fg2("fg2", kInputRows, 6, 1, 0),
      fg3("fg3", kParameterRows, 3),
      List1{.visible = false},
      List2{.visible = false},
      comment(bench, txtCmt),
      picker(bench),
      bench_(bench),
      map_(bench, Grid1, Ig, List2),
      inputs_(bench, fg2, picker),
      parameters_(bench, fg3, fg2, picker) {
    Label6.caption = kBlockMapText;
    map_.layOut();
    inputs_.layOut();
    parameters_.layOut();
    clearRows(fg2);
    clearRows(fg3);
    wireMaps();
    wireInputs();
    wireParameters();
}

// --- the grids' events ---

void BlockPanel::wireMaps() {
    for (Grid* grid : {&Grid1, &Ig}) grid->onEnterCell = [this](int, int) { isCellChosen_ = true; };
    Grid1.onClick = [this] { Grid1_Click(); };
    Grid1.onKeyDown = [this](Key key) { return mapKey(Grid1, key); };
    Ig.onClick = [this] { New_IG_Click(); };
    Ig.onKeyDown = [this](Key key) { return mapKey(Ig, key); };
}

void BlockPanel::wireInputs() {
    fg2.onEnterCell = [this](int, int) { setInputsEditable(fg2); };
    fg2.onKeyDown = [this](Key key) { return dataKey(key); };
    fg2.onGotFocus = [this] { takeFocus(fg2, fg3); };
    fg2.onLostFocus = [this] { fg2.setSelectionColour({}); };
    fg2.onValidateEdit = [this](int row, int col) { return inputs_.validateEdit(row, col); };
}

void BlockPanel::wireParameters() {
    fg3.onEnterCell = [this](int, int) { setParametersEditable(fg3); };
    fg3.onKeyDown = [this](Key key) {
        if (key != Key::Enter) return dataKey(key);
        return readAuxOutput();
    };
    fg3.onDoubleClick = [this] { return readAuxOutput(); };
    fg3.onGotFocus = [this] { takeFocus(fg3, fg2); };
    fg3.onLostFocus = [this] { fg3.setSelectionColour({}); };
    fg3.onValidateEdit = [this](int row, int col) {
        std::string text = fg3.editText();
        const bool accepted = parameters_.CheckParamCell(fg3, text);
        if (accepted) fg3.setEditText(fg3.text(row, col));
        focus = fg3.name();
        return accepted;
    };
}

bool BlockPanel::readAuxOutput() {
    if (!isShown_ || !parameters_.readsAuxOutput()) return false;
    parameters_.ProcessAuxOutputs();
    return true;
}

void BlockPanel::takeFocus(Grid& focused, Grid& other) {
    other.select(1, other.col());
    setInputsEditable(fg2);
    setParametersEditable(fg3);
    focused.setSelectionColour(kFocused);
}

bool BlockPanel::mapKey(Grid& grid, Key key) {
    const bool isLogic = &grid == &Grid1;
    if (key == Key::F5 || key == Key::F6) {
        const int step = key == Key::F5 ? -1 : 1;
        isLogic ? map_.stepLogic(step) : map_.stepIo(step);
    } else if (key != Key::Enter) {
        return false;
    }
    grid.enterCell(grid.row(), grid.col());
    isLogic ? Grid1_Click() : New_IG_Click();
    return true;
}

bool BlockPanel::dataKey(Key key) {
    if (key != Key::F5 && key != Key::F6) return false;
    return mapKey(bench_.SeekBlock < kFirstIoBlock ? Grid1 : Ig, key);
}

// --- start-up ---

void BlockPanel::loadFunctionList() {
    db1& db = bench_.db;
    List1.items.clear();
    for (; !db.FuncEOF(); db.FuncMoveNext()) {
        const std::string name = trimmed(db.FuncName());
        if (std::ranges::find(kBoardFunctions, name) == kBoardFunctions.end()) List1.items.push_back(name);
    }
}

void BlockPanel::firstActivate() {
    txtCmt.text.clear();
    List1.visible = false;
    Label1.caption = "INPUTS";
    Label2.caption = "PARAMETERS";
    fg2.setEnabled(true);
    fg3.setEnabled(true);
    CurFuncName = "NOP";
}

void BlockPanel::refillGrid1() {
    const int row = Grid1.row();
    const int col = Grid1.col();
    map_.fill_grid1();
    Grid1.select(row, col);
}

// --- a click on a block ---

void BlockPanel::Grid1_Click() {
    if (!bench_.FileIsOpen || !isInside(Grid1)) return;
    const auto block = static_cast<std::int16_t>(logicBlockAt({.row = Grid1.row(), .col = Grid1.col()}));
    const std::string cell = Grid1.text(Grid1.row(), Grid1.col());
    db1& db = bench_.db;
    bench_.SeekBlock = block;
    if (!isDataView()) {
        const std::optional<std::string> placed = placeFunction(bench_, block, cell, CurFuncName);
        if (placed) Grid1.setText(Grid1.row(), Grid1.col(), *placed);
        return;
    }
    const bool isUsed = cell != " ";
    db.FuncSetIndex("Fname");
    db.BlockSeek(block);
    if (isUsed) db.FuncSeekS(cell);
    showComment(isUsed);
    clearData();
    if (!isUsed) return;
    if (db.FuncNoMatch()) {
        bench_.platform.messageBox.say("Database Error, Record Not Found");
        return;
    }
    showCurrent();
}

void BlockPanel::New_IG_Click() {
    if (!bench_.FileIsOpen || !isInside(Ig) || !isDataView()) return;
    const std::string cell = Ig.text(Ig.row(), Ig.col());
    if (cell == kNoBoardCell) return;
    db1& db = bench_.db;
    bench_.SeekBlock = static_cast<std::int16_t>(ioBlockAt({.row = Ig.row(), .col = Ig.col()}));
    db.BlockSeek(bench_.SeekBlock);
    const std::int16_t function = db.BlockFn();
    const bool isUsed = function != kNop;
    showComment(isUsed);
    clearData();
    if (!isUsed) {
        bench_.platform.messageBox.say("Database Shows A NOP, Not " + toUtf8(cell) + ".");
        return;
    }
    // The cell holds the board's tag, not the function's name.
    db.FuncSetIndex("FN");
    db.FuncSeekI(function);
    if (db.FuncNoMatch()) {
        bench_.platform.messageBox.say("Database Error, Record Not Found");
        return;
    }
    showCurrent();
}

/// The block is the current one of `Block List`. The second comment wins if it isn't empty.
void BlockPanel::showComment(bool isUsed) {
    const std::string second = bench_.db.BlockVisioComment();
    txtCmt.text = withBoxBreaks(trimmed(second).empty() ? bench_.db.BlockComment() : second);
    txtCmt.visible = isUsed;
    Label4.visible = true;
    Label4.caption = isUsed ? "COMMENTS:" : "";
}

void BlockPanel::clearData() {
    isShown_ = false;
    clearRows(fg2);
    clearRows(fg3);
    setInputsEditable(fg2);
    setParametersEditable(fg3);
}

/// Shows the block of `SeekBlock`, whose function the catalogue stands on.
void BlockPanel::showCurrent() {
    db1& db = bench_.db;
    bench_.CurFn = db.FuncFN();
    bench_.CurBlock = bench_.SeekBlock;
    bench_.CurInputs = db.FuncInputs();
    Label5.caption = "BLOCK " + std::to_string(bench_.CurBlock) + " - " + toUtf8(trimmed(db.FuncName()));
    inputs_.show();
    parameters_.show();
    isShown_ = true;
    setInputsEditable(fg2);
    setParametersEditable(fg3);
}

void BlockPanel::showNone() {
    clearData();
    txtCmt.visible = false;
    Label4.caption.clear();
    Label5.caption.clear();
}

void BlockPanel::showAgain() {
    if (!isShown_ || !isDataView() || !bench_.FileIsOpen) return;
    db1& db = bench_.db;
    const std::int16_t function = bench_.CurFn;
    const bool isThere = bench_.FnOfBlock.at(static_cast<std::size_t>(bench_.CurBlock)) == function;
    db.FuncSetIndex("FN");
    if (isThere) db.FuncSeekI(function);
    if (!isThere || db.FuncNoMatch()) return showNone();
    bench_.SeekBlock = bench_.CurBlock;
    db.BlockSeek(bench_.SeekBlock);
    showComment(true);
    const auto refill = [this] {
        clearData();
        showCurrent();
    };
    keepingPlace(fg2, [&] { keepingPlace(fg3, refill); });
    setInputsEditable(fg2);
    setParametersEditable(fg3);
}

void BlockPanel::List1_Click() {
    if (List1.listIndex >= 0) CurFuncName = List1.text();
    focus = "List1";
}

void BlockPanel::txtCmt_DblClick() {
    if (bench_.FileIsOpen) bench_.platform.formHost.showModal(comment);
}

// --- the two views ---

void BlockPanel::showDataView() {
    List1.visible = false;
    for (Label* label : {&Label1, &Label2, &Label5}) label->visible = true;
    for (Grid* grid : {&fg2, &fg3}) {
        grid->select(1, grid->col());
        grid->setVisible(true);
        focus = grid->name();
    }
}

void BlockPanel::mnuEditBlk() {
    showDataView();
    Grid1_Click();
}

void BlockPanel::mnuEditCfg() {
    txtCmt.visible = false;
    for (Label* label : {&Label1, &Label2, &Label4, &Label5}) label->visible = false;
    for (Grid* grid : {&fg2, &fg3}) grid->setVisible(false);
    List1.visible = true;
}

bool BlockPanel::hasBoard(int block) const {
    if (block < kFirstIoBlock) return true;
    const BlockCell cell = ioCellOf(block);
    return Ig.text(cell.row, cell.col) != kNoBoardCell;
}

void BlockPanel::goToBlock(int block) {
    const bool isLogic = block < kFirstIoBlock;
    Grid& grid = isLogic ? Grid1 : Ig;
    const BlockCell cell = isLogic ? logicCellOf(block) : ioCellOf(block);
    grid.enterCell(cell.row, cell.col);
    focus = grid.name();
    if (!isDataView()) return;
    isLogic ? Grid1_Click() : New_IG_Click();
}

}  // namespace qrv
