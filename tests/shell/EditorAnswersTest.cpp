#include "shell/EditorAnswers.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace qrv {
namespace {

std::optional<std::string> answerTo(const std::vector<std::string>& words) { return answerInTerminal(words, "Kit 1"); }

TEST(EditorAnswers, HelpTellsTheUsageTheEnvironmentAndTheFiles) {
    const auto help = answerTo({"--help"});
    ASSERT_TRUE(help);
    for (const char* words : {"\nUsage: qrv_edit [OPTIONS] [FILE]\n", "\n  QRV_EDIT_CLASSIC=1 ", "\n  QRV_SETTINGS ",
                              "\n  /tmp/QRVUploadLog.txt ", "\n  128+n "}) {
        EXPECT_NE(help->find(words), std::string::npos) << words;
    }
    EXPECT_EQ(answerTo({"-h"}), help);
}

TEST(EditorAnswers, WhatTheEnvironmentDoesStandsInOneColumn) {
    const auto help = answerTo({"--help"});
    ASSERT_TRUE(help);
    const std::size_t begin = help->find("\nEnvironment:\n");
    ASSERT_NE(begin, std::string::npos);
    std::istringstream lines(help->substr(begin, help->find("\n\n", begin) - begin));
    int found = 0;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("  ")) continue;
        ++found;
        ASSERT_GT(line.size(), 22U) << line;
        EXPECT_EQ(line.substr(20, 2), "  ") << line;
        EXPECT_NE(line[22], ' ') << line;
    }
    EXPECT_EQ(found, 7);
}

TEST(EditorAnswers, VersionsAreALineEach) {
    const auto versions = answerTo({"--version"});
    ASSERT_TRUE(versions);
    EXPECT_TRUE(versions->starts_with("qrv_edit 6.73\nFunction catalogue ")) << *versions;
    EXPECT_NE(versions->find("\nSQLite "), std::string::npos);
    EXPECT_TRUE(versions->ends_with("\nKit 1\n")) << *versions;
}

TEST(EditorAnswers, AnythingElseIsTheEditors) {
    EXPECT_FALSE(answerTo({}));
    EXPECT_FALSE(answerTo({"plant.qrv"}));
    EXPECT_FALSE(answerTo({"./--help"}));
    EXPECT_FALSE(answerTo({"plant.qrv", "--help"}));
}

}  // namespace
}  // namespace qrv
