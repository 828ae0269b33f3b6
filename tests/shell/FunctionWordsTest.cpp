#include "shell/FunctionWords.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/Paths.h"
#include "store/FunctionPage.h"

namespace qrv {
namespace {

std::string inCapitals(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

/// "24 MIN2  Lower of two", in the order of the function list.
std::vector<std::string> headings() {
    const std::string file = joinedPath(QRV_CATALOGUE_FOLDER, kFunctionPagesFile);
    return functionHeadings(readWhole(file, 16U << 20U).bytes);
}

/// The place of a function among them; their count for none.
std::size_t placeOf(const std::vector<std::string>& all, std::string_view function) {
    const std::string part = " " + std::string(function) + "  ";
    return static_cast<std::size_t>(
        std::ranges::find_if(all,
                             [&part](const std::string& heading) { return heading.find(part) != std::string::npos; }) -
        all.begin());
}

TEST(FunctionWords, EveryRowIsAFunctionAndTheyStandInTheListsOrder) {
    const auto all = headings();
    std::size_t last = 0;
    for (const FunctionWords& row : allFunctionWords()) {
        const std::size_t place = placeOf(all, row.function);
        EXPECT_LT(place, all.size()) << row.function;
        EXPECT_TRUE(place > last || row.function == "NOP") << row.function;
        last = place;
    }
}

TEST(FunctionWords, NoneIsInNameOrSentenceAlready) {
    const auto all = headings();
    for (const FunctionWords& row : allFunctionWords()) {
        const std::size_t place = placeOf(all, row.function);
        ASSERT_LT(place, all.size()) << row.function;
        const std::string heading = inCapitals(all[place].substr(all[place].find(' ')));
        std::istringstream words{std::string(row.words)};
        for (std::string word; words >> word;) {
            EXPECT_EQ(heading.find(inCapitals(word)), std::string::npos) << row.function << ": " << word;
        }
    }
}

TEST(FunctionWords, AFunctionWithoutAnyHasNone) {
    EXPECT_EQ(wordsOfFunction("MIN2"), "minimum smaller select");
    EXPECT_EQ(wordsOfFunction("DRUM3"), "");
    EXPECT_EQ(wordsOfFunction("NO SUCH FUNCTION"), "");
}

}  // namespace
}  // namespace qrv
