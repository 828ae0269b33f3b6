// The main window's menu: what is enabled when, what an entry does, read-only files.
#include <gtest/gtest.h>

#include "EditorRig.h"

namespace qrv {
namespace {

class Form3MenuTest : public testing::Test {
 protected:
    void SetUp() override {
        run.startWithNew(machine.path("a.qrv"));
        run.leaveGeneral();
    }
    /// Makes a second configuration and takes its owner's right to write.
    std::string readOnlyFile() {
        const std::string path = machine.path("locked.qrv");
        run.bench.db.create_new_database(path);
        machine.makeReadOnly(path);
        return path;
    }
    void open(const std::string& path, Answer aboutTheOldOne = Answer::No) {
        run.expectSaveQuestion(run.bench.CurrentFileName, aboutTheOldOne);
        machine.dialogs.answer(path);
        run.form3.choose("mnuFileOpen");
    }
    /// Leaves the boards' window of a read-only file, which can't store them.
    void leaveGeneralReadOnly() {
        machine.boxes.expect("The file is read-only.");
        run.program.general.mnuexit();
    }

    Machine machine;
    EditorRun run{machine};
};

TEST_F(Form3MenuTest, EntriesWithoutAFormAreThereAndDisabled) {
    for (const char* entry : {"mnuFileImportSelect", "mnuFileExportSelect", "mnuFileStickChartSelect", "mnuFileCompare",
                              "mnuFileCheck", "mnuFilePrint", "mnuEditLCD", "mnuEditAlarm", "mnuEditChart",
                              "mnuEditEGU", "mnuEditPager", "mnuEditLoop", "mnuEditPoll"}) {
        EXPECT_FALSE(run.isEnabled(entry)) << entry;
        EXPECT_TRUE(run.form3.menu.entry(entry).visible) << entry;
        run.form3.choose(entry);
    }
}

TEST_F(Form3MenuTest, EntriesOfItsOwnAreEnabled) {
    for (const char* entry : {"mnuFileNew", "mnuFileOpen", "mnuFileSave", "mnuFileSaveAs", "mnuFormExit", "mnuEditCfg",
                              "mnuEditBlk", "mnuEditComments", "mnuFileDownload", "mnuFileUpload", "mnuEditComPort",
                              "mnuViewAll", "mnuViewSel", "mnuAbout"}) {
        EXPECT_TRUE(run.isEnabled(entry)) << entry;
    }
    EXPECT_TRUE(run.form3.Command1.enabled);
}

TEST_F(Form3MenuTest, ADownloadWarnsFirstAndACancelEndsIt) {
    run.host.onModal("frmWarn", [this](Form&) {
        EXPECT_FALSE(run.form3.Command1.enabled);
        run.program.warn.Command2_Click();
    });
    run.form3.choose("mnuFileDownload");
    EXPECT_TRUE(run.form3.Command1.enabled);
}

TEST_F(Form3MenuTest, LiveViewsStandInTheMainWindowsPlace) {
    FormHost& host = run.program.bench.platform.formHost;
    run.form3.choose("mnuViewAll");
    EXPECT_TRUE(host.isVisible(run.program.allOutputs));
    EXPECT_FALSE(host.isVisible(run.form3));
    run.program.allOutputs.mnuexit();
    EXPECT_TRUE(host.isVisible(run.form3));
    run.form3.choose("mnuViewSel");
    EXPECT_TRUE(host.isVisible(run.program.chosenOutputs));
    EXPECT_FALSE(host.isVisible(run.form3));
    run.program.chosenOutputs.munexit();
    EXPECT_TRUE(host.isVisible(run.form3));
}

TEST_F(Form3MenuTest, AnEntryThatIsGivenItsFormOpensIt) {
    int opened = 0;
    run.form3.provide("mnuEditPager", [&opened] { ++opened; });
    EXPECT_TRUE(run.isEnabled("mnuEditPager"));
    run.form3.choose("mnuEditPager");
    EXPECT_EQ(opened, 1);
}

TEST_F(Form3MenuTest, DownloadGoesToTheDataViewAndDisablesItsButtonMeanwhile) {
    bool wasEnabled = true;
    bool wasDataView = false;
    run.form3.provide("mnuFileDownload", [&] {
        wasEnabled = run.form3.Command1.enabled;
        wasDataView = run.form3.blocks.isDataView();
    });
    run.form3.choose("mnuEditCfg");
    run.form3.Command1_Click();
    EXPECT_FALSE(wasEnabled);
    EXPECT_TRUE(wasDataView);
    EXPECT_TRUE(run.form3.Command1.enabled);
}

TEST_F(Form3MenuTest, ADownloadWithinADownloadIsTurnedAway) {
    int times = 0;
    run.form3.provide("mnuFileDownload", [&] {
        ++times;
        run.form3.choose("mnuFileDownload");
    });
    run.form3.choose("mnuFileDownload");
    EXPECT_EQ(times, 1);
}

TEST_F(Form3MenuTest, TheAlarmButtonIsThereAndDoesNothing) {
    const BlockPanel& panel = run.form3.blocks;
    EXPECT_EQ(panel.cmdViewAlarmInfo.caption, "View Alarm/Event Settings");
    EXPECT_TRUE(panel.cmdViewAlarmInfo.visible);
    EXPECT_STREQ(BlockPanel::kCmdViewAlarmInfoToolTip,
                 "This button is visible when the selected block is alarmable. The button is red when there is at "
                 "least 1 alarm already set.");
}

TEST_F(Form3MenuTest, TheTwoViewsChangePlaces) {
    BlockPanel& panel = run.form3.blocks;
    EXPECT_TRUE(panel.fg2.visible());
    run.form3.choose("mnuEditCfg");
    EXPECT_TRUE(panel.List1.visible);
    EXPECT_FALSE(panel.fg2.visible());
    EXPECT_FALSE(panel.fg3.visible());
    run.form3.choose("mnuEditBlk");
    EXPECT_FALSE(panel.List1.visible);
    EXPECT_TRUE(panel.fg2.visible());
    EXPECT_TRUE(panel.fg3.visible());
}

TEST_F(Form3MenuTest, NameAndBoardsHideTheWindowUntilTheyClose) {
    run.program.general.caption = "as it was";
    run.form3.choose("mnuEditComments");
    EXPECT_EQ(run.program.general.caption, "as it was");
    run.leaveGeneral();
}

TEST_F(Form3MenuTest, PortSettingsLastUntilTheNextStart) {
    run.host.onModal("frmComm", [this](Form&) {
        run.program.comm.chooseBaudRate(2);
        run.program.comm.chooseParity(1);
        run.program.comm.mnuExit();
    });
    run.form3.choose("mnuEditComPort");
    EXPECT_TRUE(run.host.isVisible(run.form3));
    EditorRun next(machine);
    next.program.start();
    EXPECT_EQ(next.bench.baud_rate, "9600");
    EXPECT_EQ(next.bench.parity, "E");
}

TEST_F(Form3MenuTest, ComingBackToAReadOnlyFileLeavesTheSelectedRow) {
    open(readOnlyFile());
    leaveGeneralReadOnly();
    run.clickBlock(0);
    run.form3.blocks.fg2.select(3, 1);
    run.host.onModal("frmAbout", [this](Form&) { run.program.about.Command1_Click(); });
    run.form3.choose("mnuAbout");
    EXPECT_EQ(run.form3.blocks.fg2.row(), 3);
}

TEST_F(Form3MenuTest, AReadOnlyFileSaysSoAndTakesEntriesAway) {
    run.form3.provide("mnuFileUpload", [] {});
    const std::string path = readOnlyFile();
    open(path);
    EXPECT_EQ(run.form3.caption, "QRV Edit - " + path + " - READ ONLY");
    EXPECT_EQ(run.program.general.caption, "QRV Edit - " + path + " - READ ONLY");
    EXPECT_FALSE(run.isEnabled("mnuFileUpload"));
    EXPECT_FALSE(run.isEnabled("mnuEditCfg"));
    EXPECT_FALSE(run.isEnabled("mnuFileSave"));
    EXPECT_TRUE(run.isEnabled("mnuFileSaveAs"));
}

TEST_F(Form3MenuTest, UploadNeverComesBackAfterAReadOnlyFile) {
    run.form3.provide("mnuFileUpload", [] {});
    open(readOnlyFile());
    leaveGeneralReadOnly();
    open(machine.path("a.qrv"));
    run.leaveGeneral();
    EXPECT_TRUE(run.isEnabled("mnuEditCfg"));
    EXPECT_TRUE(run.isEnabled("mnuFileSave"));
    EXPECT_FALSE(run.isEnabled("mnuFileUpload"));
}

TEST_F(Form3MenuTest, AReadOnlyFileIsNeverShownInTheAssignmentView) {
    run.form3.choose("mnuEditCfg");
    open(readOnlyFile());
    leaveGeneralReadOnly();
    EXPECT_TRUE(run.form3.blocks.isDataView());
    EXPECT_FALSE(run.form3.blocks.List1.visible);
    run.form3.choose("mnuEditCfg");
    EXPECT_TRUE(run.form3.blocks.isDataView());
}

TEST_F(Form3MenuTest, AYesForAReadOnlyFileDoesNotReachIt) {
    const std::string path = readOnlyFile();
    const std::string before = machine.bytesOf(path);
    open(path);
    leaveGeneralReadOnly();
    run.quit(Answer::Yes);
    EXPECT_EQ(run.host.ended, 0);
    EXPECT_EQ(machine.bytesOf(path), before);
    EXPECT_TRUE(machine.workFiles().empty());
}

}  // namespace
}  // namespace qrv
