// An open new configuration with the block program's forms around it, driven as a user drives the windows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "TestCatalogue.h"
#include "blocks/BlockNumbers.h"
#include "blocks/BlockPanel.h"
#include "blocks/frmGeneral.h"
#include "store/LifeCycle.h"
#include "twins/TestBench.h"

namespace qrv {

struct BlockRig : TestBench {
    enum class Catalogue { Small, Shipped };

    explicit BlockRig(Catalogue catalogue = Catalogue::Small, const std::string& without = "") {
        if (catalogue == Catalogue::Small) makeTestCatalogue(made("catalogue"), without);
        bench.db.open_database(catalogue == Catalogue::Small ? path("catalogue") : bench.places.catalogue);
        bench.windows.loadBoardTexts = [this] { general.loadBoardTexts(); };
        bench.windows.storeBoardTexts = [this] { general.storeBoardTexts(); };
        bench.windows.showMain = [this] { ++mainShown; };
        panel.loadFunctionList();
        panel.firstActivate();
        bench.db.create_new_database(file());
    }
    [[nodiscard]] std::string file() const { return path("plant.qrv"); }
    [[nodiscard]] db1& db() { return bench.db; }

    void open() {
        OpenConfiguration(bench, file());
        panel.fill_grid1();
        panel.fillIg();
    }
    void save() {
        CloseConfiguration(bench, Answer::Yes);
        open();
    }
    void reopenReadOnly() {
        CloseConfiguration(bench, Answer::Yes);
        std::filesystem::permissions(file(), std::filesystem::perms::owner_read);
        open();
        ASSERT_TRUE(bench.IsReadOnlyFile);
    }

    // --- the user ---
    void clickBlock(int block) {
        const bool isLogic = block < kFirstIoBlock;
        const BlockCell cell = isLogic ? logicCellOf(block) : ioCellOf(block);
        (isLogic ? panel.Grid1 : panel.Ig).click(cell.row, cell.col);
    }
    void chooseFunction(const std::string& name) {
        const auto& names = panel.List1.items;
        const auto place = std::find(names.begin(), names.end(), name);
        ASSERT_NE(place, names.end()) << name << " isn't in the list";
        panel.List1.listIndex = static_cast<int>(place - names.begin());
        panel.List1_Click();
    }
    /// Places a function on a NOP block, and comes back to the data view with the block shown.
    void place(int block, const std::string& name) {
        panel.mnuEditCfg();
        chooseFunction(name);
        clickBlock(block);
        panel.mnuEditBlk();
    }
    /// Plays the user of the next output picker: chooses a row and presses Enter.
    void pickRow(int row, std::vector<std::string> expectedRows = {}) {
        host.onModal("frmAaboPick", [row, expectedRows](Form& form) {
            auto& picker = dynamic_cast<frmAaboPick&>(form);
            if (!expectedRows.empty()) {
                EXPECT_EQ(picker.List1.items, expectedRows);
            }
            picker.List1.listIndex = row;
            picker.List1_Click();
            EXPECT_TRUE(picker.keyDown(Key::Enter));
        });
    }
    void setBoard(int slot, const std::string& text) { EXPECT_TRUE(general.fg.edit(slot, 1, text)); }

    // --- what stands in the file ---
    [[nodiscard]] std::optional<std::int32_t> constant(int block, int slot) {
        db().ConstantSeek(block, slot);
        if (db().ConstantNoMatch()) return std::nullopt;
        return db().ConstantValue();
    }
    [[nodiscard]] std::vector<std::int32_t> constants(int block) {
        std::vector<std::int32_t> values;
        while (const auto value = constant(block, static_cast<int>(values.size()))) values.push_back(*value);
        return values;
    }
    [[nodiscard]] std::optional<std::string> string(int block, int slot) {
        db().ParmstrSeek(block, slot);
        if (db().ParmstrNoMatch()) return std::nullopt;
        return db().ParmstrStr();
    }
    [[nodiscard]] int functionInFile(int block) {
        db().BlockSeek(block);
        return db().BlockFn();
    }
    [[nodiscard]] int slotCountInFile(int block) {
        db().BlockSeek(block);
        return db().BlockConstant();
    }
    void setConstant(int block, int slot, std::int32_t value) {
        db().ConstantSeek(block, slot);
        db().ConstantEdit();
        db().ConstantValue(value);
        db().ConstantUpdate();
    }
    void setComments(int block, const std::string& first, const std::string& second) {
        db().BlockSeek(block);
        db().BlockEdit();
        db().BlockComment(first);
        db().BlockVisioComment(second);
        db().BlockUpdate();
    }

    BlockPanel panel{bench};
    frmGeneral general{bench};
    int mainShown = 0;
};

/// The same with the file open.
struct OpenBlockRig : BlockRig {
    explicit OpenBlockRig(Catalogue catalogue = Catalogue::Small, const std::string& without = "")
        : BlockRig(catalogue, without) {
        open();
    }
};

/// The texts of a grid's row, from a column on.
[[nodiscard]] inline std::vector<std::string> rowOf(const Grid& grid, int row, int firstCol = 0) {
    std::vector<std::string> texts;
    for (int col = firstCol; col < grid.cols(); ++col) texts.push_back(grid.text(row, col));
    return texts;
}

/// The number of the run-time error that the action raises; 0 for none.
template <typename Action>
[[nodiscard]] int errorOf(Action&& action) {
    try {
        action();
    } catch (const RunTimeError& error) {
        return error.code();
    }
    return 0;
}

/// A Yes and No question with the usual title.
[[nodiscard]] inline Notice question(const std::string& text) { return {.text = text, .buttons = Buttons::YesNo}; }

}  // namespace qrv
