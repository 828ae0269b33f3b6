#include "platform/Paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <utility>

#include "twins/TemporaryFolder.h"

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
    EXPECT_EQ(absolutePath("./x.qrv"), joinedPath(here, "x.qrv"));
    EXPECT_EQ(absolutePath("/a/b.qrv"), "/a/b.qrv");
    EXPECT_EQ(absolutePath("/../a//./b.qrv"), "/a/b.qrv");
    EXPECT_EQ(absolutePath(""), "");
}

TEST(Paths, LeaveAFolderAsTheSystemDoes) {
    const TemporaryFolder folder;
    const std::string here = std::filesystem::canonical(folder.path()).string();
    std::filesystem::create_directories(here + "/real/deep");
    std::filesystem::create_directories(here + "/desk/plain");
    std::filesystem::create_directory_symlink(here + "/real/deep", here + "/desk/link");
    std::filesystem::create_directory_symlink("link", here + "/desk/second");
    std::filesystem::create_directory_symlink("nowhere", here + "/desk/dangling");
    std::ofstream(here + "/desk/file.qrv") << "x";
    const std::pair<const char*, const char*> kRows[] = {
        {"desk/link/../x.qrv", "real/x.qrv"},
        {"desk/second/../x.qrv", "real/x.qrv"},
        {"desk/link/../deep/../x.qrv", "real/x.qrv"},
        {"desk/link/../../desk/x.qrv", "desk/x.qrv"},
        {"desk/plain/../x.qrv", "desk/x.qrv"},
        {"desk/link/x.qrv", "desk/link/x.qrv"},
        {"desk/link/./x.qrv", "desk/link/x.qrv"},
        // There the system finds nothing, and it must not find another file.
        {"desk/none/../file.qrv", "desk/none/../file.qrv"},
        {"desk/none/../../file.qrv", "desk/none/../../file.qrv"},
        {"desk/dangling/../file.qrv", "desk/dangling/../file.qrv"},
        {"desk/file.qrv/../file.qrv", "desk/file.qrv/../file.qrv"},
    };
    for (const auto& [path, expected] : kRows) {
        EXPECT_EQ(absolutePath(joinedPath(here, path)), joinedPath(here, expected)) << path;
    }
}

}  // namespace
}  // namespace qrv
