#include "blocks/frmGeneral.h"

#include "blocks/BlockNumbers.h"
#include "blocks/BlockProgram.h"
#include "blocks/Boards.h"
#include "blocks/CommentText.h"
#include "platform/CodePage.h"
#include "platform/MessageBox.h"
#include "platform/RunTimeError.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

// Columns of fg.
constexpr int kSlot = 0;
constexpr int kBoard = 1;

constexpr int kTextLength = 80;  // characters: the columns' size

bool isBoard(const std::string& text) { return !text.empty() && text != kNoBoard; }

std::string& boardTextOf(Workbench& bench, int slot) { return bench.BoardText.at(static_cast<std::size_t>(slot)); }

}  // namespace

frmGeneral::frmGeneral(Workbench& bench)
    : Form("frmGeneral", "Configuration Info"),
      txtTitle{.maxLength = kTextLength},
      txtCfg{.maxLength = kTextLength},
      fg("fg", kSlotCount, 2, 0, 1),
      description(bench, *this),
      bench_(bench) {
    for (int slot = 0; slot < kSlotCount; ++slot) fg.setText(slot, kSlot, std::to_string(slot));
    fg.setText(0, kBoard, std::string(kCpuBoardText));
    fg.setColWidth(kSlot, 300);
    fg.setColWidth(kBoard, 3500);
    fg.setColKind(kBoard, ColumnKind::DropDown);
    fg.setComboList(boardChoices());
    fg.onEnterCell = [this](int row, int col) { fg.setEditable(row > 0 && col == kBoard); };
    fg.onBeforeEdit = [this](int row, int) { return beforeBoardEdit(row); };
    fg.onValidateEdit = [this](int row, int) { return validateBoard(row); };
}

void frmGeneral::loadBoardTexts() {
    showBoardTexts();
    // A text that can't be read is shown as none, not as that of the file before, and keeps nothing from being loaded.
    for (TextBox* box : {&txtTitle, &txtCfg, &Text1}) box->text.clear();
    ignoringErrors([this] { showTexts(); });
    // A read-only file refuses the CPU's rows, and opens all the same.
    ignoringErrors([this] { ProcessCPU(); });
}

void frmGeneral::showBoardTexts() {
    db1& db = bench_.db;
    db.SlotMoveFirst();
    for (int slot = 0; slot < kSlotCount; ++slot) {
        std::string stored(slot == 0 ? kCpuBoardText : kNoBoard);
        // Nor is a board: what can't be read is none.
        if (slot > 0) ignoringErrors([&] { stored = db.SlotDescription(); });
        boardTextOf(bench_, slot) = isBoard(stored) ? stored : "";
        fg.setText(slot, kBoard, stored.empty() ? std::string(kNoBoard) : stored);
        db.SlotMoveNext();
    }
}

void frmGeneral::storeBoardTexts() {
    db1& db = bench_.db;
    db.SlotMoveFirst();
    for (int slot = 0; slot < kSlotCount; ++slot) {
        db.SlotEdit();
        db.SlotDescription(fg.text(slot, kBoard));
        db.SlotUpdate();
        db.SlotMoveNext();
    }
}

void frmGeneral::ProcessCPU() {
    db1& db = bench_.db;
    std::int16_t block = firstBlockOf(0);
    for (const CpuBlock& cpuBlock : kCpuBlocks) {
        db.FuncSetIndex("Fname");
        db.FuncSeekS(std::string(cpuBlock.function));
        if (db.FuncNoMatch()) {
            bench_.platform.messageBox.say(std::string(cpuBlock.missing));
        } else {
            buildBlock(bench_, block, StringRows::Leave);
        }
        ++block;
    }
}

void frmGeneral::activate() { showTexts(); }

void frmGeneral::showTexts() {
    db1& db = bench_.db;
    txtTitle.text = db.CommentTitle();
    txtCfg.text = db.CommentConfig();
    Text1.text = withBoxBreaks(db.CommentComment());
    txtTitle.locked = bench_.IsReadOnlyFile;
    txtCfg.locked = bench_.IsReadOnlyFile;
}

void frmGeneral::txtTitle_Change() {
    db1& db = bench_.db;
    if (bench_.IsReadOnlyFile || txtTitle.text == db.CommentTitle()) return;
    db.CommentEdit();
    db.CommentTitle(txtTitle.text);
    db.CommentUpdate();
}

void frmGeneral::txtCfg_Change() {
    db1& db = bench_.db;
    if (bench_.IsReadOnlyFile || txtCfg.text == db.CommentConfig()) return;
    db.CommentEdit();
    db.CommentConfig(txtCfg.text);
    db.CommentUpdate();
}

void frmGeneral::Text1_DblClick() {
    bench_.platform.formHost.hide(*this);
    description.caption = bench_.TitleText;
    // Whoever waits for this form goes on waiting until it is left itself.
    bench_.platform.formHost.showModal(description);
}

void frmGeneral::mnuexit() {
    try {
        storeBoardTexts();
        ProcessCPU();
    } catch (const RunTimeError& error) {
        // A read-only file refuses the texts; the user is told, and goes on.
        bench_.platform.messageBox.say(error.description());
    }
    bench_.platform.formHost.hide(*this);
    bench_.windows.showMain();
}

bool frmGeneral::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode) return true;
    mnuexit();
    return false;
}

// --- the boards ---

/// The list opens on an empty cell; the old text comes back with a refused or given up edit.
bool frmGeneral::beforeBoardEdit(int row) {
    if (fg.text(row, kBoard) != kNoBoard) fg.setText(row, kBoard, "");
    return true;
}

bool frmGeneral::validateBoard(int slot) {
    const std::string newText = fg.editText();
    std::string& boardText = boardTextOf(bench_, slot);
    const bool hadBoard = !boardText.empty();
    if (hadBoard) {
        const Notice question{.text = toUtf8("Replace " + boardText + " with " + newText), .buttons = Buttons::YesNo};
        if (bench_.platform.messageBox.ask(question) != Answer::Yes) {
            fg.cancelEdit();
            return false;
        }
    }
    if (!bench_.FileIsOpen) return true;
    if (hadBoard) {
        const std::int16_t first = firstBlockOf(slot);
        for (std::int16_t k = 0; k < kBlocksPerSlot; ++k) clearBlock(bench_, static_cast<std::int16_t>(first + k));
    }
    boardText = isBoard(newText) ? newText : "";
    if (isBoard(newText)) buildBoard(slot, newText);
    return true;
}

void frmGeneral::buildBoard(int slot, const std::string& text) {
    db1& db = bench_.db;
    const Board* board = boardIn(text);
    db.FuncSetIndex("Fname");
    db.FuncSeekS(board == nullptr ? std::string{} : std::string(board->function));
    if (db.FuncNoMatch()) {
        bench_.platform.messageBox.say("ERROR RECORD NOT FOUND");
        return;
    }
    const std::int16_t first = firstBlockOf(slot);
    for (int k = 0; board != nullptr && k < board->blockCount; ++k) {
        buildBlock(bench_, static_cast<std::int16_t>(first + k), StringRows::Leave);
    }
}

}  // namespace qrv
