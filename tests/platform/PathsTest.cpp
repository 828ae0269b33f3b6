#include "platform/Paths.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace qrv {
namespace {

TEST(Paths, PartAtBothMarks) {
    const std::tuple<const char*, const char*, const char*> kRows[] = {
        {"/a/b.qrv", "/a", "b.qrv"},
        {"C:\\jobs\\pump.qrv", "C:\\jobs", "pump.qrv"},
        {"/a\\b/c", "/a\\b", "c"},
        {"c.qrv", "", "c.qrv"},
        {"/c.qrv", "/", "c.qrv"},
        {"/a/", "/a", ""},
        {"", "", ""},
    };
    for (const auto& [path, folder, name] : kRows) {
        EXPECT_EQ(folderOf(path), folder) << path;
        EXPECT_EQ(fileNameOf(path), name) << path;
    }
}

TEST(Paths, AreCleanedOfDoubledAndMixedMarks) {
    EXPECT_EQ(withCleanSeparators("a\\b//c/"), "a/b/c");
    EXPECT_EQ(withCleanSeparators("/"), "/");
    EXPECT_EQ(withCleanSeparators("\\\\"), "/");
    EXPECT_EQ(withCleanSeparators(""), "");
    EXPECT_EQ(withoutEndSeparator("/a/b//"), "/a/b");
    EXPECT_EQ(withoutEndSeparator("//"), "/");
}

TEST(Paths, Join) {
    EXPECT_EQ(joinedPath("/a", "b"), "/a/b");
    EXPECT_EQ(joinedPath("/", "b"), "/b");
    EXPECT_EQ(joinedPath("", "b"), "b");
}

TEST(Paths, BecomeAbsolute) {
    const std::string here = std::filesystem::current_path().string();
    EXPECT_EQ(absolutePath("x.qrv"), joinedPath(here, "x.qrv"));
    EXPECT_EQ(absolutePath("./a/../x.qrv"), joinedPath(here, "x.qrv"));
    EXPECT_EQ(absolutePath("/a/b.qrv"), "/a/b.qrv");
    EXPECT_EQ(absolutePath(""), "");
}

}  // namespace
}  // namespace qrv
