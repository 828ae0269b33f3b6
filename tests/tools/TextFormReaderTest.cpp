// What the text form's reader takes and what it refuses.
#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <tuple>
#include <utility>

#include "tools/TextForm.h"
#include "twins/Seed.h"

namespace qrv {
namespace {

const std::string kMark = "QRV configuration text, form 1\n";
const std::string kConstants = "[Constants]\n";

std::string refusalOf(const std::string& text) { return readTextForm(text, "plant.txt").refusal; }

TEST(TextFormReader, RowsWithEqualKeysKeepTheirOrder) {
    const TextFormResult result =
        readTextForm(kMark +
                         "[Alarm List]\n"
                         "BlockNumber=9 Description=\"B\" Event0=\"\" Event1=\"\" IsAlarm=true\n"
                         "BlockNumber=9 Description=\"A\" Event0=\"\" Event1=\"\" IsAlarm=true\n"
                         "BlockNumber=4 Description=\"C\" Event0=\"\" Event1=\"\" IsAlarm=false\n",
                     "plant.txt");
    ASSERT_EQ(result.refusal, "");
    const auto& rows = result.content->of("Alarm List").rows;
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_TRUE(rows[0][0] == Value{4});
    EXPECT_TRUE(rows[1][1] == Value{std::string("B")});
    EXPECT_TRUE(rows[2][1] == Value{std::string("A")});
}

TEST(TextFormReader, TakesWindowsLinesNotesBlankLinesAndFieldsInAnyOrder) {
    const TextFormResult result = readTextForm(
        "QRV configuration text, form 1\r\n\r\n# our plant\r\n[ConstantS]  \r\n"
        "  constantvalue=7\tOffset=0 BlockNumber=4 # note",
        "plant.txt");
    ASSERT_EQ(result.refusal, "");
    EXPECT_TRUE(result.content->of("Constants").rows == (std::vector<TableRow>{{4, 0, 7}}));
}

TEST(TextFormReader, ALeftOutFieldIsNull) {
    const TextFormResult result =
        readTextForm(kMark + "[Block EGUs]\nBlock=4 Param=0 GEGU=0 Decimal=1 Units=\"F\"\n", "plant.txt");
    ASSERT_EQ(result.refusal, "");
    EXPECT_TRUE(result.content->of("Block EGUs").rows ==
                (std::vector<TableRow>{{4, 0, 0, Value{}, Value{}, 1, std::string("F")}}));
}

TEST(TextFormReader, ANullMayBeWritten) {
    const TextFormResult result =
        readTextForm(kMark +
                         "[Block EGUs]\nBlock=4 Param=0 GEGU=null Zero=null Decimal=1 Units=null\n"
                         "[Comments]\nTitle=null Comment=\"null\" Config=null\n",
                     "plant.txt");
    ASSERT_EQ(result.refusal, "");
    EXPECT_TRUE(result.content->of("Block EGUs").rows ==
                (std::vector<TableRow>{{4, 0, Value{}, Value{}, Value{}, 1, Value{}}}));
    EXPECT_TRUE(result.content->of("Comments").rows ==
                (std::vector<TableRow>{{Value{}, std::string("null"), Value{}}}));
}

// Each of these ended the desktop's program at its first look at the row.
TEST(TextFormReader, RefusesALineWithoutWhatIsReadOfIt) {
    const std::tuple<const char*, const char*, const char*> kRows[] = {
        {"Comments", "Title=\"PLANT\"", "Comment"},
        {"Slots", "Offset=3", "Description"},
        {"Menu List", "MenuNumber=3 MenuTitle=\"X\"", "MenuCount"},
        {"Block List", "BlockNumber=4 FunctionNumber=127", "Constants"},
        {"Constants", "BlockNumber=4 Offset=0", "ConstantValue"},
        {"Alarm List", "BlockNumber=4 Description=\"A\" Event0=\"\" Event1=\"\"", "IsAlarm"},
        {"Screen Items", "ScreenNumber=1 Offset=1 X=5", "Type"},
        {"Pager", "Offset=1", "PagerInfo"},
        {"mod comm", "Baud=1 Length=1 Parity=1 Stop=1 Protocol=1", "Address"},
        {"Version", "RevLevel=5.01 Vtext=\"V\" Major=3", "Minor"},
        {"EGUs", "EGUID=4 Name=\"N\" Decimal=0 Zero=0 Units=\"\" Comment=\"\"", "Span"},
    };
    for (const auto& [table, line, missing] : kRows) {
        EXPECT_EQ(refusalOf(kMark + "[" + table + "]\n" + line + "\n"),
                  "plant.txt:3: " + std::string(missing) + " is missing.");
    }
}

TEST(TextFormReader, TakesALineWithoutWhatReadsAsNothing) {
    const std::pair<const char*, const char*> kRows[] = {
        {"Screen Items", "ScreenNumber=1 Offset=1 Type=99"},
        {"Menu List", "MenuNumber=3 MenuCount=0"},
        {"Chart List", "ChartNumber=1"},
        {"Screen List", "ScreenNumber=1 ScreenAlarm=false Password=1"},
        {"Block List", "BlockNumber=4 FunctionNumber=127 Constants=0 TempRam=0 VolRam=0"},
        {"Block EGUs", "Block=4 Param=0 GEGU=0 Decimal=1 Units=\"F\""},
    };
    for (const auto& [table, line] : kRows) EXPECT_EQ(refusalOf(kMark + "[" + table + "]\n" + line + "\n"), "");
}

struct RefusedText {
    const char* name;
    std::string body;  ///< behind the mark, which is line 1
    std::string refusal;
};
void PrintTo(const RefusedText& text, std::ostream* out) { *out << text.name; }

class RefusedTextFormTest : public testing::TestWithParam<RefusedText> {};

TEST_P(RefusedTextFormTest, NamesFileLineAndReason) {
    EXPECT_EQ(refusalOf(kMark + GetParam().body), GetParam().refusal);
}

INSTANTIATE_TEST_SUITE_P(
    Sections, RefusedTextFormTest,
    testing::Values(
        RefusedText{"unknownTable", "[Blocks]\n", "plant.txt:2: There is no table \"Blocks\"."},
        RefusedText{"sectionTwice", "[Slots]\n\n[slots]\n", "plant.txt:4: Table Slots has a section already."},
        RefusedText{"sectionWithMore", "[Slots] x\n",
                    "plant.txt:2: A section is a table's name in brackets and nothing else."},
        RefusedText{"bracketAlone", "[\n", "plant.txt:2: A section is a table's name in brackets and nothing else."},
        RefusedText{"rowWithoutSection", "\nOffset=1\n", "plant.txt:3: There is no [table] above this line."}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Fields, RefusedTextFormTest,
    testing::Values(
        RefusedText{"unknownField", kConstants + "Block=4\n", "plant.txt:3: Table Constants has no field \"Block\"."},
        RefusedText{"fieldTwice", kConstants + "Offset=0 BlockNumber=4 offset=1\n",
                    "plant.txt:3: offset stands twice."},
        RefusedText{"noField", kConstants + "hello\n", "plant.txt:3: \"hello\" is no Field=value."},
        RefusedText{"noteAlone", kConstants + "- # note\n", "plant.txt:3: There is no field."},
        RefusedText{"outOfRange", kConstants + "BlockNumber=4 Offset=0 ConstantValue=2147483648\n",
                    "plant.txt:3: ConstantValue must be a whole number from -2147483648 to 2147483647."},
        RefusedText{"noteWithoutBlank", kConstants + "BlockNumber=4#note\n",
                    "plant.txt:3: BlockNumber must be a whole number from -32768 to 32767."},
        RefusedText{"keyMissing", kConstants + "BlockNumber=4 ConstantValue=1\n", "plant.txt:3: Offset is missing."},
        RefusedText{"emptyString", "[ParmString]\nBlockNumber=4 Offset=0 Pstring=\"\"\n",
                    "plant.txt:3: Pstring must not be empty."},
        RefusedText{"stringThatBeginsWithCodeZero", "[ParmString]\nBlockNumber=4 Offset=0 Pstring=\"\\x00A\"\n",
                    "plant.txt:3: Pstring must not begin with \\x00."},
        RefusedText{"keyNull", kConstants + "BlockNumber=null Offset=0 ConstantValue=1\n",
                    "plant.txt:3: BlockNumber must not be null."},
        RefusedText{"pagerNumberNull", "[Pager]\nOffset=null PagerInfo=\"\"\n",
                    "plant.txt:3: Offset must not be null."},
        RefusedText{"functionNull", "[Block List]\nBlockNumber=4 FunctionNumber=null\n",
                    "plant.txt:3: FunctionNumber must not be null."},
        RefusedText{"longTitle", "[Comments]\nTitle=\"" + std::string(81, 'A') + "\"\n",
                    "plant.txt:3: Title must have at most 80 characters."},
        RefusedText{"unclosedText", "[Comments]\nTitle=\"A\n", "plant.txt:3: A text has no closing quote."},
        RefusedText{"backslashAtTheEnd", "[Comments]\nTitle=\"A\\", "plant.txt:3: A text has no closing quote."},
        RefusedText{"rawControl", "[Comments]\nTitle=\"A\tB\"\n",
                    "plant.txt:3: A text has a control character that isn't escaped."},
        RefusedText{"textsTogether", "[Comments]\nTitle=\"A\"Config=\"B\"\n",
                    "plant.txt:3: There is no blank behind the value of Title."}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Rows, RefusedTextFormTest,
    testing::Values(
        RefusedText{"rowTwice", kConstants + "BlockNumber=4 Offset=0 ConstantValue=1\nOffset=0 BlockNumber=4\n",
                    "plant.txt:4: Table Constants has the row BlockNumber=4 Offset=0 already."},
        RefusedText{"blockTooMany", "[Block List]\nBlockNumber=705 FunctionNumber=127\n",
                    "plant.txt:3: Table Block List can't have the row BlockNumber=705."},
        RefusedText{"blockWithoutFunction", "[Block List]\nBlockNumber=7\n", "plant.txt:3: FunctionNumber is missing."},
        RefusedText{"blockTakenAway", "[Block List]\n- BlockNumber=7\n",
                    "plant.txt:3: Table Block List can't do without the row BlockNumber=7."},
        RefusedText{"unknownRowTakenAway", kConstants + "- BlockNumber=4 Offset=0\n",
                    "plant.txt:3: A new file has no such row."},
        RefusedText{"rowTakenAwayAndGiven", "[Menu Items]\n- MenuNumber=0 Offset=1\nMenuNumber=0 Offset=1 Type=1\n",
                    "plant.txt:4: Table Menu Items has the row MenuNumber=0 Offset=1 already."},
        RefusedText{"moreThanTheKeyTakenAway", "[Menu Items]\n- MenuNumber=0 Offset=1 Type=1\n",
                    "plant.txt:3: Type has no place in a line that takes a row away."},
        RefusedText{"secondTitle",
                    "[Comments]\nTitle=\"A\" Comment=\"\" Config=\"\"\nTitle=\"B\" Comment=\"\" Config=\"\"\n",
                    "plant.txt:4: Table Comments has the row already."},
        RefusedText{"sixthPagerString", "[Pager]\nOffset=5 PagerInfo=\"\"\n",
                    "plant.txt:3: Table Pager can't have the row Offset=5."},
        RefusedText{"pagerStringTwice", "[Pager]\nOffset=1 PagerInfo=\"1\"\nOffset=1 PagerInfo=\"2\"\n",
                    "plant.txt:4: Table Pager has the row Offset=1 already."}),
    [](const auto& row) { return row.param.name; });

// Any bytes: a content, or a refusal that names file and line.
TEST(TextFormReader, TakesOrRefusesWhateverStandsInAText) {
    const std::string sound =
        kMark +
        "\n[Menu Items]\n- MenuNumber=0 Offset=2\nMenuNumber=0 Offset=3 Description=\"P\\\"\\x41\" Type=1\n"
        "\n[Constants]\nBlockNumber=4 Offset=0 ConstantValue=-7  # note\n"
        "\n[Version]\nRevLevel=5.01 Vtext=\"V\" Major=3 Minor=1\n";
    const auto seed = seedOfRun();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 60; ++round) {
        std::string text = sound;
        for (std::size_t change = 0; change <= static_cast<std::size_t>(round % 8); ++change) {
            // Behind the mark, which would be refused at once.
            const std::size_t place = kMark.size() + random() % (text.size() - kMark.size());
            text[place] = static_cast<char>(random() % 256);
            if (random() % 4 == 0) text.erase(place, random() % 5);
        }
        const TextFormResult result = readTextForm(text, "plant.txt");
        EXPECT_EQ(result.content.has_value(), result.refusal.empty()) << text;
        EXPECT_TRUE(result.content || result.refusal.starts_with("plant.txt:")) << text;
    }
}

TEST(TextFormReader, NeedsTheFirstLine) {
    const std::string reason = "plant.txt:1: The first line must be \"QRV configuration text, form 1\".";
    EXPECT_EQ(refusalOf(""), reason);
    EXPECT_EQ(refusalOf("QRV configuration text, form 2\n"), reason);
    EXPECT_EQ(refusalOf(kConstants), reason);
}

}  // namespace
}  // namespace qrv
