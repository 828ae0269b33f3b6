// The block program with the catalogue that the build makes: every function can be placed, shown, edited at its limits,
// kept in a file and read back.
#include <gtest/gtest.h>

#include "BlockRig.h"
#include "blocks/MemoryUse.h"

namespace qrv {
namespace {

using Texts = std::vector<std::string>;

struct ShippedRig : OpenBlockRig {
    ShippedRig() : OpenBlockRig(Catalogue::Shipped) {}

    /// Places every function of the list, from block 10 on, and gives how many there are.
    int placeAll() {
        panel.mnuEditCfg();
        int block = 10;
        for (const std::string& name : Texts(panel.List1.items)) {
            chooseFunction(name);
            clickBlock(block++);
        }
        panel.mnuEditBlk();
        return block - 10;
    }
    /// What the two data grids show of a block.
    [[nodiscard]] std::vector<Texts> shown(int block) {
        clickBlock(block);
        std::vector<Texts> rows{{panel.Label5.caption}};
        for (const Grid* grid : {&panel.fg2, &panel.fg3}) {
            for (int row = 1; row < grid->rows() && !grid->text(row, 0).empty(); ++row)
                rows.push_back(rowOf(*grid, row));
        }
        return rows;
    }
    [[nodiscard]] bool isAuxReader() const {
        const std::string name = panel.Label5.caption;
        return name.ends_with("AABO") || name.ends_with("DABO");
    }
};

TEST(ShippedCatalogue, ANewFilesBlocksHaveNoSlots) {
    ShippedRig rig;
    EXPECT_EQ(rowOf(rig.panel.Grid1, 1, 1), (Texts{"ZERO", "FULL", "OFF", "ON", " ", " ", " ", " ", " ", " "}));
    for (int block = 0; block < 4; ++block) EXPECT_TRUE(rig.constants(block).empty()) << block;
    EXPECT_EQ(rig.functionInFile(600), 2);
    EXPECT_EQ(rig.functionInFile(601), 2);
    EXPECT_EQ(rig.functionInFile(602), 125);
}

TEST(ShippedCatalogue, EveryFunctionIsPlacedShownAndKept) {
    ShippedRig rig;
    const int count = rig.placeAll();
    ASSERT_GT(count, 100);
    std::vector<std::vector<Texts>> before;
    for (int block = 10; block < 10 + count; ++block) {
        before.push_back(rig.shown(block));
        rig.db().FuncSetIndex("FN");
        rig.db().FuncSeekI(rig.bench.FnOfBlock.at(static_cast<std::size_t>(block)));
        const int slots = rig.db().FuncInputs() + rig.db().FuncParams() + rig.db().FuncHidden();
        EXPECT_EQ(rig.constants(block).size(), static_cast<std::size_t>(slots)) << rig.panel.Label5.caption;
        EXPECT_EQ(rig.slotCountInFile(block), slots) << rig.panel.Label5.caption;
    }
    const MemoryUse use = MemoryUse::of(rig.bench);
    rig.save();
    for (int block = 10; block < 10 + count; ++block)
        EXPECT_EQ(rig.shown(block), before.at(static_cast<std::size_t>(block - 10)));
    EXPECT_EQ(MemoryUse::of(rig.bench), use);
}

TEST(ShippedCatalogue, EveryShownValueCanBeTypedAgain) {
    ShippedRig rig;
    const int count = rig.placeAll();
    Grid& fg3 = rig.panel.fg3;
    for (int block = 10; block < 10 + count; ++block) {
        rig.clickBlock(block);
        const std::vector<std::int32_t> values = rig.constants(block);
        for (int p = 1; p < fg3.rows() && !fg3.text(p, 0).empty(); ++p) {
            const std::string text = fg3.text(p, 1);
            EXPECT_NE(text, "") << rig.panel.Label5.caption << " parameter " << p;
            EXPECT_TRUE(fg3.edit(p, 1, text)) << rig.panel.Label5.caption << " parameter " << p;
            EXPECT_EQ(fg3.text(p, 1), text) << rig.panel.Label5.caption << " parameter " << p;
        }
        EXPECT_EQ(rig.constants(block), values) << rig.panel.Label5.caption << ": shown digits that lose something";
    }
}

TEST(ShippedCatalogue, EveryInputCanBeWiredToItsKindOfSource) {
    ShippedRig rig;
    const int count = rig.placeAll();
    Grid& fg2 = rig.panel.fg2;
    for (int block = 10; block < 10 + count; ++block) {
        rig.clickBlock(block);
        const std::string label = rig.panel.Label5.caption;
        for (int row = 1; row <= rig.bench.CurInputs; ++row) {
            EXPECT_FALSE(fg2.text(row, 3).empty()) << label;
            const bool isAnalog = fg2.text(row, 5) == "A";
            EXPECT_TRUE(isAnalog || fg2.text(row, 5) == "D") << label;
            rig.pickRow(1);
            EXPECT_TRUE(fg2.edit(row, 1, isAnalog ? "600" : "602")) << label;
            EXPECT_EQ(rig.constant(block, row - 1), isAnalog ? 1024 + 600 : 1024 + 602 - 32768) << label;
            EXPECT_EQ(fg2.text(row, 4), isAnalog ? "AIN" : "ROUT") << label;
            EXPECT_NE(fg2.text(row, 2), "MAIN") << label;
        }
    }
}

TEST(ShippedCatalogue, EveryBoardFillsItsSlot) {
    ShippedRig rig;
    int slot = 1;
    for (const char* board : {"DISCRETE INPUT   610012", "ANALOG INPUT      610014", "HOA ROUT              610018",
                              "AUTO MANUAL       610021", "RELAY OUTPUT     610027", "TRIAC OUTPUT      610033"}) {
        rig.setBoard(slot++, board);
    }
    rig.general.mnuexit();
    rig.panel.fillIg();
    for (const auto& [block, name] : std::vector<std::pair<int, std::string>>{
             {615, "DIN"}, {629, "DIN"}, {630, "AIN"}, {645, "ROUT"}, {660, "AOUT"}, {675, "ROUT"}, {690, "TOUT"}}) {
        rig.clickBlock(block);
        EXPECT_EQ(rig.panel.Label5.caption, "BLOCK " + std::to_string(block) + " - " + name);
    }
}

}  // namespace
}  // namespace qrv
