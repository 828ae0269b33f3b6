#include "tools/HeldByController.h"

#include <gtest/gtest.h>

#include "tools/ContentRig.h"

namespace qrv {
namespace {

// In the shipped catalogue.
constexpr std::int32_t kOaReset = 12;  // three inputs, nine parameters, of which the first is a text; none hidden
constexpr std::int32_t kSchedule = 114;
constexpr std::int32_t kAnalogOutput = 81;  // one input, seven parameters, two hidden

/// Two configurations that begin equal: OARESET on block 10.
class Held : public testing::Test {
 protected:
    Held() {
        for (ContentRig* rig : {&file, &found}) {
            rig->place(10, kOaReset, 12);
            for (std::int32_t slot = 0; slot < 12; ++slot) rig->addConstant(10, slot, 0);
        }
        firstRow = file.content.of("Constants").rows.size() - 12;
    }
    Value& constant(ContentRig& rig, std::size_t slot) {
        return rig.field("Constants", firstRow + slot, "ConstantValue");
    }
    static void addString(ContentRig& rig, std::int32_t block, const std::string& text) {
        rig.content.of("ParmString").rows.push_back({block, std::int32_t{3}, text});
    }
    HeldDifferences differences() {
        for (ContentRig* rig : {&file, &found}) {
            for (TableContent& table : rig->content.tables) sortByKey(table);
        }
        return heldDifferences(file.content, found.content, file.catalogue);
    }
    void expect(std::size_t differing, std::size_t notHeld) {
        const HeldDifferences result = differences();
        EXPECT_EQ(differenceCount(result.differing), differing);
        EXPECT_EQ(result.notHeld, notHeld);
    }

    ContentRig file;
    ContentRig found;
    std::size_t firstRow = 0;
};

TEST_F(Held, EqualOnesDifferInNothing) { expect(0, 0); }

TEST_F(Held, InputsAndNumbersAreHeld) {
    constant(file, 0) = 600;
    constant(file, 4) = 1;
    const HeldDifferences result = differences();
    ASSERT_EQ(result.differing.size(), 2U);
    EXPECT_EQ(result.notHeld, 0U);
    EXPECT_EQ(linesOf(result.differing[0]),
              std::vector<std::string>{"Constants BlockNumber=10 Offset=0 ConstantValue: 600 -> 0"});
}

TEST_F(Held, ThePlaceOfATextHoldsNoNumber) {
    constant(file, 3) = 7;
    expect(0, 1);
}

TEST_F(Held, HiddenConstantsAreNotHeld) {
    for (ContentRig* rig : {&file, &found}) {
        rig->place(20, kAnalogOutput, 10);
        for (std::int32_t slot = 0; slot < 10; ++slot) rig->addConstant(20, slot, 0);
    }
    constant(file, 12 + 7) = 5;  // the last parameter
    constant(file, 12 + 8) = 5;  // the first hidden one
    expect(1, 1);
}

TEST_F(Held, CommentsAreNotHeld) {
    file.field("Block List", 10, "Comment") = std::string("Reset");
    file.field("Block List", 10, "VisioComment") = std::string("R");
    expect(0, 2);
}

TEST_F(Held, FunctionsAreHeldAndTheirConstantsWithThem) {
    found.place(10, kSchedule, 12);
    constant(found, 3) = 7;
    expect(2, 0);
}

TEST_F(Held, RowsTooManyAreShown) {
    found.addConstant(11, 0, 0);
    expect(1, 0);
}

TEST_F(Held, TextsAreHeld) {
    addString(file, 10, "RESET");
    addString(found, 10, "RESEX");
    expect(1, 0);
}

TEST_F(Held, ATextThatIsNotThereIsShown) {
    addString(file, 10, "RESET");
    const HeldDifferences result = differences();
    ASSERT_EQ(result.differing.size(), 1U);
    EXPECT_EQ(linesOf(result.differing[0], {.a = "the file", .b = "the controller"}),
              std::vector<std::string>{"ParmString BlockNumber=10 Offset=3: only in the file: Pstring=\"RESET\""});
}

TEST_F(Held, CharactersThatDoNotComeBackAreNotHeld) {
    addString(file, 10, "R\xC9SET\x7F");
    addString(found, 10, "RSET");
    expect(0, 1);
}

TEST_F(Held, ATextOfSuchCharactersAloneDoesNotComeBack) {
    addString(file, 10, "\xC9");
    expect(0, 1);
}

TEST_F(Held, BoardsFollowFromTheFunctions) {
    file.field("Slots", 1, "Description") = std::string("DISCRETE INPUT   610012");
    expect(0, 0);
}

TEST_F(Held, TablesOfNoSectionAreLeftOut) {
    file.field("Comments", 0, "Title") = std::string("Plant");
    expect(0, 0);
}

TEST_F(Held, SectionsThatWereNotChosenAreLeftOut) {
    constant(file, 0) = 600;
    EXPECT_TRUE(heldDifferences(file.content, found.content, file.catalogue, {"menus"}).differing.empty());
    EXPECT_EQ(heldDifferences(file.content, found.content, file.catalogue, {"blocks"}).differing.size(), 1U);
}

}  // namespace
}  // namespace qrv
