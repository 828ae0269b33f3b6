#include "store/LifeCycle.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "LifeCycleRig.h"
#include "platform/Files.h"
#include "platform/RunTimeError.h"
#include "store/Backups.h"
#include "store/Sqlite.h"

namespace qrv {

using test::modeOf;
using test::writeText;
using Rig = test::LifeCycleRig;

namespace {

namespace fs = std::filesystem;

constexpr const char* kFilter = "QRV Configuration Database (*.qrv;*.mdb)|*.qrv;*.mdb";

TEST(LifeCycle, OpensAWorkCopyAndFillsTheGlobals) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    std::string recent;
    int shown = 0;
    rig.bench.windows.addRecentFile = [&](const std::string& path) { recent = path; };
    rig.bench.windows.showOpened = [&] { ++shown; };
    OpenConfiguration(rig.bench, file);
    EXPECT_EQ(rig.bench.CurrentFileName, file);
    EXPECT_EQ(rig.bench.TitleText, "QRV Edit - " + file);
    EXPECT_TRUE(rig.bench.FileIsOpen);
    EXPECT_FALSE(rig.bench.IsReadOnlyFile);
    EXPECT_EQ(recent, file);
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(rig.bench.FnOfBlock[2], 90);
    EXPECT_EQ(rig.bench.FnOfBlock[704], 127);
    ASSERT_EQ(rig.workFiles().size(), 1U);
    EXPECT_EQ(rig.bench.WorkFileName, rig.bench.places.work + "/" + rig.workFiles()[0]);
    EXPECT_EQ(rig.workFiles()[0].substr(0, 3), "QRM");
    EXPECT_EQ(modeOf(rig.bench.WorkFileName) & 077, 0U);
}

TEST(LifeCycle, YesWritesTheWorkToTheUsersFileAndDeletesIt) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    OpenConfiguration(rig.bench, file);
    rig.setTitle("boiler house");
    EXPECT_TRUE(CloseConfiguration(rig.bench, Answer::Yes));
    EXPECT_TRUE(rig.workFiles().empty());
    EXPECT_EQ(rig.titleIn(file), "boiler house");
}

TEST(LifeCycle, NoLeavesTheUsersFileAsItWas) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    const std::string before = readWhole(file, 1 << 24).bytes;
    OpenConfiguration(rig.bench, file);
    rig.setTitle("boiler house");
    bool stored = false;
    rig.bench.windows.storeBoardTexts = [&] { stored = true; };
    CloseConfiguration(rig.bench, Answer::No);
    EXPECT_TRUE(stored);
    EXPECT_TRUE(rig.workFiles().empty());
    EXPECT_EQ(readWhole(file, 1 << 24).bytes, before);
}

TEST(LifeCycle, EachOpenUsesANewWorkName) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    OpenConfiguration(rig.bench, file);
    const std::string first = rig.bench.WorkFileName;
    CloseConfiguration(rig.bench, Answer::Yes);
    OpenConfiguration(rig.bench, file);
    EXPECT_NE(rig.bench.WorkFileName, first);
}

TEST(LifeCycle, AReadOnlyFileIsToldInTheTitleAndNeverWritten) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    const std::string before = readWhole(file, 1 << 24).bytes;
    ASSERT_FALSE(setReadOnly(file, true));
    OpenConfiguration(rig.bench, file);
    EXPECT_TRUE(rig.bench.IsReadOnlyFile);
    EXPECT_EQ(rig.bench.TitleText, "QRV Edit - " + file + " - READ ONLY");
    rig.bench.windows.storeBoardTexts = [&] { rig.bench.db.SlotEdit(); };
    CloseConfiguration(rig.bench, Answer::Yes);
    EXPECT_TRUE(rig.workFiles().empty());
    EXPECT_EQ(readWhole(file, 1 << 24).bytes, before);
    EXPECT_TRUE(backupsIn(rig.bench.places.backups).empty());
}

TEST(LifeCycle, ASymbolicLinkKeepsPointingAndTheModeIsKept) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    ASSERT_EQ(chmod(file.c_str(), 0664), 0);
    const std::string link = rig.path("link.qrv");
    fs::create_symlink(file, link);
    OpenConfiguration(rig.bench, link);
    rig.setTitle("through the link");
    CloseConfiguration(rig.bench, Answer::Yes);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(modeOf(file), 0664U);
    EXPECT_EQ(rig.titleIn(file), "through the link");
}

TEST(LifeCycle, APathLeadsWhereTheSystemIsLedByIt) {
    Rig rig;
    fs::create_directories(rig.path("real/deep"));
    fs::create_directories(rig.path("desk"));
    fs::create_directory_symlink(rig.path("real/deep"), rig.path("desk/link"));
    const std::string meant = rig.configuration("real/x.qrv");
    const std::string other = rig.configuration("desk/x.qrv");
    const std::string untouched = readWhole(other, 1 << 24).bytes;
    std::string recent;
    rig.bench.windows.addRecentFile = [&](const std::string& path) { recent = path; };
    ASSERT_TRUE(openByName(rig.bench, rig.path("desk/link/../x.qrv")));
    const std::string real = fs::canonical(meant).string();
    EXPECT_EQ(rig.bench.CurrentFileName, real);
    EXPECT_EQ(rig.bench.TitleText, "QRV Edit - " + real);
    EXPECT_EQ(recent, real);
    rig.setTitle("the one that was meant");
    CloseConfiguration(rig.bench, Answer::Yes);
    EXPECT_EQ(rig.titleIn(meant), "the one that was meant");
    EXPECT_EQ(readWhole(other, 1 << 24).bytes, untouched);
}

TEST(LifeCycle, ANewFileIsMadeWhereTheSystemIsLedByItsPath) {
    Rig rig;
    fs::create_directories(rig.path("real/deep"));
    fs::create_directory_symlink(rig.path("real/deep"), rig.path("link"));
    rig.dialogs.answer(rig.path("link/../new.qrv"));
    ASSERT_TRUE(newFileDialog(rig.bench));
    EXPECT_EQ(rig.bench.CurrentFileName, fs::canonical(rig.path("real/new.qrv")).string());
    EXPECT_FALSE(exists(rig.path("new.qrv")));
}

TEST(LifeCycle, ABlockWithoutAFunctionIsRefusedInOneSentence) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    Sqlite(file, Sqlite::Mode::ReadWrite)
        .execute("UPDATE [Block List] SET FunctionNumber = NULL WHERE BlockNumber = 5");
    std::string said;
    try {
        OpenConfiguration(rig.bench, file);
    } catch (const RunTimeError& error) {
        said = error.description();
    }
    EXPECT_EQ(said, file + " is damaged: row 6 of table Block List has a FunctionNumber that must not be null.");
    EXPECT_TRUE(rig.workFiles().empty());
}

TEST(LifeCycle, AFileThatIsBeingOpenedIsNoWorkOnTheOneBefore) {
    Rig rig;
    OpenConfiguration(rig.bench, rig.configuration("a.qrv"));
    CloseConfiguration(rig.bench, Answer::No);
    const std::string older = rig.configuration("b.qrv");
    bool isReached = false;
    rig.bench.windows.loadBoardTexts = [&] {
        isReached = true;
        // The machine goes down now.
        rig.setTitle("an upgrade");
        EXPECT_EQ(KeepUnsavedWork(rig.bench), "");
    };
    OpenConfiguration(rig.bench, older);
    EXPECT_TRUE(isReached);
    EXPECT_TRUE(backupsIn(rig.bench.places.backups).empty());
}

TEST(LifeCycle, WhereNobodyCanBeAskedUnsavedWorkIsKept) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    OpenConfiguration(rig.bench, file);
    rig.setTitle("not lost");
    const std::string copy = KeepUnsavedWork(rig.bench);
    const auto kept = backupsIn(rig.bench.places.backups);
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept[0].path, copy);
    EXPECT_EQ(kept[0].original, file);
    EXPECT_EQ(rig.titleIn(copy), "not lost");
    EXPECT_EQ(rig.titleIn(file), "");
    EXPECT_TRUE(rig.workFiles().empty());
    EXPECT_FALSE(rig.bench.FileIsOpen);
    EXPECT_EQ(KeepUnsavedWork(rig.bench), "");
}

TEST(LifeCycle, WhereNobodyCanBeAskedSavedWorkLeavesNoCopy) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    OpenConfiguration(rig.bench, file);
    EXPECT_EQ(KeepUnsavedWork(rig.bench), "");
    EXPECT_TRUE(backupsIn(rig.bench.places.backups).empty());
    EXPECT_TRUE(rig.workFiles().empty());
}

TEST(LifeCycle, WhereNobodyCanBeAskedHalfAnUploadIsNoWork) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    OpenConfiguration(rig.bench, file);
    rig.bench.isHalfUploaded = true;
    rig.setTitle("of the controller's, half of it");
    EXPECT_EQ(KeepUnsavedWork(rig.bench), "");
    EXPECT_TRUE(backupsIn(rig.bench.places.backups).empty());
    EXPECT_TRUE(rig.workFiles().empty());
    EXPECT_EQ(rig.titleIn(file), "");
}

TEST(LifeCycle, WhereNobodyCanBeAskedTheBoardsNamesAreKeptToo) {
    Rig rig;
    OpenConfiguration(rig.bench, rig.configuration("a.qrv"));
    rig.bench.windows.storeBoardTexts = [&rig] { rig.setTitle("the boards' names"); };
    rig.setTitle("a change");
    EXPECT_EQ(rig.titleIn(KeepUnsavedWork(rig.bench)), "the boards' names");
}

TEST(LifeCycle, WhereNobodyCanBeAskedAndAFileIsJustClosedNothingIsKept) {
    Rig rig;
    OpenConfiguration(rig.bench, rig.configuration("a.qrv"));
    CloseConfiguration(rig.bench, Answer::No);
    EXPECT_EQ(KeepUnsavedWork(rig.bench), "");
    EXPECT_TRUE(backupsIn(rig.bench.places.backups).empty());
}

TEST(LifeCycle, WhereNobodyCanBeAskedAndNoCopyCanBeKeptTheWorkFileStays) {
    Rig rig;
    OpenConfiguration(rig.bench, rig.configuration("a.qrv"));
    rig.setTitle("not lost");
    writeText(rig.bench.places.backups, "a file where the folder should be");
    const std::string copy = KeepUnsavedWork(rig.bench);
    EXPECT_EQ(copy, rig.bench.WorkFileName);
    EXPECT_EQ(rig.titleIn(copy), "not lost");
}

TEST(LifeCycle, AnUnsavableWorkIsKeptAsABackup) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    OpenConfiguration(rig.bench, file);
    rig.setTitle("not lost");
    ASSERT_FALSE(setReadOnly(file, true));
    EXPECT_FALSE(CloseConfiguration(rig.bench, Answer::Yes));
    EXPECT_TRUE(rig.workFiles().empty());
    const auto kept = backupsIn(rig.bench.places.backups);
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept[0].original, file);
    EXPECT_EQ(rig.titleIn(kept[0].path), "not lost");
    EXPECT_EQ(modeOf(rig.bench.places.backups), 0700U);
}

TEST(LifeCycle, TheWorkStaysWhereItIsWhenItCanBeKeptNowhereElse) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    OpenConfiguration(rig.bench, file);
    ASSERT_FALSE(setReadOnly(file, true));
    writeText(rig.bench.places.backups, "a file where the folder should be");
    CloseConfiguration(rig.bench, Answer::Yes);
    EXPECT_TRUE(exists(rig.bench.WorkFileName));
}

TEST(LifeCycle, NewAsksForANameAndOpensTheFile) {
    Rig rig;
    rig.dialogs.answer(rig.path("new.qrv"));
    EXPECT_TRUE(newFileDialog(rig.bench));
    EXPECT_TRUE(rig.bench.DialogResultOpen);
    EXPECT_TRUE(rig.bench.FileIsOpen);
    EXPECT_EQ(rig.bench.CurrentFileName, rig.path("new.qrv"));
    EXPECT_EQ(rig.dialogs.asked.at(0),
              (FileQuestion{.kind = FileDialogKind::Save, .filter = kFilter, .initialName = "", .title = ""}));
}

TEST(LifeCycle, ACancelledNewDoesNothing) {
    Rig rig;
    rig.bench.FileIsOpen = true;
    rig.dialogs.answer("");
    EXPECT_FALSE(newFileDialog(rig.bench));
    EXPECT_FALSE(rig.bench.DialogResultOpen);
    EXPECT_FALSE(rig.bench.FileIsOpen);
}

TEST(LifeCycle, NewAsksBeforeItReplaces) {
    Rig rig;
    const std::string file = rig.path("old.qrv");
    writeText(file, "precious");
    const Notice question{.text = "Replace " + file + "\n" + file + " Already Exists", .buttons = Buttons::YesNo};
    rig.dialogs.answer(file);
    rig.boxes.expect(question, Answer::No);
    EXPECT_FALSE(newFileDialog(rig.bench));
    EXPECT_EQ(readWhole(file, 100).bytes, "precious");
    rig.dialogs.answer(file);
    rig.boxes.expect(question, Answer::Yes);
    EXPECT_TRUE(newFileDialog(rig.bench));
    EXPECT_EQ(rig.bench.db.CommentTitle(), "");
}

TEST(LifeCycle, OpenSaysThatAFileDoesNotExist) {
    Rig rig;
    rig.dialogs.answer(rig.path("none.qrv"));
    rig.boxes.expect(rig.path("none.qrv") + " Does Not Exist");
    EXPECT_FALSE(openFileDialog(rig.bench));
    EXPECT_FALSE(rig.bench.DialogResultOpen);
    rig.dialogs.answer("");
    EXPECT_FALSE(openFileDialog(rig.bench));
    EXPECT_EQ(rig.dialogs.asked.at(0).kind, FileDialogKind::Open);
}

TEST(LifeCycle, OpenMakesRelativePathsAbsolute) {
    Rig rig;
    rig.configuration("a.qrv");
    const fs::path before = fs::current_path();
    fs::current_path(rig.folder.path());
    EXPECT_TRUE(openByName(rig.bench, "a.qrv"));
    fs::current_path(before);
    EXPECT_EQ(rig.bench.CurrentFileName, rig.path("a.qrv"));
}

TEST(LifeCycle, GetMdbNameOpensNothing) {
    Rig rig;
    rig.dialogs.answer(rig.path("b.qrv"));
    EXPECT_EQ(GetMDBName(rig.bench), rig.path("b.qrv"));
    EXPECT_FALSE(rig.bench.FileIsOpen);
}

TEST(LifeCycle, SaveAsUnderTheOwnNameIsASave) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    OpenConfiguration(rig.bench, file);
    rig.dialogs.answer("");
    EXPECT_EQ(saveConfigurationAs(rig.bench), SaveAsResult::SameName);
    rig.dialogs.answer(file);
    EXPECT_EQ(saveConfigurationAs(rig.bench), SaveAsResult::SameName);
    EXPECT_EQ(rig.dialogs.asked.at(0).initialName, file);
}

TEST(LifeCycle, SaveAsAsksAndOpensTheNewFile) {
    Rig rig;
    OpenConfiguration(rig.bench, rig.configuration("a.qrv"));
    rig.setTitle("moved");
    const std::string target = rig.path("b.qrv");
    writeText(target, "old");
    const Notice question{.text = target + " already exists.\nDo you want to replace it?",
                          .title = "Save AS",
                          .buttons = Buttons::YesNo,
                          .icon = Icon::Warning};
    rig.dialogs.answer(target);
    rig.boxes.expect(question, Answer::No);
    EXPECT_EQ(saveConfigurationAs(rig.bench), SaveAsResult::Nothing);
    EXPECT_EQ(readWhole(target, 100).bytes, "old");
    rig.dialogs.answer(target);
    rig.boxes.expect(question, Answer::Yes);
    EXPECT_EQ(saveConfigurationAs(rig.bench), SaveAsResult::Saved);
    EXPECT_EQ(rig.bench.CurrentFileName, target);
    EXPECT_EQ(rig.bench.db.CommentTitle(), "moved");
    EXPECT_EQ(rig.workFiles().size(), 1U);
}

TEST(LifeCycle, SaveAsOfAReadOnlyFileIsReadOnlyOntoAnExistingFileToo) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    ASSERT_FALSE(setReadOnly(file, true));
    OpenConfiguration(rig.bench, file);
    const std::string target = rig.path("b.qrv");
    writeText(target, "old");
    rig.dialogs.answer(target);
    rig.boxes.expect({.text = target + " already exists.\nDo you want to replace it?",
                      .title = "Save AS",
                      .buttons = Buttons::YesNo,
                      .icon = Icon::Warning},
                     Answer::Yes);
    EXPECT_EQ(saveConfigurationAs(rig.bench), SaveAsResult::Saved);
    EXPECT_TRUE(isReadOnly(target));
    EXPECT_TRUE(rig.bench.IsReadOnlyFile);
}

TEST(LifeCycle, ANewFileIsAsOpenToOthersAsTheUsersFilesAre) {
    Rig rig;
    const mode_t before = umask(022);
    rig.configuration("a.qrv");
    umask(before);
    EXPECT_EQ(modeOf(rig.path("a.qrv")), 0644U);
}

TEST(LifeCycle, SaveAsDoesNotWriteTheBoardTexts) {
    Rig rig;
    OpenConfiguration(rig.bench, rig.configuration("a.qrv"));
    rig.bench.windows.storeBoardTexts = [] { FAIL() << "the board texts were stored"; };
    rig.dialogs.answer(rig.path("b.qrv"));
    EXPECT_EQ(saveConfigurationAs(rig.bench), SaveAsResult::Saved);
    rig.bench.windows.storeBoardTexts = [] {};
}

TEST(LifeCycle, ASaveAsThatFailsKeepsTheWorkAndSaysWhy) {
    Rig rig;
    OpenConfiguration(rig.bench, rig.configuration("a.qrv"));
    rig.setTitle("not lost");
    const std::string target = rig.path("missing folder/b.qrv");
    rig.dialogs.answer(target);
    try {
        static_cast<void>(saveConfigurationAs(rig.bench));
        FAIL() << "saved";
    } catch (const RunTimeError& error) {
        EXPECT_NE(error.description().find(target), std::string::npos);
    }
    const auto kept = backupsIn(rig.bench.places.backups);
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(rig.titleIn(kept[0].path), "not lost");
}

TEST(LifeCycle, AnOldFileStaysOldUntilASave) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    {
        Sqlite old(file, Sqlite::Mode::ReadWrite);
        old.execute("DROP TABLE Pager");
    }
    const std::string before = readWhole(file, 1 << 24).bytes;
    rig.boxes.expect("no pager table");
    OpenConfiguration(rig.bench, file);
    EXPECT_EQ(readWhole(file, 1 << 24).bytes, before);
    CloseConfiguration(rig.bench, Answer::Yes);
    OpenConfiguration(rig.bench, file);
}

struct Foreign {
    const char* name;
    void (*make)(const std::string& path);
};

class LifeCycleForeign : public testing::TestWithParam<Foreign> {};

TEST_P(LifeCycleForeign, IsRefusedAndNothingIsLeftBehind) {
    Rig rig;
    const std::string file = rig.path("x.qrv");
    GetParam().make(file);
    const auto before = rig.folder.names();
    try {
        OpenConfiguration(rig.bench, file);
        FAIL() << "opened";
    } catch (const RunTimeError& error) {
        EXPECT_NE(error.description().find(file), std::string::npos) << error.description();
        EXPECT_EQ(error.description().find(".TMP"), std::string::npos) << error.description();
        EXPECT_EQ(error.description().find('\n'), std::string::npos) << error.description();
    }
    EXPECT_TRUE(rig.workFiles().empty());
    EXPECT_EQ(rig.folder.names(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Files, LifeCycleForeign,
    testing::Values(Foreign{"empty", [](const std::string& path) { writeText(path, ""); }},
                    Foreign{"text", [](const std::string& path) { writeText(path, "just words\n"); }},
                    Foreign{"image", [](const std::string& path) { writeText(path, "\x89PNG\r\n\x1a\n rest"); }},
                    Foreign{"folder", [](const std::string& path) { fs::create_directory(path); }},
                    Foreign{"pipe", [](const std::string& path) { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }},
                    Foreign{"otherDatabase",
                            [](const std::string& path) {
                                Sqlite memory("", Sqlite::Mode::Memory);
                                memory.execute("CREATE TABLE people (name)");
                                ASSERT_FALSE(writeWholeAtOnce(path, memory.bytes()));
                            }}),
    [](const auto& row) { return row.param.name; });

TEST(LifeCycle, AWorkFolderThatCannotBeWrittenIsTold) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    rig.bench.places.work = rig.path("nowhere");
    // The system's words vary; the number before them and the title do not.
    struct AnyBox final : MessageBox {
        Answer ask(const Notice& notice) override {
            said = notice;
            return Answer::Ok;
        }
        Notice said;
    } box;
    Workbench bench(Platform{box, rig.dialogs, rig.host, rig.settings, rig.clock, rig.pump, rig.noPort},
                    rig.bench.places);
    try {
        OpenConfiguration(bench, file);
        FAIL() << "opened";
    } catch (const RunTimeError& error) {
        EXPECT_NE(error.description().find(file), std::string::npos) << error.description();
    }
    EXPECT_EQ(box.said.title, "Warning!");
    EXPECT_EQ(box.said.text.substr(0, 3), "75 ");
}

}  // namespace
}  // namespace qrv
