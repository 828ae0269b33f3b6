#include "tools/ContentDifference.h"

#include <gtest/gtest.h>

#include "tools/ContentRig.h"

namespace qrv {
namespace {

using Lines = std::vector<std::string>;

Lines allLines(const ContentRig& a, const ContentRig& b) {
    Lines lines;
    for (const RowDifference& difference : differencesBetween(a.content, b.content)) {
        for (const std::string& line : linesOf(difference)) lines.push_back(line);
    }
    return lines;
}

TEST(ContentDifference, OfEqualContentIsNone) {
    const ContentRig a;
    const ContentRig b;
    EXPECT_EQ(allLines(a, b), Lines{});
}

TEST(ContentDifference, NamesTableKeyFieldAndBothValues) {
    ContentRig a;
    ContentRig b;
    a.addConstant(4, 2, 720);
    b.addConstant(4, 2, 725);
    b.field("Comments", 0, "Title") = std::string("Boiler house");
    b.field("Version", 0, "RevLevel") = 5.02F;
    EXPECT_EQ(allLines(a, b), (Lines{"Constants BlockNumber=4 Offset=2 ConstantValue: 720 -> 725",
                                     "Comments Title: \"\" -> \"Boiler house\"", "Version RevLevel: 5.01 -> 5.02"}));
}

TEST(ContentDifference, TellsEachFieldOfARowByItself) {
    ContentRig a;
    ContentRig b;
    b.field("Screen Items", 0, "Type") = 1;
    b.field("Screen Items", 0, "X") = 3;
    EXPECT_EQ(allLines(a, b), (Lines{"Screen Items ScreenNumber=1 Offset=1 X: nothing -> 3",
                                     "Screen Items ScreenNumber=1 Offset=1 Type: 99 -> 1"}));
    EXPECT_EQ(differenceCount(differencesBetween(a.content, b.content)), 2U);
}

TEST(ContentDifference, TellsRowsThatOneSideLacks) {
    ContentRig a;
    ContentRig b;
    a.addConstant(4, 0, 1);
    a.addConstant(4, 1, 2);
    b.addConstant(4, 1, 2);
    b.addConstant(5, 0, 3);
    EXPECT_EQ(allLines(a, b), (Lines{"Constants BlockNumber=4 Offset=0: only in A: ConstantValue=1",
                                     "Constants BlockNumber=5 Offset=0: only in B: ConstantValue=3"}));
    EXPECT_EQ(differenceCount(differencesBetween(a.content, b.content)), 2U);
}

TEST(ContentDifference, PairsRowsWithEqualKeysInTheirOrder) {
    ContentRig a;
    ContentRig b;
    const auto alarm = [](const char* text) {
        return TableRow{9, std::string(text), std::string(" "), std::string(" "), 0};
    };
    a.content.of("Alarm List").rows = {alarm("ONE"), alarm("TWO")};
    b.content.of("Alarm List").rows = {alarm("ONE"), alarm("THREE")};
    EXPECT_EQ(allLines(a, b), (Lines{"Alarm List BlockNumber=9 Description: \"TWO\" -> \"THREE\""}));
}

}  // namespace
}  // namespace qrv
