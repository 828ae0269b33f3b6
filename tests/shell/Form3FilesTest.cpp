// The coming and going of files in the main window: new, open, save, save as, recent files, the way out.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "EditorRig.h"
#include "platform/Files.h"

namespace qrv {
namespace {

class Form3FilesTest : public testing::Test {
 protected:
    void SetUp() override {
        run.startWithNew(a);
        run.leaveGeneral();
    }
    void makeNew(const std::string& path, Answer aboutTheOldOne = Answer::No) {
        run.expectSaveQuestion(run.bench.CurrentFileName, aboutTheOldOne);
        machine.dialogs.answer(path);
        run.form3.choose("mnuFileNew");
        run.leaveGeneral();
    }
    void open(const std::string& path, Answer aboutTheOldOne = Answer::No) {
        run.expectSaveQuestion(run.bench.CurrentFileName, aboutTheOldOne);
        machine.dialogs.answer(path);
        run.form3.choose("mnuFileOpen");
    }
    void setTitle(const std::string& title) {
        run.program.general.txtTitle.text = title;
        run.program.general.txtTitle_Change();
    }
    /// The title of a configuration as the user's file has it.
    std::string titleIn(const std::string& path) {
        db1 other(machine.boxes);
        other.open_existing_database(path);
        std::string title = other.CommentTitle();
        other.close_work_dbs();
        return title;
    }

    Machine machine;
    std::string a = machine.path("a.qrv");
    std::string b = machine.path("b.qrv");
    EditorRun run{machine};
};

TEST_F(Form3FilesTest, ANewFilePassesThroughNameAndBoardsUnderItsTitle) {
    run.expectSaveQuestion(a, Answer::No);
    machine.dialogs.answer(b);
    run.form3.choose("mnuFileNew");
    EXPECT_EQ(run.bench.CurrentFileName, b);
    EXPECT_TRUE(run.bench.DialogResultOpen);
    EXPECT_EQ(run.program.general.caption, "QRV Edit - " + b);
    run.leaveGeneral();
    EXPECT_EQ(run.form3.caption, "QRV Edit - " + b);
    EXPECT_EQ(run.form3.blocks.Grid1.row(), 60);
    EXPECT_EQ(run.form3.blocks.Grid1.col(), 10);
}

TEST_F(Form3FilesTest, TheDialogsAskForConfigurations) {
    makeNew(b);
    const FileQuestion save{.kind = FileDialogKind::Save,
                            .filter = "QRV Configuration Database (*.qrv;*.mdb)|*.qrv;*.mdb",
                            .initialName = "",
                            .hidesReadOnly = true,
                            .title = "New Configuration"};
    EXPECT_EQ(machine.dialogs.asked.back(), save);
    open(a);
    FileQuestion question = save;
    question.kind = FileDialogKind::Open;
    question.title = "";
    EXPECT_EQ(machine.dialogs.asked.back(), question);
}

TEST(Form3Files, TheDialogForANewFileHasNoTitleOfItsOwnInTheClassicLook) {
    Machine machine;
    const bool isClassic = true;
    EditorRun run(machine, "", isClassic);
    run.startWithNew(machine.path("a.qrv"));
    EXPECT_EQ(machine.dialogs.asked.back().title, "");
}

TEST_F(Form3FilesTest, ANewFileMayTakeAnotherOnesPlace) {
    makeNew(b);
    machine.boxes.verify();
    run.expectSaveQuestion(b, Answer::No);
    machine.dialogs.answer(a);
    machine.boxes.expect(
        {.text = "Replace " + a + "\n" + a + " Already Exists", .title = "Warning!", .buttons = Buttons::YesNo},
        Answer::Yes);
    run.form3.choose("mnuFileNew");
    EXPECT_EQ(run.bench.CurrentFileName, a);
}

TEST_F(Form3FilesTest, KeepingTheOtherOneBringsTheOldFileBack) {
    makeNew(b);
    run.expectSaveQuestion(b, Answer::No);
    machine.dialogs.answer(a);
    machine.boxes.expect(
        {.text = "Replace " + a + "\n" + a + " Already Exists", .title = "Warning!", .buttons = Buttons::YesNo},
        Answer::No);
    run.form3.choose("mnuFileNew");
    EXPECT_EQ(run.bench.CurrentFileName, b);
    EXPECT_TRUE(run.bench.FileIsOpen);
    EXPECT_TRUE(run.host.isVisible(run.form3));
}

TEST_F(Form3FilesTest, CancelOfTheSaveQuestionLeavesTheFileOpen) {
    const std::string workFile = run.bench.WorkFileName;
    run.expectSaveQuestion(a, Answer::Cancel);
    run.form3.choose("mnuFileNew");
    run.expectSaveQuestion(a, Answer::Cancel);
    run.form3.choose("mnuFileOpen");
    run.expectSaveQuestion(a, Answer::Cancel);
    run.form3.choose("mnuFormExit");
    EXPECT_TRUE(run.bench.FileIsOpen);
    EXPECT_EQ(run.bench.WorkFileName, workFile);
    EXPECT_FALSE(run.host.ended);
    EXPECT_EQ(run.bench.db.BlockEOF(), false);
}

TEST_F(Form3FilesTest, CancelOfTheDialogBringsTheFileBackInAFreshCopy) {
    const std::string workFile = run.bench.WorkFileName;
    open("");
    EXPECT_TRUE(run.bench.FileIsOpen);
    EXPECT_EQ(run.bench.CurrentFileName, a);
    EXPECT_NE(run.bench.WorkFileName, workFile);
    EXPECT_EQ(machine.workFiles().size(), 1U);
    EXPECT_FALSE(run.bench.DialogResultOpen);
    EXPECT_TRUE(run.host.isVisible(run.form3));
}

TEST_F(Form3FilesTest, AFileThatIsNotThereBringsTheOldOneBack) {
    machine.boxes.verify();
    run.expectSaveQuestion(a, Answer::Yes);
    machine.dialogs.answer(machine.path("none.qrv"));
    machine.boxes.expect({.text = machine.path("none.qrv") + " Does Not Exist", .title = "Warning!"});
    run.form3.choose("mnuFileOpen");
    EXPECT_EQ(run.bench.CurrentFileName, a);
    EXPECT_TRUE(run.bench.FileIsOpen);
}

TEST_F(Form3FilesTest, SaveWritesTheFileAndGoesOnInAFreshCopy) {
    setTitle("BOILER 1");
    const std::string workFile = run.bench.WorkFileName;
    run.form3.choose("mnuFileSave");
    EXPECT_EQ(titleIn(a), "BOILER 1");
    EXPECT_EQ(run.form3.transferEnd, "a.qrv is saved.");
    EXPECT_NE(run.bench.WorkFileName, workFile);
    EXPECT_EQ(machine.workFiles().size(), 1U);
    EXPECT_EQ(run.host.happened.back(), "refresh Form3");
}

TEST_F(Form3FilesTest, ANoLosesTheWorkAndNothingElse) {
    const std::string before = machine.bytesOf(a);
    setTitle("BOILER 1");
    run.quit(Answer::No);
    EXPECT_EQ(run.host.ended, 0);
    EXPECT_EQ(machine.bytesOf(a), before);
    EXPECT_TRUE(machine.workFiles().empty());
}

TEST_F(Form3FilesTest, AYesAtTheEndSaves) {
    setTitle("BOILER 1");
    run.quit(Answer::Yes);
    EXPECT_EQ(run.host.ended, 0);
    EXPECT_EQ(titleIn(a), "BOILER 1");
    EXPECT_TRUE(machine.workFiles().empty());
    EXPECT_FALSE(run.host.isLoaded(run.form3));
}

TEST_F(Form3FilesTest, TheCloseBoxAsksOnceAndLeavesByItself) {
    run.expectSaveQuestion(a, Answer::Cancel);
    EXPECT_FALSE(run.host.close(run.form3));
    EXPECT_TRUE(run.host.isVisible(run.form3));
    run.expectSaveQuestion(a, Answer::Yes);
    run.host.close(run.form3);
    EXPECT_EQ(run.host.ended, 0);
}

TEST_F(Form3FilesTest, SaveAsGoesOnWithTheNewFile) {
    setTitle("BOILER 1");
    machine.dialogs.answer(b);
    run.form3.choose("mnuFileSaveAs");
    EXPECT_EQ(machine.dialogs.asked.back().initialName, a);
    EXPECT_EQ(machine.dialogs.asked.back().kind, FileDialogKind::Save);
    EXPECT_EQ(run.bench.CurrentFileName, b);
    EXPECT_EQ(run.form3.caption, "QRV Edit - " + b);
    EXPECT_EQ(run.form3.transferEnd, "b.qrv is saved.");
    EXPECT_EQ(titleIn(b), "BOILER 1");
    EXPECT_NE(titleIn(a), "BOILER 1");
    EXPECT_EQ(machine.workFiles().size(), 1U);
    EXPECT_EQ(machine.recent(1), b);
}

TEST_F(Form3FilesTest, SaveAsUnderTheOldNameIsSave) {
    setTitle("BOILER 1");
    machine.dialogs.answer(a);
    run.form3.choose("mnuFileSaveAs");
    EXPECT_EQ(titleIn(a), "BOILER 1");
}

TEST_F(Form3FilesTest, SaveAsCancelledSavesUnderTheOldName) {
    setTitle("BOILER 1");
    machine.dialogs.answer("");
    run.form3.choose("mnuFileSaveAs");
    EXPECT_EQ(titleIn(a), "BOILER 1");
}

TEST_F(Form3FilesTest, SaveAsAsksBeforeItReplaces) {
    makeNew(b);
    setTitle("SECOND");
    const Notice question{.text = a + " already exists.\nDo you want to replace it?",
                          .title = "Save AS",
                          .buttons = Buttons::YesNo,
                          .icon = Icon::Warning};
    machine.dialogs.answer(a);
    machine.boxes.expect(question, Answer::No);
    run.form3.choose("mnuFileSaveAs");
    EXPECT_EQ(run.bench.CurrentFileName, b);
    EXPECT_NE(titleIn(a), "SECOND");
    machine.dialogs.answer(a);
    machine.boxes.expect(question, Answer::Yes);
    run.form3.choose("mnuFileSaveAs");
    EXPECT_EQ(run.bench.CurrentFileName, a);
    EXPECT_EQ(titleIn(a), "SECOND");
}

TEST_F(Form3FilesTest, AFifthFilePushesTheOldestOut) {
    for (const char* name : {"b.qrv", "c.qrv", "d.qrv", "e.qrv"}) makeNew(machine.path(name));
    EXPECT_EQ(machine.recent(1), machine.path("e.qrv"));
    EXPECT_EQ(machine.recent(4), machine.path("b.qrv"));
    EXPECT_EQ(run.form3.menu.mnuRecentFile(4).tag, machine.path("b.qrv"));
}

TEST_F(Form3FilesTest, AListedFileKeepsItsPlaceWhenOpened) {
    makeNew(b);
    open(a);
    EXPECT_EQ(machine.recent(1), b);
    EXPECT_EQ(machine.recent(2), a);
}

TEST_F(Form3FilesTest, AListedFileGoesToTheTopFromTheMenu) {
    makeNew(b);
    run.expectSaveQuestion(b, Answer::Yes);
    run.form3.choose("mnuRecentFile2");
    EXPECT_EQ(run.bench.CurrentFileName, a);
    EXPECT_EQ(machine.recent(1), a);
    EXPECT_EQ(machine.recent(2), b);
    EXPECT_EQ(run.program.general.caption, "QRV Edit - " + a);
    run.leaveGeneral();
}

TEST_F(Form3FilesTest, ARecentFilesWorkCopyCountsAsWrittenNow) {
    makeNew(b);
    // Far behind what the machine's clock says.
    const auto longAgo = machine.clock.wallTime() - std::chrono::hours(24 * 365 * 30);
    ASSERT_FALSE(setFileTimes(a, longAgo));
    machine.clock.sleep(std::chrono::hours(24 * 365 * 20));
    run.expectSaveQuestion(b, Answer::No);
    run.form3.choose("mnuRecentFile2");
    EXPECT_EQ(lastWriteTime(run.bench.WorkFileName), machine.clock.wallTime());
}

TEST_F(Form3FilesTest, CancelLeavesTheRecentFileUnopened) {
    makeNew(b);
    run.expectSaveQuestion(b, Answer::Cancel);
    run.form3.choose("mnuRecentFile2");
    EXPECT_EQ(run.bench.CurrentFileName, b);
    EXPECT_EQ(machine.recent(1), b);
}

TEST_F(Form3FilesTest, TheOpenFileChosenFromTheListIsReloaded) {
    setTitle("BOILER 1");
    run.expectSaveQuestion(a, Answer::Yes);
    run.form3.choose("mnuRecentFile1");
    EXPECT_TRUE(run.bench.FileIsOpen);
    EXPECT_EQ(run.bench.db.CommentTitle(), "BOILER 1");
    EXPECT_TRUE(run.host.isVisible(run.form3));
}

TEST_F(Form3FilesTest, ARecentFileThatIsGoneBringsTheOldOneBack) {
    makeNew(b);
    std::filesystem::remove(a);
    run.expectSaveQuestion(b, Answer::Yes);
    machine.boxes.expect({.text = a + " No Longer Exists", .title = "Warning!"});
    run.form3.choose("mnuRecentFile2");
    EXPECT_EQ(run.bench.CurrentFileName, b);
    EXPECT_TRUE(run.bench.FileIsOpen);
    EXPECT_EQ(machine.recent(1), b);
}

TEST_F(Form3FilesTest, AMissingFileIsSaidByThePathThatIsListed) {
    machine.settings.save("Recent Files", "RecentFile1", "plant/b.qrv");
    run.form3.recentFiles.rebuild();
    machine.boxes.expect(Notice{.text = "plant/b.qrv No Longer Exists", .title = "Warning!"});
    run.form3.GetRecentFile(1);
    EXPECT_EQ(run.bench.CurrentFileName, a);
}

TEST_F(Form3FilesTest, EntriesOfFilesThatAreNotListedCantBeChosen) {
    EXPECT_FALSE(run.form3.menu.mnuRecentFile(2).visible);
    run.form3.choose("mnuRecentFile2");
    EXPECT_EQ(run.bench.CurrentFileName, a);
}

}  // namespace
}  // namespace qrv
