// How the main window comes up: the first activation, the command line, the start dialog, later activations.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "EditorRig.h"

namespace qrv {
namespace {

/// Makes a configuration and leaves it closed.
void makeFile(Machine& machine, const std::string& name) {
    EditorRun run(machine);
    run.startWithNew(machine.path(name));
    run.leaveGeneral();
    run.quit(Answer::Yes);
}

void addAlarmOn(EditorRun& run, std::int16_t block) {
    db1& db = run.bench.db;
    db.AlarmAddNew();
    db.AlarmBlockNumber(block);
    db.AlarmDescription("HIGH PRESSURE");
    db.AlarmIsAlarm(true);
    db.AlarmUpdate();
}

TEST(Form3Start, WithoutACommandLineTheStartDialogComes) {
    Machine machine;
    EditorRun run(machine);
    run.startWithNew(machine.path("a.qrv"));
    EXPECT_TRUE(run.bench.FileIsOpen);
    EXPECT_TRUE(run.bench.AlreadyActive);
    EXPECT_EQ(run.bench.CurrentFileName, machine.path("a.qrv"));
    EXPECT_EQ(run.form3.caption, "QRV Edit - " + machine.path("a.qrv"));
    EXPECT_EQ(run.form3.blocks.CurFuncName, "NOP");
}

TEST(Form3Start, TheFirstFilePassesThroughNameAndBoards) {
    Machine machine;
    EditorRun run(machine);
    run.startWithNew(machine.path("a.qrv"));
    EXPECT_TRUE(run.host.isVisible(run.program.general));
    EXPECT_FALSE(run.host.isVisible(run.form3));
    EXPECT_EQ(run.program.general.caption, "Configuration Info");
    run.leaveGeneral();
    EXPECT_FALSE(run.host.isVisible(run.program.general));
}

TEST(Form3Start, OpensTheFileOfTheCommandLine) {
    Machine machine;
    makeFile(machine, "a.qrv");
    EditorRun run(machine, machine.path("a.qrv"));
    run.start();
    EXPECT_EQ(run.bench.CurrentFileName, machine.path("a.qrv"));
    run.leaveGeneral();
    EXPECT_EQ(run.cellOf(0), "ZERO");
    EXPECT_EQ(run.cellOf(4), " ");
}

TEST(Form3Start, APathWithBlanksWantsQuotes) {
    Machine machine;
    makeFile(machine, "my boiler.qrv");
    EditorRun run(machine, "\"" + machine.path("my boiler.qrv") + "\"");
    run.start();
    EXPECT_EQ(run.bench.CurrentFileName, machine.path("my boiler.qrv"));
}

TEST(Form3Start, WithoutQuotesOnlyTheFirstWordOfAPathIsTaken) {
    Machine machine;
    makeFile(machine, "my boiler.qrv");
    EditorRun run(machine, machine.path("my boiler.qrv"));
    machine.boxes.expect({.text = machine.path("my") + " Does Not Exist", .title = "Warning!"});
    run.start();
    EXPECT_FALSE(run.bench.FileIsOpen);
}

TEST(Form3Start, WithoutAClosingMarkTheRestIsThePath) {
    Machine machine;
    makeFile(machine, "my boiler.qrv");
    EditorRun run(machine, "\"" + machine.path("my boiler.qrv"));
    run.start();
    EXPECT_EQ(run.bench.CurrentFileName, machine.path("my boiler.qrv"));
}

TEST(Form3Start, AMissingPathLeavesTheWindowWithoutAFile) {
    Machine machine;
    EditorRun run(machine, machine.path("none.qrv"));
    machine.boxes.expect({.text = machine.path("none.qrv") + " Does Not Exist", .title = "Warning!"});
    run.start();
    EXPECT_FALSE(run.bench.FileIsOpen);
    EXPECT_TRUE(run.bench.AlreadyActive);
    EXPECT_TRUE(run.host.isVisible(run.form3));
    EXPECT_EQ(run.form3.caption, "QRV Edit");
    EXPECT_EQ(run.cellOf(0), "");
    EXPECT_EQ(run.cellOf(600), "AI");
}

TEST(Form3Start, WithoutAFileNoQuestionIsAskedAndNothingFails) {
    Machine machine;
    EditorRun run(machine, "none.qrv");
    machine.boxes.expect("none.qrv Does Not Exist");
    run.start();
    run.form3.choose("mnuFileSave");
    run.form3.choose("mnuFileSaveAs");
    run.form3.choose("mnuEditComments");
    run.form3.choose("mnuEditCfg");
    run.clickBlock(10);
    run.form3.choose("mnuEditBlk");
    machine.dialogs.answer("");
    run.form3.choose("mnuFileOpen");
    EXPECT_TRUE(run.host.isVisible(run.form3));
    run.form3.choose("mnuFormExit");
    EXPECT_EQ(run.host.ended, 0);
}

TEST(Form3Start, WithoutAFileEntriesThatNeedOneDoNothing) {
    Machine machine;
    EditorRun run(machine, "none.qrv");
    machine.boxes.expect("none.qrv Does Not Exist");
    run.start();
    int opened = 0;
    for (const char* entry : {"mnuFileDownload", "mnuEditAlarm"}) run.form3.provide(entry, [&opened] { ++opened; });
    EXPECT_TRUE(run.form3.lacksFile("mnuFileDownload"));
    EXPECT_TRUE(run.form3.lacksFile("mnuEditComments"));
    EXPECT_FALSE(run.form3.lacksFile("mnuFileOpen"));
    EXPECT_FALSE(run.form3.lacksFile("mnuEditComPort"));
    run.form3.choose("mnuFileDownload");
    run.form3.choose("mnuEditAlarm");
    run.form3.Command1_Click();
    EXPECT_EQ(opened, 0);
    EXPECT_TRUE(run.form3.Command1.enabled);
}

TEST(Form3Start, ColoursGoWithTheFile) {
    Machine machine;
    EditorRun run(machine);
    run.startWithNew(machine.path("a.qrv"));
    addAlarmOn(run, 2);
    run.leaveGeneral();
    ASSERT_TRUE(run.form3.blocks.Grid1.cell(1, 3).bold);
    run.bench.FileIsOpen = false;  // as a dialog does that is given up, where the old file can't come back
    run.form3.activate();
    EXPECT_FALSE(run.form3.blocks.Grid1.cell(1, 3).back.has_value());
    EXPECT_FALSE(run.form3.blocks.Grid1.cell(1, 3).bold);
}

TEST(Form3Start, ClosingTheStartDialogIsNoSecondActivation) {
    Machine machine;
    makeFile(machine, "a.qrv");
    EditorRun run(machine);
    machine.dialogs.answer(machine.path("a.qrv"));
    run.host.onModal("FrmAsk", [&run](Form&) {
        run.program.ask.Option2_Click();
        run.program.ask.Command1_Click();
        addAlarmOn(run, 0);
    });
    run.start();
    // The dialog is gone and has given control back, and yet nothing is painted, nor is a second dialog shown.
    EXPECT_FALSE(run.form3.blocks.Grid1.cell(1, 1).back.has_value());
    const auto times = std::ranges::count(run.host.happened, "activate Form3");
    EXPECT_EQ(times, 2);
}

TEST(Form3Start, AlarmColoursComeWithTheSecondActivation) {
    Machine machine;
    EditorRun run(machine);
    run.startWithNew(machine.path("a.qrv"));
    addAlarmOn(run, 2);
    EXPECT_FALSE(run.form3.blocks.Grid1.cell(1, 3).back.has_value());
    run.leaveGeneral();
    EXPECT_EQ(run.form3.blocks.Grid1.cell(1, 3).back, Colour{0xFF8080});
    EXPECT_TRUE(run.form3.blocks.Grid1.cell(1, 3).bold);
}

TEST(Form3Start, EveryActivationRefillsTheBoards) {
    Machine machine;
    EditorRun run(machine);
    run.startWithNew(machine.path("a.qrv"));
    Grid& boards = run.program.general.fg;
    boards.edit(1, 1, "DISCRETE INPUT   610012");
    EXPECT_EQ(run.cellOf(615), ".");
    run.leaveGeneral();
    EXPECT_EQ(run.cellOf(615), "DI");
    EXPECT_EQ(run.form3.blocks.List2.items.at(1), "DISCRETE INPUT   610012");
    EXPECT_EQ(run.form3.blocks.List2.items.size(), 7U);
}

TEST(Form3Start, ARecentFileCanBeTheFirst) {
    Machine machine;
    makeFile(machine, "a.qrv");
    makeFile(machine, "b.qrv");
    EditorRun run(machine);
    run.host.onModal("FrmAsk", [&run](Form&) {
        run.program.ask.Option3_Click();
        run.program.ask.Command1_Click();
    });
    run.host.onModal("FrmRecent", [&run](Form&) { EXPECT_TRUE(run.program.recent.Grid1.doubleClick(2, 0)); });
    run.start();
    EXPECT_EQ(run.bench.CurrentFileName, machine.path("a.qrv"));
    EXPECT_EQ(machine.recent(1), machine.path("a.qrv"));
    EXPECT_EQ(machine.recent(2), machine.path("b.qrv"));
    EXPECT_TRUE(run.host.isVisible(run.program.general));
}

TEST(Form3Start, ARecentFileThatIsGoneIsSaid) {
    Machine machine;
    makeFile(machine, "a.qrv");
    std::filesystem::remove(machine.path("a.qrv"));
    EditorRun run(machine);
    machine.boxes.expect({.text = machine.path("a.qrv") + " No Longer Exists", .title = "Warning!"});
    run.host.onModal("FrmAsk", [&run](Form& form) {
        run.program.ask.Option3_Click();
        run.program.ask.Command1_Click();
        EXPECT_TRUE(run.host.isVisible(form));
        run.program.ask.Command2_Click();
    });
    run.host.onModal("FrmRecent", [&run](Form&) { run.program.recent.Command1_Click(); });
    run.start();
    EXPECT_EQ(run.host.ended, 0);
}

}  // namespace
}  // namespace qrv
