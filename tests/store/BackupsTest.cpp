#include "store/Backups.h"

#include <gtest/gtest.h>

#include <array>
#include <barrier>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "platform/Files.h"
#include "twins/TemporaryFolder.h"

namespace qrv {
namespace {

struct Shelf {
    Shelf() { write(work, "the work"); }

    static void write(const std::string& path, const std::string& bytes) { std::ofstream(path) << bytes; }
    [[nodiscard]] std::string keep(const std::string& original) const { return keepBackup(kept, work, original); }
    [[nodiscard]] std::vector<Backup> list() const { return backupsIn(kept); }

    TemporaryFolder folder;
    std::string work = folder.file("QRM0001.TMP");
    std::string kept = folder.file("state/kept");
};

TEST(Backups, AreWholeAndTellWhoseTheyAre) {
    Shelf shelf;
    const std::string copy = shelf.keep("/plant/boiler house.qrv");
    EXPECT_EQ(readWhole(copy, 100).bytes, "the work");
    EXPECT_EQ(readWhole(copy + ".from", 100).bytes, "/plant/boiler house.qrv");
    const auto list = shelf.list();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].path, copy);
    EXPECT_EQ(list[0].original, "/plant/boiler house.qrv");
    EXPECT_EQ(list[0].time.size(), std::string("2026-11-21 14:03:09").size());
}

TEST(Backups, OfTheSameFileGetNamesOfTheirOwn) {
    Shelf shelf;
    const std::string first = shelf.keep("/plant/a.qrv");
    const std::string second = shelf.keep("/plant/a.qrv");
    EXPECT_NE(first, second);
    EXPECT_EQ(shelf.list().size(), 2U);
}

TEST(Backups, OfProgramsThatEndTogetherAreAllKept) {
    constexpr std::size_t kPrograms = 8;
    constexpr int kRounds = 5;
    const Shelf shelf;
    std::barrier together(kPrograms);
    std::array<std::vector<std::string>, kPrograms> copies;
    std::vector<std::thread> programs;
    programs.reserve(kPrograms);
    for (std::size_t n = 0; n < kPrograms; ++n) {
        programs.emplace_back([&, n] {
            const std::string work = shelf.folder.file("work of " + std::to_string(n));
            Shelf::write(work, "the work of " + std::to_string(n));
            for (int round = 0; round < kRounds; ++round) {
                together.arrive_and_wait();
                copies.at(n).push_back(keepBackup(shelf.kept, work, "/plant " + std::to_string(n) + "/plant.qrv"));
            }
        });
    }
    for (std::thread& program : programs) program.join();
    for (std::size_t n = 0; n < kPrograms; ++n) {
        for (const std::string& copy : copies.at(n)) {
            EXPECT_EQ(readWhole(copy, 100).bytes, "the work of " + std::to_string(n)) << copy;
            EXPECT_EQ(readWhole(copy + ".from", 100).bytes, "/plant " + std::to_string(n) + "/plant.qrv") << copy;
        }
    }
    EXPECT_EQ(shelf.list().size(), 40U);
}

TEST(Backups, AreTheirUsersAlone) {
    const Shelf shelf;
    using std::filesystem::perms;
    std::filesystem::permissions(shelf.work, perms::owner_read | perms::owner_write | perms::others_read);
    const std::string copy = shelf.keep("/plant/a.qrv");
    EXPECT_EQ(std::filesystem::status(copy).permissions(), perms::owner_read | perms::owner_write);
    EXPECT_EQ(std::filesystem::status(copy + ".from").permissions(), perms::owner_read | perms::owner_write);
}

TEST(Backups, DoNotTakeTheNameOfAnothersNote) {
    const Shelf shelf;
    // A file without an ending, and one whose ending is that of a note.
    const std::string first = shelf.keep("/plant/a");
    const std::string second = shelf.keep("/plant/a.from");
    const std::string third = shelf.keep("/plant/a");
    for (const std::string& copy : {first, second, third}) EXPECT_EQ(readWhole(copy, 100).bytes, "the work") << copy;
    EXPECT_EQ(shelf.list().size(), 3U);
}

TEST(Backups, AreListedWithoutTheirNoteToo) {
    Shelf shelf;
    const std::string copy = shelf.keep("/plant/a.qrv");
    ASSERT_FALSE(removeFile(copy + ".from"));
    const auto list = shelf.list();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].original, "");
}

TEST(Backups, OfAFileNamedLikeANoteAreListed) {
    Shelf shelf;
    const std::string copy = shelf.keep("/plant/a.from");
    const auto list = shelf.list();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].path, copy);
    EXPECT_EQ(list[0].original, "/plant/a.from");
}

TEST(Backups, OfAHiddenFileAreListed) {
    Shelf shelf;
    const std::string copy = shelf.keep("/plant/.qrv");
    const auto list = shelf.list();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].path, copy);
}

TEST(Backups, ThatAKilledProgramDidNotFinishAreNotListed) {
    Shelf shelf;
    static_cast<void>(shelf.keep("/plant/a.qrv"));
    Shelf::write(shelf.kept + "/.qrv1234567.tmp", "the w");
    EXPECT_EQ(shelf.list().size(), 1U);
}

TEST(Backups, AreNoneWhereThereIsNoFolder) { EXPECT_TRUE(backupsIn("/nowhere at all").empty()); }

TEST(Backups, SayThatNothingWasKeptWhereTheFolderCannotBe) {
    Shelf shelf;
    EXPECT_EQ(keepBackup(shelf.work + "/below a file", shelf.work, "/plant/a.qrv"), "");
}

}  // namespace
}  // namespace qrv
