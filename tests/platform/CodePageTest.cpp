#include "platform/CodePage.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "twins/Seed.h"

namespace qrv {
namespace {

std::string bytes(std::initializer_list<int> values) {
    std::string result;
    for (const int value : values) result += static_cast<char>(value);
    return result;
}

struct CodeRow {
    const char* name;
    int byte;
    const char* utf8;
};

class CodePageRow : public testing::TestWithParam<CodeRow> {};

TEST_P(CodePageRow, StandsForItsCharacterBothWays) {
    const CodeRow& row = GetParam();
    EXPECT_EQ(toUtf8(bytes({row.byte})), row.utf8);
    EXPECT_EQ(fromUtf8(row.utf8), bytes({row.byte}));
    EXPECT_TRUE(fitsCodePage(row.utf8));
}

INSTANTIATE_TEST_SUITE_P(
    Edges, CodePageRow,
    testing::Values(CodeRow{"letterA", 0x41, "A"}, CodeRow{"lastAscii", 0x7F, "\x7F"},
                    CodeRow{"euro", 0x80, "\xE2\x82\xAC"}, CodeRow{"undefined81", 0x81, "\xC2\x81"},
                    CodeRow{"lowQuote", 0x82, "\xE2\x80\x9A"}, CodeRow{"florin", 0x83, "\xC6\x92"},
                    CodeRow{"undefined8D", 0x8D, "\xC2\x8D"}, CodeRow{"undefined8F", 0x8F, "\xC2\x8F"},
                    CodeRow{"undefined90", 0x90, "\xC2\x90"}, CodeRow{"undefined9D", 0x9D, "\xC2\x9D"},
                    CodeRow{"tradeMark", 0x99, "\xE2\x84\xA2"}, CodeRow{"capitalYDiaeresis", 0x9F, "\xC5\xB8"},
                    CodeRow{"noBreakSpace", 0xA0, "\xC2\xA0"}, CodeRow{"degree", 0xB0, "\xC2\xB0"},
                    CodeRow{"micro", 0xB5, "\xC2\xB5"}, CodeRow{"smallYDiaeresis", 0xFF, "\xC3\xBF"}),
    [](const auto& row) { return row.param.name; });

TEST(CodePage, MapsAll256BytesOneToOne) {
    std::set<std::string> seen;
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text = bytes({byte});
        const std::string utf8 = toUtf8(text);
        EXPECT_TRUE(seen.insert(utf8).second) << "byte " << byte;
        EXPECT_EQ(fromUtf8(utf8), text) << "byte " << byte;
    }
}

TEST(CodePage, KeepsZeroBytesAndLength) {
    EXPECT_EQ(fromUtf8(toUtf8(bytes({0x41, 0x00, 0x42}))), bytes({0x41, 0x00, 0x42}));
}

struct LossRow {
    const char* name;
    std::string utf8;
    const char* shown;
};

class CodePageLoss : public testing::TestWithParam<LossRow> {};

TEST_P(CodePageLoss, BecomesAQuestionMark) {
    EXPECT_EQ(fromUtf8(GetParam().utf8), GetParam().shown);
    EXPECT_FALSE(fitsCodePage(GetParam().utf8));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CodePageLoss,
    testing::Values(LossRow{"cyrillic", "a\xD0\x96z", "a?z"}, LossRow{"cjk", "\xE6\xBC\xA2", "?"},
                    LossRow{"emoji", "x\xF0\x9F\x98\x80y", "x?y"}, LossRow{"undefinedByTheTable", "\xC2\x80", "?"},
                    LossRow{"cutTwoByte", "ab\xC3", "ab?"}, LossRow{"cutThreeByte", "\xE2\x82", "??"},
                    LossRow{"loneContinuation", "a\x80z", "a?z"}, LossRow{"overlongSlash", "\xC0\xAF", "??"},
                    LossRow{"surrogate", "\xED\xA0\x80", "???"}, LossRow{"beyondUnicode", "\xF4\x90\x80\x80", "????"},
                    LossRow{"neverAByte", "\xFF\xFE", "??"}),
    [](const auto& row) { return row.param.name; });

TEST(CodePage, TakesAnyBytesAsUtf8WithoutHarm) {
    const auto seed = seedOfRun();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 20000; ++round) {
        std::string text(random() % 12, '\0');
        for (char& c : text) c = static_cast<char>(random());
        const std::string taken = fromUtf8(text);
        ASSERT_LE(taken.size(), text.size());
        ASSERT_EQ(fromUtf8(toUtf8(taken)), taken);
        ASSERT_EQ(toUtf8(taken) == text, fitsCodePage(text));
    }
}

TEST(CodePage, CapitalsFollowThePage) {
    EXPECT_EQ(upperCase("abcxyz 019 {}"), "ABCXYZ 019 {}");
    EXPECT_EQ(upperCase(bytes({0xE0, 0xFE, 0xF7, 0xD7, 0xDF, 0xB5})), bytes({0xC0, 0xDE, 0xF7, 0xD7, 0xDF, 0xB5}));
    EXPECT_EQ(upperCase(bytes({0x9A, 0x9C, 0x9E, 0xFF, 0x83})), bytes({0x8A, 0x8C, 0x8E, 0x9F, 0x83}));
    EXPECT_EQ(lowerCase(bytes({'Q', 'r', 0xC0, 0xDE, 0xD7, 0x8A, 0x9F})),
              bytes({'q', 'r', 0xE0, 0xFE, 0xD7, 0x9A, 0xFF}));
}

TEST(CodePage, ComparesNamesWithoutTheirCase) {
    EXPECT_TRUE(equalIgnoringCase("Level \xC4", "LEVEL \xE4"));
    EXPECT_TRUE(equalIgnoringCase("", ""));
    EXPECT_FALSE(equalIgnoringCase("LEVEL", "LEVELS"));
    EXPECT_FALSE(equalIgnoringCase("A", "B"));
}

TEST(CodePage, TrimsBlanksOnly) {
    EXPECT_EQ(trimmed("  a b  "), "a b");
    EXPECT_EQ(trimmed("   "), "");
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed("\t a\n "), "\t a\n");
    EXPECT_EQ(trimmed(bytes({' ', 0xA0, ' '})), bytes({0xA0}));
}

}  // namespace
}  // namespace qrv
