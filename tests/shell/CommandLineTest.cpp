#include "shell/CommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qrv {
namespace {

struct TokenRow {
    const char* name;
    std::string tail;
    std::string token;
};

class FirstTokenTest : public testing::TestWithParam<TokenRow> {};

TEST_P(FirstTokenTest, IsTheFirstWord) { EXPECT_EQ(FirstToken(GetParam().tail), GetParam().token); }

INSTANTIATE_TEST_SUITE_P(Edges, FirstTokenTest,
                         testing::Values(TokenRow{"nothing", "", ""}, TokenRow{"blanks", "   ", ""},
                                         TokenRow{"oneWord", "a.qrv", "a.qrv"},
                                         TokenRow{"upToTheBlank", "my boiler.qrv", "my"},
                                         TokenRow{"blanksBefore", "  a.qrv b.qrv", "a.qrv"},
                                         TokenRow{"quotes", "\"my boiler.qrv\" rest", "my boiler.qrv"},
                                         TokenRow{"quotesAlone", "\"my boiler.qrv\"", "my boiler.qrv"},
                                         TokenRow{"noClosingMark", "\"my boiler.qrv rest", "my boiler.qrv rest"},
                                         TokenRow{"emptyQuotes", "\"\" a.qrv", ""}, TokenRow{"quoteAlone", "\"", ""},
                                         TokenRow{"quoteWithinAWord", "a\"b c\"", "a\"b"}),
                         [](const auto& row) { return row.param.name; });

struct TailRow {
    const char* name;
    std::vector<std::string> arguments;
    std::string tail;
};

class CommandTailTest : public testing::TestWithParam<TailRow> {};

TEST_P(CommandTailTest, GivesBackTheQuotes) { EXPECT_EQ(commandTail(GetParam().arguments), GetParam().tail); }

INSTANTIATE_TEST_SUITE_P(Edges, CommandTailTest,
                         testing::Values(TailRow{"none", {}, ""}, TailRow{"one", {"a.qrv"}, "a.qrv"},
                                         TailRow{"blankInside", {"my boiler.qrv"}, "\"my boiler.qrv\""},
                                         TailRow{"two", {"my boiler.qrv", "b"}, "\"my boiler.qrv\" b"}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace qrv
