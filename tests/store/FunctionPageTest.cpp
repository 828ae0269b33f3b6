#include "store/FunctionPage.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/Files.h"
#include "store/CatalogueCodes.h"
#include "store/CatalogueText.h"

namespace qrv {
namespace {

constexpr std::size_t kMostBytes = 4 * 1024 * 1024;

const CatalogueText& shipped() {
    static const CatalogueText text = readCatalogueText(QRV_CATALOGUE_TEXT).text;
    return text;
}

TEST(FunctionPage, ShowsAFunctionWithAllItsParts) {
    CatalogueText text;
    text.groups = {{"loops", "Control loops", 2}};
    text.functions = {FunctionRow{.fn = 60,
                                  .name = "HOLD",
                                  .icycle = 4,
                                  .volRam = 1,
                                  .inputs = 2,
                                  .params = 3,
                                  .hidden = 1,
                                  .auxAnalogs = 1,
                                  .auxDiscretes = 1,
                                  .ftype = kAnalog,
                                  .group = "loops",
                                  .title = "Holds a value"}};
    text.inputs = {{.fn = 60, .number = 1, .description = "SIGNAL INPUT", .type = kAnalog},
                   {.fn = 60, .number = 2, .description = "HOLD INPUT", .type = kDiscrete}};
    text.params = {{.fn = 60,
                    .number = 1,
                    .description = "TIME, SECONDS",
                    .max = 600000,
                    .initial = 1500,
                    .decimal = 3,
                    .type = 1},
                   {.fn = 60, .number = 2, .description = "DECIMALS", .max = 4, .initial = 2, .type = 2},
                   {.fn = 60, .number = 3, .description = "FULL", .min = -100, .max = 32767, .initial = 5, .type = 4},
                   {.fn = 60, .number = 4, .description = "STORE", .type = 1}};
    text.auxOutputs = {{.fn = 60, .kind = "A", .ordinal = 1, .description = "VALUE LEFT", .shortText = "LEFT"},
                       {.fn = 60, .kind = "D", .ordinal = 1, .description = "HOLDING", .shortText = "HOLD"}};
    text.definitions = {{60,
                         "HOLD",
                         {{"Output", "Y = I1 and so on, for as long as it takes to fill the line and begin another."}},
                         "",
                         1}};
    EXPECT_EQ(renderedPage(text, text.functions.front()),
              "60 HOLD  Holds a value\n"
              "Control loops\n"
              "\n"
              "Main output  analog\n"
              "Slots        6 (2 inputs, 3 parameters, 1 hidden)\n"
              "Memory       4 words temporary, 1 byte retentive\n"
              "\n"
              "INPUTS\n"
              "  I1   A  SIGNAL INPUT\n"
              "  I2   D  HOLD INPUT\n"
              "\n"
              "PARAMETERS\n"
              "  P1   TIME, SECONDS  0.000 to 600.000, default 1.500\n"
              "  P2   DECIMALS       0 to 4, default 2\n"
              "  P3   FULL           -1.00 to 327.67, default 0.05\n"
              "  P4   STORE          hidden\n"
              "\n"
              "AUXILIARY OUTPUTS\n"
              "  A1   LEFT     VALUE LEFT\n"
              "  D1   HOLD     HOLDING\n"
              "\n"
              "Output\n"
              "  Y = I1 and so on, for as long as it takes to fill the line and begin another.\n");
}

TEST(FunctionPage, StringParameterShowsItsLength) {
    EXPECT_EQ(limitsShown(shipped(), *shipped().param(12, 1)), "text, at most 16 characters");
}

TEST(FunctionPage, EveryPageFitsEightyColumns) {
    for (const FunctionRow& function : shipped().functions) {
        const std::string page = renderedPage(shipped(), function);
        for (std::size_t start = 0, end = 0; start < page.size(); start = end + 1) {
            end = page.find('\n', start);
            EXPECT_LE(end - start, 80U) << page.substr(start, end - start);
        }
    }
}

TEST(FunctionPage, WrapsAtBlanksWithinTheWidth) {
    EXPECT_EQ(wrapped("one two three", 9, 2), "  one two\n  three\n");
    EXPECT_EQ(wrapped("incompressible", 5, 0), "incompressible\n");
}

class FunctionPages : public testing::Test {
 protected:
    /// What the build put beside the data file.
    const std::string pages_ =
        readWhole(std::string(QRV_CATALOGUE_DATA) + "/" + std::string(kFunctionPagesFile), kMostBytes).bytes;
};

TEST_F(FunctionPages, AreFoundByNumberAndByName) {
    const auto byNumber = functionPage(pages_, "43");
    ASSERT_TRUE(byNumber);
    EXPECT_TRUE(byNumber->starts_with("43 PID  PID controller\n"));
    EXPECT_EQ(functionPage(pages_, "PID"), byNumber);
    EXPECT_EQ(functionPage(pages_, "pid"), byNumber);
    EXPECT_EQ(*byNumber, renderedPage(shipped(), *shipped().function(43)));
}

TEST_F(FunctionPages, UnknownOnesAreAbsent) {
    EXPECT_FALSE(functionPage(pages_, "200"));
    EXPECT_FALSE(functionPage(pages_, "PI"));
    EXPECT_FALSE(functionPage(pages_, ""));
    EXPECT_FALSE(functionPage("", "43"));
}

TEST_F(FunctionPages, HeadingsStandInStoredOrder) {
    const std::vector<std::string> headings = functionHeadings(pages_);
    ASSERT_EQ(headings.size(), 128U);
    EXPECT_EQ(headings[0], "127 NOP  Empty block");
    EXPECT_EQ(headings[1], "0 ZERO  Constant zero per cent");
}

TEST(FunctionsDocument, IsInStepWithTheText) {
    const std::string committed = readWhole(QRV_FUNCTIONS_DOCUMENT, kMostBytes).bytes;
    EXPECT_TRUE(committed == functionsDocument(shipped()))
        << "build the target docs_functions and commit docs/functions.md";
}

TEST(FunctionsDocument, NoLineOfAFormulaBecomesAListItem) {
    const std::string document = functionsDocument(shipped());
    for (const char* item : {"\n- ", "\n+ ", "\n* ", "\n1. "})
        EXPECT_EQ(document.find(item), std::string::npos) << item;
}

TEST(FunctionsDocument, HasAnIndexByPurposeAndByNumberAndAnEntryForEach) {
    const std::string document = functionsDocument(shipped());
    for (const FunctionRow& function : shipped().functions) {
        const std::string number = std::to_string(function.fn);
        const std::string link = "[" + function.name + "](#f" + number + ")";
        EXPECT_NE(document.find("| " + link + " | " + number + " |"), std::string::npos) << function.name;
        EXPECT_NE(document.find("| " + number + " | " + link + " |"), std::string::npos) << function.name;
        EXPECT_NE(document.find("<a id=\"f" + number + "\"></a>\n### " + number + " " + function.name + "\n"),
                  std::string::npos)
            << function.name;
    }
}

}  // namespace
}  // namespace qrv
