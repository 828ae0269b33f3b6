#include "blocks/BlockParameters.h"

#include <gtest/gtest.h>

#include "BlockRig.h"
#include "blocks/ParameterScale.h"

namespace qrv {
namespace {

using Texts = std::vector<std::string>;

Notice invalid(const std::string& least, const std::string& greatest) {
    return {.text = "Invalid Parameter Value\nMin   " + least + "  Max  " + greatest, .title = "Warning!"};
}

/// A SCALES on block 20, shown: parameter p is row p and slot p.
struct ScalesRig : OpenBlockRig {
    ScalesRig() { place(20, "SCALES"); }
    Grid& fg3 = panel.fg3;
};

TEST(BlockParameters, HeadingsAndWidthsAreTheTold) {
    BlockRig rig;
    const Grid& fg3 = rig.panel.fg3;
    EXPECT_EQ(fg3.rows(), 256) << "255 parameters and the heading";
    EXPECT_EQ(rowOf(fg3, 0), (Texts{"", "VALUE", "DESCRIPTION"}));
    EXPECT_EQ(fg3.colWidth(0), 300);
    EXPECT_EQ(fg3.colWidth(1), 800);
    EXPECT_EQ(fg3.colWidth(2), 2800);
}

TEST(BlockParameters, EachScaleShowsItsDefault) {
    ScalesRig rig;
    EXPECT_EQ(rowOf(rig.fg3, 1), (Texts{"1", "5", "WHOLE"}));
    EXPECT_EQ(rowOf(rig.fg3, 2), (Texts{"2", "12.4", "ONE PLACE"})) << "12.350, half away from zero";
    EXPECT_EQ(rowOf(rig.fg3, 3), (Texts{"3", "12.36", "TWO PLACES"}));
    EXPECT_EQ(rowOf(rig.fg3, 4), (Texts{"4", "1.500", "THREE PLACES"}));
    EXPECT_EQ(rowOf(rig.fg3, 5), (Texts{"5", "", "FOUR PLACES"}));
    EXPECT_EQ(rowOf(rig.fg3, 6), (Texts{"6", "2", "DECIMALS"}));
    EXPECT_EQ(rowOf(rig.fg3, 7), (Texts{"7", "12.34", "COUNTED"}));
    EXPECT_EQ(rowOf(rig.fg3, 8), (Texts{"8", "-12.34", "COUNTED TOO"}));
    EXPECT_EQ(rowOf(rig.fg3, 10), Texts(3));
}

TEST(BlockParameters, HiddenConstantsAreNeverShown) {
    ScalesRig rig;
    rig.place(21, "SUM");
    EXPECT_EQ(rowOf(rig.fg3, 2), (Texts{"2", "4", "THIS IS EXACTLY 28 CHARS ..X"}));
    EXPECT_EQ(rowOf(rig.fg3, 3), Texts(3));
    EXPECT_EQ(rig.fg3.rowHeight(2), 220) << "28 characters are not longer than 28";
    rig.place(22, "TEXTS");
    EXPECT_EQ(rig.fg3.rowHeight(2), 440);
}

struct CountRow {
    const char* name;
    std::int32_t count;
    const char* seventh;  ///< 1234 as shown
    const char* eighth;   ///< -1234 as shown
};

class CountedParameter : public testing::TestWithParam<CountRow> {};

TEST_P(CountedParameter, IsShownByTheCountOfAnother) {
    ScalesRig rig;
    rig.setConstant(20, 6, GetParam().count);
    rig.clickBlock(20);
    EXPECT_EQ(rig.fg3.text(7, 1), GetParam().seventh);
    EXPECT_EQ(rig.fg3.text(8, 1), GetParam().eighth);
}

INSTANTIATE_TEST_SUITE_P(Counts, CountedParameter,
                         testing::Values(CountRow{"none", 0, "1234", "-1234"}, CountRow{"one", 1, "123.4", "-123.4"},
                                         CountRow{"two", 2, "12.34", "-12.34"}, CountRow{"three", 3, "1.234", "-1.234"},
                                         CountRow{"four", 4, "0.1234", "-0.1234"}, CountRow{"five", 5, "", ""},
                                         CountRow{"negative", -1, "", ""}),
                         [](const auto& row) { return row.param.name; });

// --- a typed value on its way to the file ---

struct TypedRow {
    const char* name;
    int p;
    const char* typed;
    const char* cell;
    std::int32_t stored;
};

class TypedValue : public testing::TestWithParam<TypedRow> {};

TEST_P(TypedValue, IsStoredOnItsScaleAndShownInItsFormat) {
    ScalesRig rig;
    EXPECT_TRUE(rig.fg3.edit(GetParam().p, 1, GetParam().typed));
    EXPECT_EQ(rig.fg3.text(GetParam().p, 1), GetParam().cell);
    EXPECT_EQ(rig.constant(20, GetParam().p), GetParam().stored);
    EXPECT_EQ(rig.panel.focus, "fg3");
}

INSTANTIATE_TEST_SUITE_P(
    Scales, TypedValue,
    testing::Values(
        TypedRow{"wholeMin", 1, "-10", "-10", -10}, TypedRow{"wholeMax", 1, "200", "200", 200},
        TypedRow{"wholeFraction", 1, "2.5", "2", 2}, TypedRow{"wholeFractionUp", 1, "3.5", "4", 4},
        TypedRow{"exponent", 1, "1e2", "100", 100}, TypedRow{"blanksAround", 1, " 7 ", "7", 7},
        TypedRow{"onePlaceInThousandths", 2, "12.35", "12.4", 12350}, TypedRow{"onePlaceMin", 2, "-0.5", "-0.5", -500},
        TypedRow{"onePlaceMax", 2, "100", "100.0", 100000},
        TypedRow{"twoPlacesInThousandths", 3, "12.345", "12.35", 12345},
        TypedRow{"twoPlacesMin", 3, "-1", "-1.00", -1000}, TypedRow{"threePlaces", 4, "32767", "32767.000", 32767000},
        TypedRow{"threePlacesMin", 4, "0.001", "0.001", 1},
        TypedRow{"halfToEvenInTheStoreAwayInTheCell", 4, "0.0625", "0.063", 62},
        TypedRow{"exponentOfD", 4, "1d3", "1000.000", 1000000}, TypedRow{"countItself", 6, "4", "4", 4},
        TypedRow{"counted", 7, "-200", "-200.00", -20000}, TypedRow{"countedMax", 7, "200.00", "200.00", 20000},
        TypedRow{"countedHalf", 7, "0.125", "0.13", 12}, TypedRow{"countedTwoBehind", 8, "1.5", "1.50", 150}),
    [](const auto& row) { return row.param.name; });

TEST(BlockParameters, ACountedHalfIsShownAsStoredNextTime) {
    ScalesRig rig;
    EXPECT_TRUE(rig.fg3.edit(7, 1, "0.125"));
    EXPECT_EQ(rig.fg3.text(7, 1), "0.13");
    rig.clickBlock(20);
    EXPECT_EQ(rig.fg3.text(7, 1), "0.12");
}

TEST(BlockParameters, EachCountHasItsOwnScaleAndLimits) {
    struct Row {
        int count;
        const char* typed;
        const char* cell;
        std::int32_t stored;
    };
    ScalesRig rig;
    for (const Row& row :
         {Row{0, "20000", "20000", 20000}, Row{0, "2.5", "2", 2}, Row{1, "2000", "2000.0", 20000},
          Row{2, "-200", "-200.00", -20000}, Row{3, "20", "20.000", 20000}, Row{4, "2", "2.0000", 20000}}) {
        rig.setConstant(20, 6, row.count);
        EXPECT_TRUE(rig.fg3.edit(7, 1, row.typed)) << row.count;
        EXPECT_EQ(rig.fg3.text(7, 1), row.cell) << row.count;
        EXPECT_EQ(rig.constant(20, 7), row.stored) << row.count;
    }
}

TEST(BlockParameters, EditingACountDoesNotReformatTheParameterBehindIt) {
    ScalesRig rig;
    EXPECT_TRUE(rig.fg3.edit(6, 1, "1"));
    EXPECT_EQ(rig.fg3.text(7, 1), "12.34");
    rig.clickBlock(20);
    EXPECT_EQ(rig.fg3.text(7, 1), "123.4");
}

struct RefusedRow {
    const char* name;
    int p;
    const char* typed;
    const char* least;
    const char* greatest;
};

class RefusedValue : public testing::TestWithParam<RefusedRow> {};

TEST_P(RefusedValue, IsToldWithTheLimitsAndTheCellStaysInEdit) {
    ScalesRig rig;
    const std::string before = rig.fg3.text(GetParam().p, 1);
    const auto stored = rig.constant(20, GetParam().p);
    rig.fg3.enterCell(GetParam().p, 1);
    ASSERT_TRUE(rig.fg3.beginEdit());
    rig.boxes.expect(invalid(GetParam().least, GetParam().greatest));
    EXPECT_FALSE(rig.fg3.commitEdit(GetParam().typed));
    EXPECT_TRUE(rig.fg3.editing());
    EXPECT_EQ(rig.panel.focus, "fg3");
    rig.fg3.cancelEdit();
    EXPECT_EQ(rig.fg3.text(GetParam().p, 1), before);
    EXPECT_EQ(rig.constant(20, GetParam().p), stored);
}

INSTANTIATE_TEST_SUITE_P(Values, RefusedValue,
                         testing::Values(RefusedRow{"wholeBelow", 1, "-10.1", "-10", "200"},
                                         RefusedRow{"wholeAbove", 1, "201", "-10", "200"},
                                         RefusedRow{"wholeNotNumeric", 1, "ten", "-10", "200"},
                                         RefusedRow{"empty", 1, "", "-10", "200"},
                                         RefusedRow{"notANumber", 1, "nan", "-10", "200"},
                                         RefusedRow{"beyondAllNumbers", 1, "1e999", "-10", "200"},
                                         RefusedRow{"onePlaceAbove", 2, "100.001", "-0.5", "100"},
                                         RefusedRow{"onePlaceNotNumericHasRawLimits", 2, "x", "-500", "100000"},
                                         RefusedRow{"threePlacesBelow", 4, "0.0009", "0.001", "32767"},
                                         RefusedRow{"fourPlacesTakeNothingButZero", 5, "0.001", "0", "0"},
                                         RefusedRow{"fourPlacesNotNumeric", 5, "?", "1", "100"},
                                         RefusedRow{"countedAbove", 7, "200.01", "-200", "200"},
                                         RefusedRow{"countedNotNumericHasRawLimits", 7, "1,5", "-20000", "20000"},
                                         RefusedRow{"countedTwoBehindBelow", 8, "-200.01", "-200", "200"}),
                         [](const auto& row) { return row.param.name; });

TEST(BlockParameters, ZeroPassesWhereThereIsNoScaleAndIsNeverStored) {
    ScalesRig rig;
    rig.setConstant(20, 5, 33);
    EXPECT_TRUE(rig.fg3.edit(5, 1, "0"));
    EXPECT_EQ(rig.constant(20, 5), 33);
    EXPECT_EQ(rig.fg3.text(5, 1), "");
}

TEST(BlockParameters, ACountBeyondFourLeavesRangeValueAndCellAlone) {
    ScalesRig rig;
    rig.setConstant(20, 6, 5);
    rig.clickBlock(20);
    EXPECT_TRUE(rig.fg3.edit(7, 1, "20000"));
    EXPECT_EQ(rig.constant(20, 7), 1234);
    EXPECT_EQ(rig.fg3.text(7, 1), "");
    rig.boxes.expect(invalid("-20000", "20000"));
    EXPECT_FALSE(rig.fg3.edit(7, 1, "20001"));
}

// --- strings ---

/// A LABEL on block 20, shown: string parameters 2 (5 characters) and 3 (8 characters) in slots 3 and 4.
struct StringRig : OpenBlockRig {
    StringRig() { place(20, "LABEL"); }
    Grid& fg3 = panel.fg3;
};

TEST(BlockParameters, AStringIsShownAndStoredInCapitals) {
    StringRig rig;
    EXPECT_EQ(rig.fg3.text(2, 1), "CAPTI");
    EXPECT_TRUE(rig.fg3.edit(2, 1, "b\xFCro"));
    EXPECT_EQ(rig.fg3.text(2, 1), "B\xDCRO");
    EXPECT_EQ(rig.string(20, 3), "B\xDCRO");
    EXPECT_EQ(rig.constant(20, 3), 9) << "its slot keeps the default";
}

TEST(BlockParameters, AStringOfExactlyItsLengthGivesNoNotice) {
    StringRig rig;
    EXPECT_TRUE(rig.fg3.edit(2, 1, "abcde"));
    EXPECT_EQ(rig.string(20, 3), "ABCDE");
}

TEST(BlockParameters, ALongerStringIsToldAndCut) {
    StringRig rig;
    rig.boxes.expect(Notice{.text = "String Too Long\nUsing ABCDE", .title = "Warning!"});
    EXPECT_TRUE(rig.fg3.edit(2, 1, "abcdef"));
    EXPECT_EQ(rig.fg3.text(2, 1), "ABCDE");
    EXPECT_EQ(rig.string(20, 3), "ABCDE");
}

TEST(BlockParameters, TheNoticeOfALongStringIsReadable) {
    StringRig rig;
    rig.boxes.expect(Notice{.text = "String Too Long\nUsing \xC3\x9C"
                                    "BERD",
                            .title = "Warning!"});
    EXPECT_TRUE(rig.fg3.edit(2, 1,
                             "\xFC"
                             "berdruck"));
}

TEST(BlockParameters, AnEmptiedStringIsOneBlank) {
    StringRig rig;
    EXPECT_TRUE(rig.fg3.edit(2, 1, ""));
    EXPECT_EQ(rig.string(20, 3), " ");
    EXPECT_EQ(rig.fg3.text(2, 1), " ");
}

TEST(BlockParameters, AStringWithoutItsRowShowsABlankAndRefusesAnEdit) {
    StringRig rig;
    rig.db().ParmstrSeek(20, 3);
    rig.db().ParmstrDelete();
    rig.clickBlock(20);
    EXPECT_EQ(rig.fg3.text(2, 1), " ");
    rig.fg3.enterCell(2, 1);
    ASSERT_TRUE(rig.fg3.beginEdit());
    EXPECT_EQ(errorOf([&] { rig.fg3.commitEdit("A"); }), 3021);
}

// --- which cells take typing ---

TEST(BlockParameters, OnlyValuesOfDescribedRowsTakeTyping) {
    ScalesRig rig;
    for (int col = 0; col < 3; ++col) {
        rig.fg3.enterCell(1, col);
        EXPECT_EQ(rig.fg3.beginEdit(), col == 1) << col;
        rig.fg3.cancelEdit();
    }
    EXPECT_FALSE(rig.fg3.edit(10, 1, "5"));
}

TEST(BlockParameters, EscapeGivesTheOldValueBack) {
    ScalesRig rig;
    rig.fg3.enterCell(1, 1);
    ASSERT_TRUE(rig.fg3.beginEdit());
    rig.fg3.setEditText("77");
    rig.fg3.cancelEdit();
    EXPECT_EQ(rig.fg3.text(1, 1), "5");
    EXPECT_EQ(rig.constant(20, 1), 5);
}

TEST(BlockParameters, OnAReadOnlyFileTheEngineRefuses) {
    ScalesRig rig;
    rig.reopenReadOnly();
    rig.clickBlock(20);
    rig.fg3.enterCell(1, 1);
    ASSERT_TRUE(rig.fg3.beginEdit());
    EXPECT_EQ(errorOf([&] { rig.fg3.commitEdit("6"); }), 3027);
}

TEST(BlockParameters, ValuesSurviveASave) {
    ScalesRig rig;
    EXPECT_TRUE(rig.fg3.edit(4, 1, "17.25"));
    rig.save();
    rig.clickBlock(20);
    EXPECT_EQ(rig.fg3.text(4, 1), "17.250");
}

TEST(BlockParameters, ToolTipsTellTheLimitsAsShown) {
    ScalesRig rig;
    EXPECT_EQ(rig.fg3.cell(1, 1).toolTip, "Least -10, greatest 200, default 5");
    EXPECT_EQ(rig.fg3.cell(2, 1).toolTip, "Least -0.5, greatest 100.0, default 12.4");
    EXPECT_EQ(rig.fg3.cell(7, 1).toolTip, "Least -200.00, greatest 200.00, default 12.34");
    EXPECT_EQ(rig.fg3.cell(5, 1).toolTip, "");
    rig.place(21, "LABEL");
    EXPECT_EQ(rig.fg3.cell(2, 1).toolTip, "At most 5 characters");
    rig.panel.setToolTips(false);
    rig.clickBlock(20);
    EXPECT_EQ(rig.fg3.cell(1, 1).toolTip, "");
}

// --- AABO and DABO ---

/// An AABO on block 20 and a DABO on 21, beside 40 STAGE, 41 METER (analog) and 42 ALARMS (discrete). AABO is shown.
struct AuxRig : OpenBlockRig {
    AuxRig() {
        place(40, "STAGE");
        place(41, "METER");
        place(42, "ALARMS");
        place(21, "DABO");
        place(20, "AABO");
    }
    /// Wires the shown block's input, taking the main output where the source has others.
    void wire(int source, bool asks) {
        if (asks) pickRow(0);
        EXPECT_TRUE(panel.fg2.edit(1, 1, std::to_string(source)));
    }
    [[nodiscard]] Texts shown() const { return rowOf(panel.fg3, 1); }
    Grid& fg3 = panel.fg3;
};

TEST(AuxReaders, ShowOneRowWithTheStoredOutput) {
    AuxRig rig;
    EXPECT_EQ(rig.shown(), (Texts{"1", "0", "NO AUX OUTPUT"}));
    rig.setConstant(20, 0, 40);
    rig.clickBlock(20);
    EXPECT_EQ(rig.shown(), (Texts{"1", "0", "NO SELECTION"}));
    rig.setConstant(20, 1, 2);
    rig.clickBlock(20);
    EXPECT_EQ(rig.shown(), (Texts{"1", "2", "RUNNING STAGES"}));
    rig.setConstant(20, 1, 3);
    rig.clickBlock(20);
    EXPECT_EQ(rig.shown(), (Texts{"1", "3", "BUNK"}));
    EXPECT_EQ(rowOf(rig.fg3, 2), Texts(3));
}

TEST(AuxReaders, AStoredOrdinalOfASourceWithoutOutputsShowsZeroAndStays) {
    AuxRig rig;
    rig.setConstant(20, 1, 2);
    rig.clickBlock(20);
    EXPECT_EQ(rig.shown(), (Texts{"1", "0", "NO AUX OUTPUT"}));
    EXPECT_EQ(rig.constant(20, 1), 2);
}

TEST(AuxReaders, ADaboReadsDiscreteOutputs) {
    AuxRig rig;
    rig.setConstant(21, 0, 40);
    rig.setConstant(21, 1, 3);
    rig.clickBlock(21);
    EXPECT_EQ(rig.shown(), (Texts{"1", "3", "STAGE THREE OF THE COMPRESSOR"}));
}

TEST(AuxReaders, ALongOutputTakesTwoLines) {
    AuxRig rig;
    rig.setConstant(21, 0, 40);
    rig.setConstant(21, 1, 3);
    rig.clickBlock(21);
    EXPECT_EQ(rig.fg3.rowHeight(1), 440);
    rig.pickRow(1);
    EXPECT_TRUE(rig.fg3.keyDown(Key::Enter));
    EXPECT_EQ(rig.shown(), (Texts{"1", "1", "STAGE ONE"}));
    EXPECT_EQ(rig.fg3.rowHeight(1), 220);
    rig.pickRow(3);
    EXPECT_TRUE(rig.fg3.keyDown(Key::Enter));
    EXPECT_EQ(rig.fg3.rowHeight(1), 440);
}

TEST(AuxReaders, EnterPicksTheOutput) {
    AuxRig rig;
    rig.wire(40, true);
    rig.pickRow(2, {"No Selection", "LOAD IN PERCENT", "RUNNING STAGES"});
    EXPECT_TRUE(rig.fg3.keyDown(Key::Enter));
    EXPECT_EQ(rig.shown(), (Texts{"1", "2", "RUNNING STAGES"}));
    EXPECT_EQ(rig.constant(20, 1), 2);
}

TEST(AuxReaders, ADoubleClickPicksTheOutputOfADabo) {
    AuxRig rig;
    rig.clickBlock(21);
    rig.wire(42, true);
    rig.pickRow(1, {"No Selection", "ANY ALARM"});
    EXPECT_TRUE(rig.fg3.doubleClick(1, 1));
    EXPECT_EQ(rig.shown(), (Texts{"1", "1", "ANY ALARM"}));
    EXPECT_EQ(rig.constant(21, 1), 1);
}

TEST(AuxReaders, NoSelectionIsOrdinalZero) {
    AuxRig rig;
    rig.wire(40, true);
    rig.setConstant(20, 1, 2);
    rig.pickRow(0);
    EXPECT_TRUE(rig.fg3.keyDown(Key::Enter));
    EXPECT_EQ(rig.shown(), (Texts{"1", "0", "NO SELECTION"}));
    EXPECT_EQ(rig.constant(20, 1), 0);
}

TEST(AuxReaders, AnAaboOfASourceWithoutAnalogOutputsIsTold) {
    AuxRig rig;
    rig.wire(42, false);
    rig.setConstant(20, 1, 5);
    rig.boxes.expect(Notice{.text = "ALARMS has no auxiliary analog outputs", .title = "Output Not Found"});
    EXPECT_TRUE(rig.fg3.keyDown(Key::Enter));
    EXPECT_EQ(rig.shown(), (Texts{"1", "0", "NO AUX OUTPUT"}));
    EXPECT_EQ(rig.constant(20, 1), 0);
}

TEST(AuxReaders, ADaboOfASourceWithoutDiscreteOutputsIsTold) {
    AuxRig rig;
    rig.clickBlock(21);
    rig.wire(41, false);
    rig.boxes.expect(Notice{.text = "METER has no auxiliary discrete outputs", .title = "Output Not Found"});
    EXPECT_TRUE(rig.fg3.doubleClick(1, 1));
    EXPECT_EQ(rig.shown(), (Texts{"1", "0", "NO AUX OUTPUT"}));
}

TEST(AuxReaders, OnAReadOnlyFileNothingOpens) {
    AuxRig rig;
    rig.setConstant(20, 0, 40);
    rig.setConstant(20, 1, 1);
    rig.reopenReadOnly();
    rig.clickBlock(20);
    EXPECT_TRUE(rig.fg3.keyDown(Key::Enter));
    EXPECT_EQ(rig.shown(), (Texts{"1", "1", "LOAD IN PERCENT"}));
}

TEST(AuxReaders, OtherBlocksLeaveEnterAndDoubleClickAlone) {
    AuxRig rig;
    rig.place(22, "SUM");
    EXPECT_FALSE(rig.fg3.keyDown(Key::Enter));
    EXPECT_FALSE(rig.fg3.doubleClick(1, 1));
    rig.clickBlock(20);
    rig.clickBlock(50);  // a NOP: the current function is still AABO, but nothing of it is shown
    EXPECT_FALSE(rig.fg3.keyDown(Key::Enter));
}

TEST(AuxReaders, ATypedOrdinalGoesTheParametersWay) {
    AuxRig rig;
    rig.wire(40, true);
    EXPECT_TRUE(rig.fg3.edit(1, 1, "1"));
    EXPECT_EQ(rig.constant(20, 1), 1);
    rig.boxes.expect(invalid("0", "31"));
    EXPECT_FALSE(rig.fg3.edit(1, 1, "32"));
}

}  // namespace
}  // namespace qrv
