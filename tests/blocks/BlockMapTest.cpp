#include "blocks/BlockMap.h"

#include <gtest/gtest.h>

#include "BlockRig.h"
#include "blocks/BlockProgram.h"

namespace qrv {
namespace {

void addAlarm(db1& db, int word, const std::string& text, bool isAlarm) {
    db.AlarmAddNew();
    db.AlarmBlockNumber(word);
    db.AlarmDescription(text);
    db.AlarmEvent0("");
    db.AlarmEvent1("");
    db.AlarmIsAlarm(isAlarm);
    db.AlarmUpdate();
}

std::string columnText(const Grid& grid, int col) {
    std::string text;
    for (int row = 1; row < grid.rows(); ++row) text += grid.text(row, col) + " ";
    return text;
}

TEST(BlockMap, HeadingsAndSizesAreTheTold) {
    BlockRig rig;
    const Grid& map = rig.panel.Grid1;
    EXPECT_EQ(map.rows(), 61);
    EXPECT_EQ(map.cols(), 11);
    EXPECT_EQ(map.text(0, 1), "0");
    EXPECT_EQ(map.text(0, 10), "9");
    EXPECT_EQ(map.text(1, 0), "0");
    EXPECT_EQ(map.text(60, 0), "59");
    EXPECT_EQ(map.colWidth(0), 300);
    EXPECT_EQ(map.colWidth(10), 875);
    EXPECT_EQ(map.rowHeight(60), 200);
    const Grid& io = rig.panel.Ig;
    EXPECT_EQ(io.rows(), 16);
    EXPECT_EQ(io.cols(), 8);
    EXPECT_EQ(io.text(0, 1), "0");
    EXPECT_EQ(io.text(0, 7), "6");
    EXPECT_EQ(io.text(1, 0), "1");
    EXPECT_EQ(io.text(15, 0), "15");
    EXPECT_EQ(io.colWidth(0), 300);
    EXPECT_EQ(io.colWidth(7), 400);
    EXPECT_EQ(io.rowHeight(0), 220);
}

TEST(BlockMap, CellsAndBlocksGoBothWays) {
    EXPECT_EQ(logicBlockAt({.row = 1, .col = 1}), 0);
    EXPECT_EQ(logicBlockAt({.row = 2, .col = 3}), 12);
    EXPECT_EQ(ioBlockAt({.row = 1, .col = 1}), 600);
    EXPECT_EQ(ioBlockAt({.row = 15, .col = 7}), 704);
    EXPECT_EQ(ioBlockAt({.row = 1, .col = 2}), 615);
    for (int block = 0; block < 600; ++block) EXPECT_EQ(logicBlockAt(logicCellOf(block)), block);
    for (int block = 600; block <= 704; ++block) EXPECT_EQ(ioBlockAt(ioCellOf(block)), block);
}

TEST(BlockMap, FillingShowsTheFunctionsAndABlankForEachNop) {
    OpenBlockRig rig;
    EXPECT_EQ(rowOf(rig.panel.Grid1, 1, 1),
              (std::vector<std::string>{"ZERO", "HUNDRED", "OFF", "ON", " ", " ", " ", " ", " ", " "}));
    EXPECT_EQ(rig.panel.Grid1.text(60, 10), " ");
    EXPECT_EQ(rig.panel.Grid1.row(), 60) << "it stands on the last block it wrote";
    EXPECT_EQ(rig.panel.Grid1.col(), 10);
}

TEST(BlockMap, WithoutAFileTheCpusThreeTagsAreThere) {
    BlockRig rig;
    rig.panel.fillIg();
    EXPECT_EQ(columnText(rig.panel.Ig, 1), "AI AI RO . . . . . . . . . . . . ");
    for (int col = 2; col <= 7; ++col) EXPECT_EQ(columnText(rig.panel.Ig, col), ". . . . . . . . . . . . . . . ");
    EXPECT_EQ(rig.panel.List2.items, std::vector<std::string>(7));
}

TEST(BlockMap, EachBoardMarksItsBlocksAndTheListHoldsTheDescriptions) {
    OpenBlockRig rig;
    rig.setBoard(1, "DISCRETE INPUT   610012");
    rig.setBoard(2, "ANALOG INPUT      610014");
    rig.setBoard(3, "HOA ROUT              610018");
    rig.setBoard(4, "AUTO MANUAL       610021");
    rig.setBoard(5, "RELAY OUTPUT     610027");
    rig.setBoard(6, "TRIAC OUTPUT      610033");
    rig.general.mnuexit();
    rig.panel.fillIg();
    rig.panel.fillIg();  // a second filling doubles nothing
    EXPECT_EQ(columnText(rig.panel.Ig, 1), "AI AI RO . . . . . . . . . . . . ");
    EXPECT_EQ(columnText(rig.panel.Ig, 2), "DI DI DI DI DI DI DI DI DI DI DI DI DI DI DI ");
    EXPECT_EQ(columnText(rig.panel.Ig, 3), "AI AI AI AI AI AI AI AI . . . . . . . ");
    EXPECT_EQ(columnText(rig.panel.Ig, 4), "HO HO HO HO HO . . . . . . . . . . ");
    EXPECT_EQ(columnText(rig.panel.Ig, 5), "AM AM AM AM AM . . . . . . . . . . ");
    EXPECT_EQ(columnText(rig.panel.Ig, 6), "RO RO RO RO RO RO RO RO . . . . . . . ");
    EXPECT_EQ(columnText(rig.panel.Ig, 7), "TO TO TO TO . . . . . . . . . . . ");
    EXPECT_EQ(rig.panel.List2.items,
              (std::vector<std::string>{"CPU BOARD - 610050", "DISCRETE INPUT   610012", "ANALOG INPUT      610014",
                                        "HOA ROUT              610018", "AUTO MANUAL       610021",
                                        "RELAY OUTPUT     610027", "TRIAC OUTPUT      610033"}));
}

struct AlarmRow {
    const char* name;
    int word;
    const char* text;
    bool isAlarm;
    std::uint32_t colour;
};

class AlarmColour : public testing::TestWithParam<AlarmRow> {};

TEST_P(AlarmColour, PaintsTheBlocksCell) {
    OpenBlockRig rig;
    addAlarm(rig.db(), GetParam().word, GetParam().text, GetParam().isAlarm);
    rig.panel.paintAlarmColours();
    const bool isLogic = (GetParam().word & 0x3FF) < 600;
    const GridCell& cell = isLogic ? rig.panel.Grid1.cell(2, 3) : rig.panel.Ig.cell(3, 2);  // blocks 12 and 617
    EXPECT_EQ(cell.back, Colour{GetParam().colour});
    EXPECT_TRUE(cell.bold);
    EXPECT_FALSE(rig.panel.Grid1.cell(1, 1).back);
    EXPECT_FALSE(rig.panel.Grid1.cell(1, 1).bold);
}

INSTANTIATE_TEST_SUITE_P(Kinds, AlarmColour,
                         testing::Values(AlarmRow{"alarm", 12, "HIGH LEVEL", true, 0xFF8080},
                                         AlarmRow{"event", 12, "PUMP ON", false, 0xC0C0FF},
                                         AlarmRow{"page", 12, "\x81 CALL", true, 0xFFC080},
                                         AlarmRow{"pageOfAnEvent", 12, "\xFF", false, 0xFFC080},
                                         AlarmRow{"code128IsNoPage", 12, "\x80", true, 0xFF8080},
                                         AlarmRow{"emptyText", 12, "", false, 0xC0C0FF},
                                         AlarmRow{"ioBlock", 617, "X", true, 0xFF8080},
                                         AlarmRow{"highBitsAreMasked", 12 + 2048, "X", true, 0xFF8080},
                                         AlarmRow{"discreteOutputIsMasked", 617 + 1024 - 32768, "X", true, 0xFF8080}),
                         [](const auto& row) { return row.param.name; });

TEST(BlockMap, ASecondPaintingTakesTheColourOfADeletedAlarmAway) {
    OpenBlockRig rig;
    addAlarm(rig.db(), 12, "X", true);
    rig.panel.paintAlarmColours();
    rig.db().AlarmSeekBlock(12);
    rig.db().AlarmDeleteRecord();
    rig.panel.paintAlarmColours();
    EXPECT_FALSE(rig.panel.Grid1.cell(2, 3).back);
    EXPECT_FALSE(rig.panel.Grid1.cell(2, 3).bold);
}

TEST(BlockMap, WithoutAFileThereAreNoColours) {
    BlockRig rig;
    rig.panel.paintAlarmColours();
    EXPECT_FALSE(rig.panel.Grid1.cell(1, 1).back);
}

TEST(BlockMap, AnAlarmOfNoBlockPaintsNothing) {
    OpenBlockRig rig;
    addAlarm(rig.db(), 705, "X", true);
    addAlarm(rig.db(), 1023, "X", true);
    rig.panel.paintAlarmColours();
    for (int row = 1; row <= 15; ++row) {
        for (int col = 1; col <= 7; ++col) EXPECT_FALSE(rig.panel.Ig.cell(row, col).back);
    }
}

TEST(BlockMap, F5AndF6StepAroundTheEndsOfTheLogicBlocks) {
    OpenBlockRig rig;
    Grid& map = rig.panel.Grid1;
    rig.clickBlock(599);
    EXPECT_TRUE(map.keyDown(Key::F6));
    EXPECT_EQ(logicBlockAt({.row = map.row(), .col = map.col()}), 0);
    EXPECT_EQ(rig.bench.SeekBlock, 0);
    EXPECT_EQ(rig.panel.Label5.caption, "BLOCK 0 - ZERO");
    EXPECT_TRUE(map.keyDown(Key::F5));
    EXPECT_EQ(logicBlockAt({.row = map.row(), .col = map.col()}), 599);
    rig.clickBlock(9);
    EXPECT_TRUE(map.keyDown(Key::F6));
    EXPECT_EQ(rig.bench.SeekBlock, 10) << "one step, onto a NOP too";
}

TEST(BlockMap, EnterShowsTheSelectedBlockAndOtherKeysDoNothing) {
    OpenBlockRig rig;
    Grid& map = rig.panel.Grid1;
    map.enterCell(1, 3);
    EXPECT_NE(rig.bench.SeekBlock, 2);
    EXPECT_FALSE(map.keyDown(Key::Down));
    EXPECT_FALSE(map.keyDown(Key::F2));
    EXPECT_NE(rig.bench.SeekBlock, 2);
    EXPECT_TRUE(map.keyDown(Key::Enter));
    EXPECT_EQ(rig.bench.SeekBlock, 2);
    EXPECT_EQ(rig.panel.Label5.caption, "BLOCK 2 - OFF");
}

TEST(BlockMap, F5AndF6StepOverEmptyIoCellsAndAroundTheEnds) {
    OpenBlockRig rig;
    Grid& io = rig.panel.Ig;
    rig.setBoard(6, "DISCRETE INPUT   610012");
    rig.general.mnuexit();
    rig.panel.fillIg();
    io.click(15, 7);
    EXPECT_EQ(rig.bench.SeekBlock, 704);
    EXPECT_TRUE(io.keyDown(Key::F6));
    EXPECT_EQ(rig.bench.SeekBlock, 600);
    EXPECT_TRUE(io.keyDown(Key::F5));
    EXPECT_EQ(rig.bench.SeekBlock, 704);
    io.click(3, 1);
    EXPECT_TRUE(io.keyDown(Key::F6));
    EXPECT_EQ(rig.bench.SeekBlock, 690) << "from 602 past all cells that hold a point";
    EXPECT_TRUE(io.keyDown(Key::F5));
    EXPECT_EQ(rig.bench.SeekBlock, 602);
}

TEST(BlockMap, AMapOfPointsAloneEndsTheSearch) {
    BlockRig rig;
    for (int row = 1; row <= 15; ++row) {
        for (int col = 1; col <= 7; ++col) rig.panel.Ig.setText(row, col, ".");
    }
    EXPECT_TRUE(rig.panel.Ig.keyDown(Key::F6));
    EXPECT_EQ(rig.bench.SeekBlock, 0);
}

TEST(BlockMap, ABlockIsUsedUnlessItIsANop) {
    OpenBlockRig rig;
    rig.db().FuncSetIndex("Name");
    EXPECT_TRUE(BlockIsUsed(rig.bench, 0));
    EXPECT_FALSE(BlockIsUsed(rig.bench, 4));
    EXPECT_TRUE(BlockIsUsed(rig.bench, 602));
    rig.db().FuncSeekI(90);  // in number order now
    EXPECT_EQ(rig.db().FuncName(), "OFF");
}

}  // namespace
}  // namespace qrv
