#include "blocks/BlockProgram.h"

#include <gtest/gtest.h>

#include "BlockRig.h"
#include "blocks/MemoryUse.h"
#include "store/ControllerLimits.h"
#include "store/Sqlite.h"

namespace qrv {
namespace {

using Values = std::vector<std::int32_t>;

/// The assignment view with a function chosen.
struct PlacingRig : OpenBlockRig {
    explicit PlacingRig(const std::string& without = "") : OpenBlockRig(Catalogue::Small, without) {
        panel.mnuEditCfg();
    }
    void put(int block, const std::string& name) {
        chooseFunction(name);
        clickBlock(block);
    }
    [[nodiscard]] std::string cell(int block) {
        return panel.Grid1.text(logicCellOf(block).row, logicCellOf(block).col);
    }
};

TEST(FunctionPlacing, WiresInputsAndSetsDefaultsAndHiddenConstants) {
    PlacingRig rig;
    rig.put(20, "SUM");
    EXPECT_EQ(rig.constants(20), (Values{0, 2, 0, 1000, 4, 77}));
    EXPECT_EQ(rig.functionInFile(20), 10);
    EXPECT_EQ(rig.slotCountInFile(20), 6);
    EXPECT_EQ(rig.bench.FnOfBlock[20], 10);
    EXPECT_EQ(rig.bench.SeekBlock, 20);
    EXPECT_EQ(rig.cell(20), "SUM");
}

TEST(FunctionPlacing, AnInputOfNeitherKindIsWiredAsADiscreteOne) {
    PlacingRig rig;
    rig.put(20, "SCALES");
    EXPECT_EQ(rig.constant(20, 0), 2);
}

TEST(FunctionPlacing, AStringsFirstTextIsItsDescriptionCutToItsLength) {
    PlacingRig rig;
    rig.put(20, "TEXTS");
    EXPECT_EQ(rig.string(20, 0), "NAME");
    EXPECT_EQ(rig.string(20, 1), "PLACE OF THE MET");
    EXPECT_EQ(rig.string(20, 2), std::nullopt);
    EXPECT_EQ(rig.constants(20), (Values{5, 6, 3})) << "a string's slot keeps its default";
    rig.put(21, "LABEL");
    EXPECT_EQ(rig.string(21, 3), "CAPTI");
    EXPECT_EQ(rig.string(21, 4), "TAIL");
}

TEST(FunctionPlacing, TheFirstClickWithoutAChoicePlacesANop) {
    PlacingRig rig;
    EXPECT_EQ(rig.panel.CurFuncName, "NOP");
    rig.boxes.expect(question("Replace ZERO With NOP"), Answer::Yes);
    rig.clickBlock(0);
    EXPECT_EQ(rig.functionInFile(0), 127);
    EXPECT_EQ(rig.bench.FnOfBlock[0], 127);
    EXPECT_EQ(rig.slotCountInFile(0), 0);
    EXPECT_EQ(rig.cell(0), " ");
}

TEST(FunctionPlacing, OnANopNothingIsAsked) {
    PlacingRig rig;
    rig.put(599, "METER");
    EXPECT_EQ(rig.cell(599), "METER");
    EXPECT_TRUE(rig.boxes.said.empty());
}

TEST(FunctionPlacing, NoLeavesTheBlockAsItWas) {
    PlacingRig rig;
    rig.put(20, "SUM");
    rig.setConstant(20, 3, 2000);
    rig.boxes.expect(question("Replace SUM With TEXTS"), Answer::No);
    rig.put(20, "TEXTS");
    EXPECT_EQ(rig.constants(20), (Values{0, 2, 0, 2000, 4, 77}));
    EXPECT_EQ(rig.cell(20), "SUM");
    EXPECT_EQ(rig.bench.FnOfBlock[20], 10);
    EXPECT_EQ(rig.string(20, 0), std::nullopt);
}

TEST(FunctionPlacing, ReplacingAFunctionByItselfSetsAllDefaultsAgain) {
    PlacingRig rig;
    rig.put(20, "SUM");
    rig.setConstant(20, 0, 600);
    rig.setConstant(20, 3, 2000);
    rig.boxes.expect(question("Replace SUM With SUM"), Answer::Yes);
    rig.put(20, "SUM");
    EXPECT_EQ(rig.constants(20), (Values{0, 2, 0, 1000, 4, 77}));
}

TEST(FunctionPlacing, ANopOnAUsedBlockLeavesNoRows) {
    PlacingRig rig;
    rig.put(20, "LABEL");
    rig.boxes.expect(question("Replace LABEL With NOP"), Answer::Yes);
    rig.put(20, "NOP");
    EXPECT_TRUE(rig.constants(20).empty());
    EXPECT_EQ(rig.string(20, 3), std::nullopt);
    EXPECT_EQ(rig.string(20, 4), std::nullopt);
    EXPECT_EQ(rig.cell(20), " ");
}

TEST(FunctionPlacing, FewerSlotsLeaveNoOldRows) {
    PlacingRig rig;
    rig.put(20, "WIDE");
    EXPECT_EQ(rig.constants(20).size(), 74U);
    rig.boxes.expect(question("Replace WIDE With TEXTS"), Answer::Yes);
    rig.put(20, "TEXTS");
    rig.boxes.expect(question("Replace TEXTS With LABEL"), Answer::Yes);
    rig.put(20, "LABEL");
    EXPECT_EQ(rig.constants(20), (Values{0, 2, 3, 9, 9}));
    EXPECT_EQ(rig.string(20, 0), std::nullopt);
    EXPECT_EQ(rig.string(20, 1), std::nullopt);
    EXPECT_EQ(rig.string(20, 3), "CAPTI");
}

TEST(FunctionPlacing, AMissingStringDoesNotStopTheChange) {
    PlacingRig rig;
    rig.put(20, "LABEL");
    rig.db().ParmstrSeek(20, 3);
    rig.db().ParmstrDelete();
    rig.boxes.expect(question("Replace LABEL With SUM"), Answer::Yes);
    rig.put(20, "SUM");
    EXPECT_EQ(rig.string(20, 4), std::nullopt);
    EXPECT_EQ(rig.constants(20).size(), 6U);
}

TEST(FunctionPlacing, CommentsAlarmsAndUnitsOfTheBlockSurvive) {
    PlacingRig rig;
    rig.put(20, "SUM");
    rig.setComments(20, "first", "second");
    rig.db().AlarmAddNew();
    rig.db().AlarmBlockNumber(20);
    rig.db().AlarmDescription("HIGH");
    rig.db().AlarmUpdate();
    rig.db().BEGUAdd();
    rig.db().BEGUBlock(20);
    rig.db().BEGUParam(0);
    rig.db().BEGUUpdate();
    rig.boxes.expect(question("Replace SUM With METER"), Answer::Yes);
    rig.put(20, "METER");
    rig.db().BlockSeek(20);
    EXPECT_EQ(rig.db().BlockComment(), "first");
    EXPECT_EQ(rig.db().BlockVisioComment(), "second");
    EXPECT_EQ(rig.db().AlarmHowMany(), 1);
    EXPECT_EQ(rig.db().BEGUHowMany(), 1);
}

TEST(FunctionPlacing, AFunctionThatTheCatalogueLacksIsANotice) {
    PlacingRig rig;
    rig.panel.CurFuncName = "GONE";
    rig.boxes.expect(Notice{.text = "ERROR RECORD NOT FOUND", .title = "Warning!"});
    rig.clickBlock(20);
    EXPECT_EQ(rig.cell(20), " ");
    EXPECT_EQ(rig.functionInFile(20), 127);
}

TEST(FunctionPlacing, EnterPlacesAsAClickDoesAndIoBlocksTakeNone) {
    PlacingRig rig;
    rig.chooseFunction("SUM");
    rig.panel.Grid1.enterCell(logicCellOf(30).row, logicCellOf(30).col);
    EXPECT_EQ(rig.functionInFile(30), 127);
    EXPECT_TRUE(rig.panel.Grid1.keyDown(Key::Enter));
    EXPECT_EQ(rig.functionInFile(30), 10);
    rig.clickBlock(600);
    EXPECT_EQ(rig.functionInFile(600), 2);
    EXPECT_EQ(rig.bench.SeekBlock, 30);
}

TEST(FunctionPlacing, TheListHoldsAllButTheBoardsFunctions) {
    PlacingRig rig;
    EXPECT_EQ(rig.panel.List1.items,
              (std::vector<std::string>{"ZERO", "HUNDRED", "OFF", "ON", "NOP", "SUM", "TEXTS", "LABEL", "SCALES",
                                        "AABO", "DABO", "STAGE", "METER", "ALARMS", "WIDE", "RETAIN"}));
    rig.panel.focus.clear();
    rig.chooseFunction("METER");
    EXPECT_EQ(rig.panel.CurFuncName, "METER");
    EXPECT_EQ(rig.panel.focus, "List1");
}

TEST(FunctionPlacing, OnceARowIsGoneAnInputThatTheCatalogueLacksIsPassedOver) {
    PlacingRig rig;
    rig.put(20, "TEXTS");
    rig.db().close_database();
    Sqlite(rig.path("catalogue") + "/QRVDATA.DAT", Sqlite::Mode::ReadWrite).execute("DELETE FROM Inputs");
    rig.db().open_database(rig.path("catalogue"));
    rig.boxes.expect({.text = "Replace TEXTS With SUM", .title = "Warning!", .buttons = Buttons::YesNo}, Answer::Yes);
    rig.put(20, "SUM");
    EXPECT_EQ(rig.functionInFile(20), 10);
    rig.db().ConstantSeek(20, 0);
    EXPECT_TRUE(rig.db().ConstantNoMatch());
    rig.db().ConstantSeek(20, 3);  // the first behind the three inputs
    EXPECT_EQ(rig.db().ConstantValue(), 1000);
}

TEST(FunctionPlacing, OnAReadOnlyFileTheEngineRefuses) {
    BlockRig rig;
    rig.open();
    rig.reopenReadOnly();
    rig.panel.mnuEditCfg();
    rig.chooseFunction("SUM");
    EXPECT_EQ(errorOf([&] { rig.clickBlock(20); }), 3027);
    EXPECT_EQ(rig.bench.FnOfBlock[20], 127);
}

// --- a function as it comes from a controller ---

TEST(UploadedFunction, ReplacesConstantsAndTakesStringsAwayWithoutNewOnes) {
    PlacingRig rig;
    rig.put(20, "LABEL");
    assign_block_function(rig.bench, 20, 12);
    EXPECT_EQ(rig.constants(20), (Values{5, 6, 3}));
    EXPECT_EQ(rig.functionInFile(20), 12);
    EXPECT_EQ(rig.slotCountInFile(20), 3);
    EXPECT_EQ(rig.bench.FnOfBlock[20], 12);
    for (int slot = 0; slot < 5; ++slot) EXPECT_EQ(rig.string(20, slot), std::nullopt) << slot;
}

TEST(UploadedFunction, TheFunctionThatStandsThereComesWithItsDefaultsAgain) {
    PlacingRig rig;
    rig.put(20, "SUM");
    const auto defaults = rig.constants(20);
    ASSERT_EQ(defaults.size(), 6U);
    db1& db = rig.bench.db;
    for (std::int16_t slot = 0; slot < 6; ++slot) {
        db.ConstantSeek(20, slot);
        db.ConstantEdit();
        db.ConstantValue(-7 - slot);
        db.ConstantUpdate();
    }
    assign_block_function(rig.bench, 20, 10);
    EXPECT_EQ(rig.constants(20), defaults);
    EXPECT_EQ(rig.slotCountInFile(20), 6);
}

TEST(UploadedFunction, ANopTakesAllRowsAway) {
    PlacingRig rig;
    rig.put(20, "TEXTS");
    assign_block_function(rig.bench, 20, 127);
    EXPECT_TRUE(rig.constants(20).empty());
    EXPECT_EQ(rig.string(20, 0), std::nullopt);
    EXPECT_EQ(rig.bench.FnOfBlock[20], 127);
}

TEST(UploadedFunction, AnUnknownFunctionIsANoticeAndNoChange) {
    PlacingRig rig;
    rig.put(20, "SUM");
    rig.boxes.expect(Notice{.text = "ERROR RECORD NOT FOUND", .title = "Warning!"});
    assign_block_function(rig.bench, 20, 255);
    EXPECT_EQ(rig.functionInFile(20), 10);
    EXPECT_EQ(rig.constants(20).size(), 6U);
}

TEST(UploadedFunction, ABlockWithoutARowIsTheSameNotice) {
    PlacingRig rig;
    rig.boxes.expect(Notice{.text = "ERROR RECORD NOT FOUND", .title = "Warning!"});
    assign_block_function(rig.bench, 705, 10);
    EXPECT_TRUE(rig.constants(705).empty());
}

// --- the meters ---

TEST(MemoryUse, CountsConstantsAndRetentiveBytes) {
    PlacingRig rig;
    // The CPU's blocks: two AIN with 3 constants each, one ROUT with 2, which keeps 2 bytes.
    EXPECT_EQ(MemoryUse::of(rig.bench), (MemoryUse{.constants = 8, .retentiveBytes = 2}));
    rig.put(20, "SUM");
    rig.put(21, "RETAIN");
    EXPECT_EQ(MemoryUse::of(rig.bench), (MemoryUse{.constants = 15, .retentiveBytes = 216}));
    rig.put(22, "RETAIN");
    rig.put(23, "RETAIN");
    EXPECT_EQ(MemoryUse::of(rig.bench), (MemoryUse{.constants = 17, .retentiveBytes = 638})) << "4 bytes too many";
    EXPECT_EQ(kMostConstants, 5632);
    EXPECT_EQ(kMostRetentiveBytes, 634);
}

TEST(MemoryUse, AFileWithoutConstantsUsesNone) {
    BlockRig rig;
    rig.bench.windows.loadBoardTexts = [] {};
    rig.open();
    EXPECT_EQ(MemoryUse::of(rig.bench), (MemoryUse{.constants = 0, .retentiveBytes = 0}));
}

}  // namespace
}  // namespace qrv
