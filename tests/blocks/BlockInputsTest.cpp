#include "blocks/BlockInputs.h"

#include <gtest/gtest.h>

#include "BlockRig.h"

namespace qrv {
namespace {

using Texts = std::vector<std::string>;

const Notice kNumberWanted{.text = "Enter A Block Number\n        0 to 704", .title = "Warning!"};

/// A SUM on block 20, shown, beside blocks with auxiliary outputs: 40 STAGE, 41 METER, 42 ALARMS.
struct WiringRig : OpenBlockRig {
    WiringRig() {
        place(40, "STAGE");
        place(41, "METER");
        place(42, "ALARMS");
        place(20, "SUM");
    }
    Grid& fg2 = panel.fg2;
};

TEST(BlockInputs, HeadingsAndWidthsAreTheTold) {
    BlockRig rig;
    EXPECT_EQ(rig.panel.fg2.rows(), 75);
    EXPECT_EQ(rowOf(rig.panel.fg2, 0), (Texts{"", "BLK", "OUTPUT", "DESCRIPTION", "SOURCE", ""}));
    std::vector<int> widths;
    for (int col = 0; col < 6; ++col) widths.push_back(rig.panel.fg2.colWidth(col));
    EXPECT_EQ(widths, (std::vector<int>{300, 450, 750, 1775, 1000, 400}));
    EXPECT_EQ(rig.panel.fg2.rowHeight(74), 220);
}

TEST(BlockInputs, TheColumnWithoutAHeadingTellsItsLettersInAToolTip) {
    WiringRig rig;
    const std::string tip = "A: analog input, D: discrete input, ?: its source is an empty block";
    EXPECT_EQ(rig.fg2.cell(0, 5).toolTip, tip);
    EXPECT_EQ(rig.fg2.cell(1, 5).toolTip, tip);
    rig.panel.setToolTips(false);
    rig.clickBlock(20);
    EXPECT_EQ(rig.fg2.cell(0, 5).toolTip, "");
    EXPECT_EQ(rig.fg2.cell(1, 5).toolTip, "");
    rig.panel.setToolTips(true);
    EXPECT_EQ(rig.fg2.cell(0, 5).toolTip, tip);
}

TEST(BlockInputs, ShowsWhatEachInputIsWiredTo) {
    WiringRig rig;
    EXPECT_EQ(rowOf(rig.fg2, 1), (Texts{"1", "0", "MAIN", "FIRST", "ZERO", "A"}));
    EXPECT_EQ(rowOf(rig.fg2, 2), (Texts{"2", "2", "MAIN", "ENABLE FOR THE SECOND ADDEND OF ALL", "OFF", "D"}));
    EXPECT_EQ(rowOf(rig.fg2, 3), (Texts{"3", "0", "MAIN", " INPUT AT THE START", "ZERO", "A"}));
    EXPECT_EQ(rowOf(rig.fg2, 4), Texts(6));
}

TEST(BlockInputs, LongDescriptionsMakeAHighRowUntilTheNextBlock) {
    WiringRig rig;
    EXPECT_EQ(rig.fg2.rowHeight(1), 220);
    EXPECT_EQ(rig.fg2.rowHeight(2), 440);
    rig.place(21, "LABEL");
    EXPECT_EQ(rig.fg2.rowHeight(2), 220);
}

TEST(BlockInputs, ADescriptionIsCutAtItsInputFromPlaceTwoOn) {
    WiringRig rig;
    rig.place(21, "LABEL");
    EXPECT_EQ(rig.fg2.text(1, 3), "VALUE");
    EXPECT_EQ(rig.fg2.text(2, 3), "HOLD input") << "as written, in capitals";
}

TEST(BlockInputs, AnInputOfNeitherKindShowsNoLetter) {
    WiringRig rig;
    rig.place(21, "SCALES");
    EXPECT_EQ(rowOf(rig.fg2, 1), (Texts{"1", "2", "MAIN", "OTHER", "OFF", ""}));
}

struct WordRow {
    const char* name;
    std::int32_t word;
    Texts texts;  ///< BLK, OUTPUT, DESCRIPTION, SOURCE and the letter
};

class ShownWord : public testing::TestWithParam<WordRow> {};

TEST_P(ShownWord, IsDecoded) {
    WiringRig rig;
    rig.setConstant(20, 0, GetParam().word);
    rig.clickBlock(20);
    EXPECT_EQ(rowOf(rig.fg2, 1, 1), GetParam().texts);
}

INSTANTIATE_TEST_SUITE_P(
    Words, ShownWord,
    testing::Values(WordRow{"main", 41, {"41", "MAIN", "FIRST", "METER", "A"}},
                    WordRow{"analog", 2048 + 40, {"40", "RUNNING", "FIRST", "STAGE", "A"}},
                    WordRow{"discrete", 3072 + 40 - 32768, {"40", "STG3", "FIRST", "STAGE", "A"}},
                    WordRow{"missingOutput", 2048 + 41, {"41", "BUNK", "FIRST", "METER", "A"}},
                    WordRow{"nop", 50, {"50", "MAIN", "FIRST", "????", "?"}},
                    WordRow{"outputOfANop", 1024 + 50, {"50", "BUNK", "FIRST", "????", "?"}},
                    WordRow{"noSuchBlock", 705, {"705", "MAIN", "FIRST", "????", "?"}},
                    WordRow{"outputOfNoSuchBlock", 1024 + 1023, {"1023", "MAIN", "FIRST", "????", "?"}}),
    [](const auto& row) { return row.param.name; });

TEST(BlockInputs, SeventyFourInputsFit) {
    WiringRig rig;
    rig.place(21, "WIDE");
    EXPECT_EQ(rowOf(rig.fg2, 74), (Texts{"74", "0", "MAIN", "IN 74", "ZERO", "A"}));
}

TEST(BlockInputs, ATypedNumberIsStoredAndItsSourceShown) {
    WiringRig rig;
    EXPECT_TRUE(rig.fg2.edit(1, 1, "600"));
    EXPECT_EQ(rig.constant(20, 0), 600);
    EXPECT_EQ(rowOf(rig.fg2, 1), (Texts{"1", "600", "MAIN", "FIRST", "AIN", "A"}));
    EXPECT_TRUE(rig.boxes.said.empty());
}

TEST(BlockInputs, WiringToANopIsAllowed) {
    WiringRig rig;
    EXPECT_TRUE(rig.fg2.edit(1, 1, "704"));
    EXPECT_EQ(rig.constant(20, 0), 704);
    EXPECT_EQ(rowOf(rig.fg2, 1, 1), (Texts{"704", "MAIN", "FIRST", "????", "?"}));
}

TEST(BlockInputs, AFractionIsRoundedToTheEvenBlockAndTheCellKeepsWhatWasTyped) {
    WiringRig rig;
    EXPECT_TRUE(rig.fg2.edit(1, 1, "2.5"));
    EXPECT_EQ(rig.constant(20, 0), 2);
    EXPECT_EQ(rig.fg2.text(1, 1), "2.5");
    rig.clickBlock(20);
    EXPECT_EQ(rig.fg2.text(1, 1), "2");
}

class RefusedBlockNumber : public testing::TestWithParam<const char*> {};

TEST_P(RefusedBlockNumber, IsToldAndTheCellStaysInEdit) {
    WiringRig rig;
    rig.fg2.enterCell(1, 1);
    ASSERT_TRUE(rig.fg2.beginEdit());
    rig.boxes.expect(kNumberWanted);
    EXPECT_FALSE(rig.fg2.commitEdit(GetParam()));
    EXPECT_TRUE(rig.fg2.editing());
    rig.fg2.cancelEdit();
    EXPECT_EQ(rig.fg2.text(1, 1), "0");
    EXPECT_EQ(rig.constant(20, 0), 0);
}

INSTANTIATE_TEST_SUITE_P(Texts, RefusedBlockNumber,
                         testing::Values("705", "-1", "704.4", "-0.2", "", " ", "PUMP", "1e400", "nan", "12 13"));

TEST(BlockInputs, TheNumberTestTakesTheEdges) {
    for (const char* text : {"0", "704", " 12 ", "1e2", "+5", "7.04E2", "703.9"}) {
        EXPECT_TRUE(BlockInputs::BlockNumberIsValid(text)) << text;
    }
}

TEST(BlockInputs, AnAnalogSourceWithOutputsOpensThePicker) {
    WiringRig rig;
    rig.pickRow(2, {"MAIN", "LOAD IN PERCENT", "RUNNING STAGES"});
    EXPECT_TRUE(rig.fg2.edit(1, 1, "40"));
    EXPECT_EQ(rig.constant(20, 0), 2 * 1024 + 40);
    EXPECT_EQ(rowOf(rig.fg2, 1, 1), (Texts{"40", "RUNNING", "FIRST", "STAGE", "A"}));
}

TEST(BlockInputs, ADiscreteInputIsOfferedTheDiscreteOutputs) {
    WiringRig rig;
    rig.pickRow(3, {"MAIN", "STAGE ONE", "STAGE TWO", "STAGE THREE OF THE COMPRESSOR"});
    EXPECT_TRUE(rig.fg2.edit(2, 1, "40"));
    EXPECT_EQ(rig.constant(20, 1), 3 * 1024 + 40 - 32768);
    EXPECT_EQ(rowOf(rig.fg2, 2, 1), (Texts{"40", "STG3", "ENABLE FOR THE SECOND ADDEND OF ALL", "STAGE", "D"}));
}

TEST(BlockInputs, TheMainOutputOfASourceWithOutputsHasNoBits) {
    WiringRig rig;
    rig.pickRow(0);
    EXPECT_TRUE(rig.fg2.edit(2, 1, "40"));
    EXPECT_EQ(rig.constant(20, 1), 40);
    EXPECT_EQ(rig.fg2.text(2, 2), "MAIN");
}

TEST(BlockInputs, ASourceWithoutOutputsOfTheKindOpensNothing) {
    WiringRig rig;
    EXPECT_TRUE(rig.fg2.edit(2, 1, "41"));  // METER has an analog output alone
    EXPECT_EQ(rig.constant(20, 1), 41);
    EXPECT_TRUE(rig.fg2.edit(1, 1, "42"));  // ALARMS a discrete one
    EXPECT_EQ(rig.constant(20, 0), 42);
    EXPECT_EQ(rig.fg2.text(1, 2), "MAIN");
}

TEST(BlockInputs, EscapeInThePickerIsTheMainOutput) {
    WiringRig rig;
    rig.host.onModal("frmAaboPick", [&](Form& form) {
        auto& picker = dynamic_cast<frmAaboPick&>(form);
        EXPECT_EQ(picker.caption, "BLOCK OUTPUT SELECTOR");
        EXPECT_EQ(picker.Label1.caption, "STAGE AUX ANALOG");
        EXPECT_FALSE(picker.List2.visible);
        // The plain block is stored before the user is asked.
        EXPECT_EQ(rig.constant(20, 0), 40);
        picker.List1.listIndex = 1;
        picker.List1_Click();
        EXPECT_TRUE(picker.keyDown(Key::Escape));
    });
    EXPECT_TRUE(rig.fg2.edit(1, 1, "40"));
    EXPECT_EQ(rig.constant(20, 0), 40);
    EXPECT_EQ(rig.fg2.text(1, 2), "MAIN");
}

TEST(BlockInputs, AnEditOfTheOutputChoosesAgain) {
    WiringRig rig;
    rig.pickRow(1);
    EXPECT_TRUE(rig.fg2.edit(1, 1, "40"));
    rig.pickRow(2);
    EXPECT_TRUE(rig.fg2.edit(1, 2, "anything"));
    EXPECT_EQ(rig.constant(20, 0), 2 * 1024 + 40);
    EXPECT_EQ(rowOf(rig.fg2, 1), (Texts{"1", "40", "RUNNING", "FIRST", "STAGE", "A"}));
}

TEST(BlockInputs, AnEditOfTheNumberColumnEndsWithTheOutputsText) {
    WiringRig rig;
    rig.setConstant(20, 0, 1024 + 41);
    rig.pickRow(0);
    rig.clickBlock(20);
    EXPECT_TRUE(rig.fg2.edit(1, 0, "9"));
    EXPECT_EQ(rig.constant(20, 0), 41);
    EXPECT_EQ(rig.fg2.text(1, 0), "MAIN");
}

TEST(BlockInputs, OnlyInputCellsOfDescribedRowsTakeTyping) {
    WiringRig rig;
    for (int col = 0; col < 6; ++col) {
        rig.fg2.enterCell(1, col);
        EXPECT_EQ(rig.fg2.beginEdit(), col <= 2) << col;
        rig.fg2.cancelEdit();
    }
    EXPECT_FALSE(rig.fg2.edit(4, 1, "5"));
    rig.clickBlock(50);  // a NOP
    EXPECT_FALSE(rig.fg2.edit(1, 1, "5"));
}

TEST(BlockInputs, UpdateConstantStoresInTheCurrentRow) {
    WiringRig rig;
    rig.fg2.enterCell(3, 1);
    rig.panel.UpdateConstant(1065);
    EXPECT_EQ(rig.constant(20, 2), 1065);
}

TEST(BlockInputs, OnAReadOnlyFileTheEngineRefuses) {
    WiringRig rig;
    rig.reopenReadOnly();
    rig.clickBlock(20);
    rig.fg2.enterCell(1, 1);
    ASSERT_TRUE(rig.fg2.beginEdit());
    EXPECT_EQ(errorOf([&] { rig.fg2.commitEdit("5"); }), 3027);
    EXPECT_EQ(rig.constant(20, 0), 0);
}

TEST(BlockInputs, WiringSurvivesASave) {
    WiringRig rig;
    rig.pickRow(2);
    EXPECT_TRUE(rig.fg2.edit(2, 1, "40"));
    rig.save();
    rig.clickBlock(20);
    EXPECT_EQ(rowOf(rig.fg2, 2, 1), (Texts{"40", "STG2", "ENABLE FOR THE SECOND ADDEND OF ALL", "STAGE", "D"}));
}

// --- the picker by itself ---

TEST(frmAaboPick, ADoubleClickChoosesAndCloses) {
    WiringRig rig;
    rig.host.onModal("frmAaboPick", [](Form& form) {
        auto& picker = dynamic_cast<frmAaboPick&>(form);
        EXPECT_FALSE(picker.keyDown(Key::F5));
        picker.List1.listIndex = 1;
        picker.List1_DblClick();
    });
    EXPECT_TRUE(rig.fg2.edit(1, 1, "41"));
    EXPECT_EQ(rig.constant(20, 0), 1024 + 41);
    EXPECT_TRUE(rig.bench.PickedAnalog);
}

TEST(frmAaboPick, ItsCloseBoxIsEscape) {
    WiringRig rig;
    rig.host.onModal("frmAaboPick", [&rig](Form& form) {
        auto& picker = dynamic_cast<frmAaboPick&>(form);
        picker.List1.listIndex = 1;
        picker.List1_Click();
        EXPECT_TRUE(rig.host.close(form));
    });
    EXPECT_TRUE(rig.fg2.edit(1, 1, "41"));
    EXPECT_EQ(rig.constant(20, 0), 41);
}

TEST(frmAaboPick, EnterWithoutAChoiceIsTheFirstRow) {
    WiringRig rig;
    rig.host.onModal("frmAaboPick",
                     [](Form& form) { EXPECT_TRUE(dynamic_cast<frmAaboPick&>(form).keyDown(Key::Enter)); });
    EXPECT_TRUE(rig.fg2.edit(1, 1, "41"));
    EXPECT_EQ(rig.constant(20, 0), 41);
}

TEST(frmAaboPick, TheSecondListIsTheDiscreteOne) {
    OpenBlockRig rig;
    frmAaboPick& picker = rig.panel.picker;
    EXPECT_EQ(picker.caption, "Menu Picker");
    EXPECT_EQ(picker.Label1.caption, "Aux Analogs");
    EXPECT_EQ(picker.Label2.caption, "Aux Discretes");
    picker.List2 = ListBox{.items = {"No Selection", "A", "B"}, .listIndex = 2};
    rig.host.show(picker);
    picker.List2_DblClick();
    EXPECT_EQ(rig.bench.PickedOutput, 2);
    EXPECT_FALSE(rig.bench.PickedAnalog);
    EXPECT_FALSE(rig.host.isVisible(picker));
}

}  // namespace
}  // namespace qrv
