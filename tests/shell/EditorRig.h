// The whole tool without windows, for tests that sit down before it as its user: a machine that outlives the program,
// and one run of the program on it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "blocks/BlockNumbers.h"
#include "shell/EditorProgram.h"
#include "twins/FalseClock.h"
#include "twins/MemorySettings.h"
#include "twins/NoPort.h"
#include "twins/ScriptedBox.h"
#include "twins/ScriptedFileDialog.h"
#include "twins/ScriptedHost.h"
#include "twins/TemporaryFolder.h"

namespace qrv {

/// The user's machine: its files, its settings, and the answers that the user gives.
struct Machine {
    Machine() {
        std::filesystem::create_directories(programFolder());
        std::filesystem::copy_file(std::filesystem::path(QRV_CATALOGUE_FOLDER) / "QRVDATA.DAT",
                                   programFolder() + "/QRVDATA.DAT");
        std::ofstream(programFolder() + "/ts-logosm.jpg") << "a picture";
    }

    [[nodiscard]] std::string programFolder() const { return folder.file("program"); }
    [[nodiscard]] std::string path(const std::string& name) const { return folder.file(name); }
    void makeReadOnly(const std::string& path) const {
        std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    }
    [[nodiscard]] std::string bytesOf(const std::string& path) const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    /// Names of the work files that lie about.
    [[nodiscard]] std::vector<std::string> workFiles() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(programFolder())) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with("QRM")) found.push_back(name);
        }
        return found;
    }
    [[nodiscard]] std::string recent(int index) const {
        return settings.get("Recent Files", "RecentFile" + std::to_string(index), "");
    }

    TemporaryFolder folder;
    ScriptedBox boxes;
    ScriptedFileDialog dialogs;
    MemorySettings settings;
    FalseClock clock;
    NoPort port;
};

/// One run of the program, from the splash on.
struct EditorRun {
    explicit EditorRun(Machine& userMachine, const std::string& commandLine = "", bool isClassic = false)
        : machine(userMachine),
          program(Platform{machine.boxes, machine.dialogs, host, machine.settings, machine.clock, pump, machine.port},
                  {.places = {.work = machine.programFolder(),
                              .catalogue = machine.programFolder(),
                              .backups = machine.path("kept")},
                   .commandLine = commandLine,
                   .isClassic = isClassic}) {}

    /// The splash comes up and its time runs out: the main window stands, or another in its place.
    void start() {
        program.start();
        program.splash.Timer1_Timer();
    }
    /// Starts with a start dialog whose user makes a new configuration.
    void startWithNew(const std::string& path) {
        machine.dialogs.answer(path);
        host.onModal("FrmAsk", [this](Form&) { program.ask.Command1_Click(); });
        start();
    }
    /// Leaves the window with name, comments and I/O that follows every open.
    void leaveGeneral() {
        ASSERT_TRUE(host.isVisible(program.general));
        ASSERT_FALSE(host.isVisible(form3));
        program.general.mnuexit();
        ASSERT_TRUE(host.isVisible(form3));
    }
    void expectSaveQuestion(const std::string& path, Answer answer) {
        machine.boxes.expect({.text = "Save changes to " + path + "?",
                              .title = "Warning!",
                              .buttons = Buttons::YesNoCancel,
                              .icon = Icon::Question},
                             answer);
    }
    void quit(Answer answer) {
        expectSaveQuestion(program.bench.CurrentFileName, answer);
        form3.choose("mnuFormExit");
    }

    // --- working on blocks ---
    void clickBlock(int block) {
        const BlockCell cell = block < kFirstIoBlock ? logicCellOf(block) : ioCellOf(block);
        (block < kFirstIoBlock ? form3.blocks.Grid1 : form3.blocks.Ig).click(cell.row, cell.col);
    }
    [[nodiscard]] std::string cellOf(int block) const {
        const BlockCell cell = block < kFirstIoBlock ? logicCellOf(block) : ioCellOf(block);
        return (block < kFirstIoBlock ? form3.blocks.Grid1 : form3.blocks.Ig).text(cell.row, cell.col);
    }
    /// Places a function in the assignment view, which is up then.
    void place(int block, const std::string& function) {
        form3.choose("mnuEditCfg");
        auto& list = form3.blocks.List1;
        const auto found = std::find(list.items.begin(), list.items.end(), function);
        ASSERT_NE(found, list.items.end()) << function;
        list.listIndex = static_cast<int>(found - list.items.begin());
        form3.blocks.List1_Click();
        clickBlock(block);
    }
    [[nodiscard]] bool isEnabled(const char* entry) const { return form3.menu.entry(entry).enabled; }

    Machine& machine;
    ScriptedHost host;
    FalsePump pump{machine.clock};
    EditorProgram program;
    Form3& form3 = program.mainWindow;
    Workbench& bench = program.bench;
};

}  // namespace qrv
