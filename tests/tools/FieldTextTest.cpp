#include "tools/FieldText.h"

#include <gtest/gtest.h>

#include <ostream>

namespace qrv {
namespace {

constexpr Column kInteger{.name = "Offset", .type = ColumnType::Integer};
constexpr Column kLong{.name = "Zero", .type = ColumnType::Long};
constexpr Column kByte{.name = "X", .type = ColumnType::Byte};
constexpr Column kFlag{.name = "IsAlarm", .type = ColumnType::Boolean};
constexpr Column kSingle{.name = "Scale1", .type = ColumnType::Single};
constexpr Column kMemo{.name = "Comment", .type = ColumnType::Memo, .emptyAllowed = true};
constexpr Column kString{.name = "Pstring", .type = ColumnType::Text};
constexpr Column kTitle{.name = "Title", .type = ColumnType::Text, .emptyAllowed = true, .size = 80};

struct Field {
    const char* name;
    Column column;
    Value value;
    std::string written;
};
void PrintTo(const Field& field, std::ostream* out) { *out << field.name; }

class FieldTextTest : public testing::TestWithParam<Field> {};

TEST_P(FieldTextTest, IsWrittenSo) { EXPECT_EQ(fieldText(GetParam().column, GetParam().value), GetParam().written); }

TEST_P(FieldTextTest, IsReadBack) {
    const ParsedField field = parseField(GetParam().column, GetParam().written);
    EXPECT_EQ(field.refusal, "");
    EXPECT_TRUE(field.value == GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Values, FieldTextTest,
    testing::Values(Field{"leastInteger", kInteger, -32768, "-32768"},
                    Field{"greatestLong", kLong, 2147483647, "2147483647"}, Field{"byte", kByte, 255, "255"},
                    Field{"flagSet", kFlag, -1, "true"}, Field{"flagClear", kFlag, 0, "false"},
                    Field{"shortestFloat", kSingle, 5.01F, "5.01"}, Field{"wholeFloat", kSingle, 200.0F, "200"},
                    Field{"negativeFloat", kSingle, -0.5F, "-0.5"}, Field{"emptyText", kMemo, std::string(), "\"\""},
                    Field{"quoteAndBackslash", kMemo, std::string(R"(a "b" \c)"), R"("a \"b\" \\c")"},
                    Field{"lineBreaks", kMemo, std::string("one\r\ntwo\tthree"), R"("one\r\ntwo\tthree")"},
                    Field{"controls", kMemo, std::string("\x01\x1F\x7F"), R"("\x01\x1F\x7F")"},
                    Field{"nul", kMemo, std::string(1, '\0'), R"("\x00")"},
                    Field{"undefinedCode", kMemo, std::string("\x81\x9D"), R"("\x81\x9D")"},
                    Field{"euroAndDegree", kMemo, std::string("\x80 72\xB0"), "\"\u20AC 72\u00B0\""},
                    Field{"hash", kMemo, std::string("# no note"), "\"# no note\""}),
    [](const auto& row) { return row.param.name; });

struct Refused {
    const char* name;
    Column column;
    const char* written;
    const char* refusal;
};
void PrintTo(const Refused& refused, std::ostream* out) { *out << refused.name; }

class RefusedFieldTest : public testing::TestWithParam<Refused> {};

TEST_P(RefusedFieldTest, SaysWhy) {
    EXPECT_EQ(parseField(GetParam().column, GetParam().written).refusal, GetParam().refusal);
}

constexpr const char* kIntegerRule = "must be a whole number from -32768 to 32767";
constexpr const char* kLongRule = "must be a whole number from -2147483648 to 2147483647";
constexpr const char* kFloatRule = "must be a number that a 32-bit float can hold";
constexpr const char* kEscapeRule = R"(has a backslash that no ", \, n, r, t or x with two hexadecimal digits follows)";

INSTANTIATE_TEST_SUITE_P(
    Edges, RefusedFieldTest,
    testing::Values(Refused{"integerTooLarge", kInteger, "32768", kIntegerRule},
                    Refused{"fraction", kInteger, "1.5", kIntegerRule}, Refused{"noDigits", kInteger, "", kIntegerRule},
                    Refused{"longTooSmall", kLong, "-2147483649", kLongRule},
                    Refused{"beyondAnyNumber", kLong, "99999999999999999999", kLongRule},
                    Refused{"byteNegative", kByte, "-1", "must be a whole number from 0 to 255"},
                    Refused{"flagAsNumber", kFlag, "-1", "must be true or false"},
                    Refused{"floatTooLarge", kSingle, "1e39", kFloatRule},
                    Refused{"notANumber", kSingle, "nan", kFloatRule}, Refused{"infinite", kSingle, "inf", kFloatRule},
                    Refused{"bareText", kMemo, "abc", "must be a text in double quotes"},
                    Refused{"unclosed", kMemo, "\"", "must be a text in double quotes"},
                    Refused{"mustNotBeEmpty", kString, "\"\"", "must not be empty"},
                    Refused{"unknownEscape", kMemo, R"("\q")", kEscapeRule},
                    Refused{"halfAnEscape", kMemo, R"("\x4")", kEscapeRule},
                    Refused{"beyondTheCodePage", kMemo, "\"\u03A9\"", "has a character that a controller can't show"},
                    Refused{"notUtf8", kMemo, "\"\xB0\"", "has a character that a controller can't show"}),
    [](const auto& row) { return row.param.name; });

TEST(FieldText, ATitleOfEightyOneCharactersIsRefused) {
    EXPECT_EQ(parseField(kTitle, '"' + std::string(80, 'A') + '"').refusal, "");
    EXPECT_EQ(parseField(kTitle, '"' + std::string(81, 'A') + '"').refusal, "must have at most 80 characters");
    // Characters of the controller are counted, not bytes of the text.
    std::string degrees;
    for (int i = 0; i < 80; ++i) degrees += "\u00B0";
    EXPECT_EQ(parseField(kTitle, '"' + degrees + '"').refusal, "");
}

TEST(FieldText, EveryByteOfTheCodePageComesBack) {
    std::string all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    const ParsedField field = parseField(kMemo, quotedText(all));
    ASSERT_EQ(field.refusal, "");
    EXPECT_EQ(std::get<std::string>(field.value), all);
}

}  // namespace
}  // namespace qrv
