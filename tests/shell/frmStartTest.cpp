#include "shell/frmStart.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "EditorRig.h"
#include "platform/RunTimeError.h"

namespace qrv {
namespace {

/// The error that starting the program raises.
ErrorNumber errorOfStart(EditorRun& run) {
    try {
        run.program.start();
    } catch (const RunTimeError& error) {
        return error.number();
    }
    return {};
}

TEST(frmStart, ShowsLogoTitleAndTheVersionOfTheAboutBox) {
    Machine machine;
    EditorRun run(machine);
    run.program.start();
    const frmStart& splash = run.program.splash;
    EXPECT_EQ(splash.Image1, "a picture");
    EXPECT_EQ(splash.lblTitle.caption, "QRV EDIT");
    EXPECT_EQ(splash.lblDescription.caption, "TESSALY INSTRUMENTS");
    EXPECT_EQ(splash.lblVersion.caption, "Version 6.73");
}

TEST(frmStart, WaitsTwoSecondsWithTheMainWindowLoadedAndUnseen) {
    Machine machine;
    EditorRun run(machine);
    run.program.start();
    EXPECT_TRUE(run.program.splash.Timer1.enabled);
    EXPECT_EQ(run.program.splash.Timer1.interval, std::chrono::milliseconds(2000));
    EXPECT_TRUE(run.host.isLoaded(run.form3));
    EXPECT_FALSE(run.host.isVisible(run.form3));
    EXPECT_FALSE(run.bench.FileIsOpen);
}

TEST(frmStart, TheMainWindowsListHasTheFunctionsThatAUserPlaces) {
    Machine machine;
    EditorRun run(machine);
    run.program.start();
    const ListBox& list = run.form3.blocks.List1;
    EXPECT_EQ(list.listIndex, -1);
    const auto has = [&list](const char* name) {
        return std::find(list.items.begin(), list.items.end(), name) != list.items.end();
    };
    for (const char* name : {"NOP", "PID", "F(X)"}) EXPECT_TRUE(has(name)) << name;
    for (const char* name : {"AIN", "DIN", "AOUT", "DOUT", "ROUT", "TOUT"}) EXPECT_FALSE(has(name)) << name;
}

TEST(frmStart, TheTickGivesWayToTheMainWindowOnce) {
    Machine machine;
    EditorRun run(machine);
    run.startWithNew(machine.path("a.qrv"));
    EXPECT_FALSE(run.program.splash.Timer1.enabled);
    EXPECT_FALSE(run.host.isVisible(run.program.splash));
    EXPECT_TRUE(run.host.isLoaded(run.program.splash));
}

TEST(frmStart, ReadsTheSerialSettings) {
    Machine machine;
    machine.settings.save("Communication Settings", "CommPort", "7");
    machine.settings.save("Communication Settings", "BaudRate", "9600");
    machine.settings.save("Communication Settings", "Parity", "E");
    EditorRun run(machine);
    run.program.start();
    EXPECT_EQ(run.bench.comm_port, 7);
    EXPECT_EQ(run.bench.baud_rate, "9600");
    EXPECT_EQ(run.bench.parity, "E");
}

TEST(frmStart, TheSerialSettingsHaveDefaults) {
    Machine machine;
    EditorRun run(machine);
    run.program.start();
    EXPECT_EQ(run.bench.comm_port, 1);
    EXPECT_EQ(run.bench.baud_rate, "38400");
    EXPECT_EQ(run.bench.parity, "O");
}

TEST(frmStart, AMissingLogoStopsTheStartEvenBeforeAMissingCatalogue) {
    Machine machine;
    std::filesystem::remove(machine.programFolder() + "/ts-logosm.jpg");
    std::filesystem::remove(machine.programFolder() + "/QRVDATA.DAT");
    EditorRun run(machine);
    EXPECT_EQ(errorOfStart(run), ErrorNumber::FileNotFound);
}

TEST(frmStart, AMissingCatalogueStopsTheStart) {
    Machine machine;
    std::filesystem::remove(machine.programFolder() + "/QRVDATA.DAT");
    EditorRun run(machine);
    EXPECT_THROW(run.program.start(), RunTimeError);
    EXPECT_FALSE(run.host.isLoaded(run.form3));
}

const Notice kExitQuestion{.text = "Exit Program", .title = "Warning!", .buttons = Buttons::YesNo};

TEST(frmStart, ExitProgramLeavesWithoutSavingOnYes) {
    Machine machine;
    EditorRun run(machine);
    run.startWithNew(machine.path("a.qrv"));
    const std::string before = machine.bytesOf(machine.path("a.qrv"));
    machine.boxes.expect(kExitQuestion, Answer::Yes);
    run.program.splash.ExitProgram();
    EXPECT_EQ(run.host.ended, 0);
    EXPECT_TRUE(machine.workFiles().empty());
    EXPECT_EQ(machine.bytesOf(machine.path("a.qrv")), before);
}

TEST(frmStart, ExitProgramStaysOnNo) {
    Machine machine;
    EditorRun run(machine);
    run.startWithNew(machine.path("a.qrv"));
    machine.boxes.expect(kExitQuestion, Answer::No);
    run.program.splash.ExitProgram();
    EXPECT_FALSE(run.host.ended);
    EXPECT_TRUE(run.bench.FileIsOpen);
}

TEST(frmAbout, NamesProgramVersionCatalogueAndEngine) {
    Machine machine;
    EditorRun run(machine);
    run.startWithNew(machine.path("a.qrv"));
    run.leaveGeneral();
    run.host.onModal("frmAbout", [&run](Form&) {
        const frmAbout& about = run.program.about;
        EXPECT_EQ(about.lblVersion.caption, "Version 6.73");
        EXPECT_EQ(about.lblCatalogue.caption.rfind("Function catalogue ", 0), 0U);
        EXPECT_GT(about.lblCatalogue.caption.size(), std::string("Function catalogue ").size());
        EXPECT_EQ(about.lblEngine.caption.rfind("SQLite 3.", 0), 0U);
        EXPECT_EQ(about.versions(), "QRV Edit 6.73\n" + about.lblCatalogue.caption + "\n" + about.lblEngine.caption);
        run.program.about.Command1_Click();
    });
    run.form3.choose("mnuAbout");
}

}  // namespace
}  // namespace qrv
