#include "shell/FrmAsk.h"

#include <gtest/gtest.h>

#include "EditorRig.h"

namespace qrv {
namespace {

TEST(FrmAsk, OffersThreeWaysAndTheFirstIsSet) {
    Machine machine;
    EditorRun run(machine);
    machine.dialogs.answer(machine.path("a.qrv"));
    run.host.onModal("FrmAsk", [&run](Form&) {
        FrmAsk& ask = run.program.ask;
        EXPECT_EQ(ask.Option1.caption, "Create A New Configuration");
        EXPECT_EQ(ask.Option2.caption, "Open An Existing Configuration");
        EXPECT_EQ(ask.Option3.caption, "Open A Recent Configuration");
        EXPECT_EQ(ask.Command2.caption, "Cancel");
        EXPECT_TRUE(ask.Option1.value);
        EXPECT_FALSE(ask.Option2.value);
        EXPECT_FALSE(ask.Option3.value);
        EXPECT_TRUE(ask.Command1.isDefault);
        ask.Command1_Click();
    });
    run.start();
    EXPECT_EQ(run.bench.CurrentFileName, machine.path("a.qrv"));
}

TEST(FrmAsk, StaysForAnotherTryUntilAFileIsOpen) {
    Machine machine;
    EditorRun run(machine);
    machine.dialogs.answer("");
    machine.dialogs.answer(machine.path("none.qrv"));
    machine.boxes.expect(machine.path("none.qrv") + " Does Not Exist");
    machine.dialogs.answer(machine.path("a.qrv"));
    run.host.onModal("FrmAsk", [&run](Form& form) {
        FrmAsk& ask = run.program.ask;
        ask.Command1_Click();  // gives up the new file's dialog
        EXPECT_TRUE(run.host.isVisible(form));
        ask.Option2_Click();
        ask.Command1_Click();  // names a file that isn't there
        EXPECT_TRUE(run.host.isVisible(form));
        ask.Option1_Click();
        ask.Command1_Click();
    });
    run.start();
    EXPECT_TRUE(run.bench.FileIsOpen);
}

TEST(FrmAsk, CancelEndsTheProgram) {
    Machine machine;
    EditorRun run(machine);
    run.host.onModal("FrmAsk", [&run](Form&) { run.program.ask.Command2_Click(); });
    run.start();
    EXPECT_EQ(run.host.ended, 0);
    EXPECT_TRUE(machine.workFiles().empty());
}

TEST(FrmAsk, ItsCloseBoxIsCancel) {
    Machine machine;
    EditorRun run(machine);
    run.host.onModal("FrmAsk", [&run](Form& form) { run.host.close(form); });
    run.start();
    EXPECT_EQ(run.host.ended, 0);
}

TEST(FrmAsk, WithoutRecentFilesTheListIsEmptyAndLeadsBack) {
    Machine machine;
    EditorRun run(machine);
    run.host.onModal("FrmAsk", [&run](Form& form) {
        FrmAsk& ask = run.program.ask;
        ask.Option3_Click();
        ask.Command1_Click();
        EXPECT_TRUE(run.host.isVisible(form));
        ask.Command2_Click();
    });
    run.host.onModal("FrmRecent", [&run](Form&) {
        EXPECT_EQ(run.program.recent.Grid1.rows(), 1);
        EXPECT_EQ(run.program.recent.Grid1.text(0, 0), "Filename");
        EXPECT_EQ(run.program.recent.Grid1.text(0, 1), "Path");
        run.program.recent.Command1_Click();
    });
    run.start();
    EXPECT_FALSE(run.bench.FileIsOpen);
}

}  // namespace
}  // namespace qrv
