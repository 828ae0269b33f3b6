#include "platform/FileSettings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "twins/Seed.h"
#include "twins/TemporaryFolder.h"

namespace qrv {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

struct FileSettingsTest : testing::Test {
    void put(const std::string& text) { std::ofstream(path, std::ios::binary) << text; }
    [[nodiscard]] std::string content() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    TemporaryFolder folder;
    std::string path = folder.file("settings.ini");
    FileSettings settings{path};
};

using FileSettingsOf = FileSettingsTest;

TEST_F(FileSettingsOf, GiveTheFallbackWhereThereIsNothing) {
    EXPECT_EQ(settings.get("Communication Settings", "BaudRate", "38400"), "38400");
    EXPECT_EQ(settings.all("Recent Files"), Pairs{});
    EXPECT_FALSE(exists(path));
    EXPECT_EQ(settings.place(), path);
}

TEST_F(FileSettingsOf, AreReadableInTheFile) {
    settings.save("Recent Files", "RecentFile2", "/b.qrv");
    settings.save("Recent Files", "RecentFile1", "/jobs/Pump station.qrv");
    settings.save("Communication Settings", "CommPort", "3");
    EXPECT_EQ(content(),
              "[Communication Settings]\nCommPort=3\n\n[Recent Files]\nRecentFile1=/jobs/Pump station.qrv\n"
              "RecentFile2=/b.qrv\n");
    EXPECT_FALSE(settings.fault());
}

TEST_F(FileSettingsOf, AreThereForTheNextProgram) {
    settings.save("Recent Files", "RecentFile2", "b");
    settings.save("Recent Files", "RecentFile1", "a");
    settings.save("Recent Files", "RecentFile1", "c");
    settings.save("Other", "RecentFile1", "x");
    const FileSettings next(path);
    EXPECT_EQ(next.get("Recent Files", "RecentFile1", ""), "c");
    EXPECT_EQ(next.all("Recent Files"), (Pairs{{"RecentFile1", "c"}, {"RecentFile2", "b"}}));
}

TEST_F(FileSettingsOf, GoWhenRemoved) {
    settings.save("S", "a", "1");
    settings.save("S", "b", "2");
    settings.remove("S", "a");
    settings.remove("S", "never");
    EXPECT_EQ(settings.all("S"), (Pairs{{"b", "2"}}));
    EXPECT_EQ(settings.get("S", "a", "gone"), "gone");
}

TEST_F(FileSettingsOf, KeepAnEmptyValueApartFromNone) {
    settings.save("S", "a", "");
    EXPECT_EQ(settings.get("S", "a", "fallback"), "");
}

TEST_F(FileSettingsOf, KeepAnyText) {
    const auto seed = seedOfRun();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    std::vector<std::string> texts{" a ",
                                   "a=b",
                                   "[x]",
                                   "; no",
                                   "#no",
                                   "100%",
                                   "%41",
                                   "a\nb\r\n",
                                   "\xC3\xA4",
                                   "\xE4",
                                   std::string("z\0z", 3),
                                   "C:\\jobs\\a.qrv"};
    for (int i = 0; i < 60; ++i) {
        std::string text(1 + random() % 12, '\0');
        for (char& c : text) c = static_cast<char>(random());
        texts.push_back(text);
    }
    for (const std::string& text : texts) settings.save("section " + text, "key " + text, text);
    const FileSettings next(path);
    for (const std::string& text : texts) {
        EXPECT_EQ(next.get("section " + text, "key " + text, "lost"), text) << testing::PrintToString(text);
        EXPECT_EQ(next.all("section " + text), (Pairs{{"key " + text, text}}));
    }
}

TEST_F(FileSettingsOf, LoseOnlyTheDamagedLinesOfADamagedFile) {
    put("garbage\n[Recent Files]\r\n  RecentFile1 = /a.qrv  \r\n\xFF\xFE=bad\n=no key\n; RecentFile2=/no.qrv\n"
        "[unfinished\nRecentFile3=/c.qrv");
    EXPECT_EQ(settings.all("Recent Files"), (Pairs{{"RecentFile1", "/a.qrv"}, {"RecentFile3", "/c.qrv"}}));
    settings.save("Recent Files", "RecentFile4", "/d.qrv");
    EXPECT_EQ(content(), "[Recent Files]\nRecentFile1=/a.qrv\nRecentFile3=/c.qrv\nRecentFile4=/d.qrv\n");
}

TEST_F(FileSettingsOf, TakeAnyBytesAsAFileWithoutHarm) {
    const auto seed = seedOfRun();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const std::string letters("[]=%;# aF0\n\r\0\xFF", 15);
    for (int round = 0; round < 300; ++round) {
        std::string text(random() % 200, '\0');
        for (char& c : text) c = letters[random() % letters.size()];
        put(text);
        settings.save("S", "key", "value");
        ASSERT_EQ(settings.get("S", "key", ""), "value");
    }
}

TEST_F(FileSettingsOf, AreMadeWithTheirFolderForTheUserAlone) {
    FileSettings deep(folder.file("a/b/settings.ini"));
    deep.save("S", "k", "v");
    EXPECT_EQ(FileSettings(folder.file("a/b/settings.ini")).get("S", "k", ""), "v");
    struct stat state {};
    ASSERT_EQ(::stat(folder.file("a/b/settings.ini").c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 07777U, 0600U);
    std::filesystem::create_directory(folder.file("c"));
    FileSettings(folder.file("c/s.ini")).save("S", "k", "v");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.file("c")), {}), 1);
}

TEST_F(FileSettingsOf, HoldInTheProgramWhereTheFileCannotBeWritten) {
    put("[S]\nk=old\nother=1\n");
    ::chmod(path.c_str(), 0400);
    settings.save("S", "k", "new");
    settings.remove("S", "other");
    ASSERT_TRUE(settings.fault());
    EXPECT_EQ(settings.get("S", "k", ""), "new");
    EXPECT_EQ(settings.all("S"), (Pairs{{"k", "new"}}));
    EXPECT_EQ(content(), "[S]\nk=old\nother=1\n");
    ::chmod(path.c_str(), 0600);
    settings.save("S", "third", "3");
    EXPECT_FALSE(settings.fault());
    EXPECT_EQ(content(), "[S]\nk=new\nthird=3\n");
}

TEST_F(FileSettingsOf, DoNotWriteOverWhatCannotBeRead) {
    std::filesystem::create_directory(path);
    settings.save("S", "k", "v");
    EXPECT_TRUE(settings.fault());
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_EQ(settings.get("S", "k", ""), "v");
}

TEST_F(FileSettingsOf, OfTwoProgramsAtWorkAreAllKept) {
    constexpr int kPrograms = 4;
    constexpr int kKeys = 25;
    std::vector<pid_t> programs;
    for (int program = 0; program < kPrograms; ++program) {
        const pid_t child = ::fork();
        if (child != 0) {
            programs.push_back(child);
            continue;
        }
        FileSettings own(path);
        for (int i = 0; i < kKeys; ++i) own.save("S", std::to_string(program) + "-" + std::to_string(i), "v");
        ::_exit(own.fault() ? 1 : 0);
    }
    for (const pid_t program : programs) {
        int status = -1;
        ::waitpid(program, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(settings.all("S").size(), static_cast<std::size_t>(kPrograms * kKeys));
}

}  // namespace
}  // namespace qrv
