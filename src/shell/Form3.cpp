#include "shell/Form3.h"

#include <algorithm>
#include <array>
#include <utility>

#include "blocks/frmGeneral.h"
#include "platform/Paths.h"
#include "platform/WhileSet.h"
#include "shell/CommandLine.h"
#include "shell/FrmAsk.h"
#include "shell/frmAbout.h"
#include "shell/frmStart.h"
#include "store/LifeCycle.h"

namespace qrv {

namespace {

/// The entries whose forms stand beside the main window.
constexpr auto kProvidedEntries = std::to_array<std::string_view>(
    {"mnuFileUpload", "mnuFileDownload", "mnuFileImportSelect", "mnuFileExportSelect", "mnuFileStickChartSelect",
     "mnuFileCompare", "mnuFileCheck", "mnuFilePrint", "mnuEditLCD", "mnuEditAlarm", "mnuEditChart", "mnuEditEGU",
     "mnuEditPager", "mnuEditLoop", "mnuEditPoll", "mnuEditComPort", "mnuViewAll", "mnuViewSel"});

std::string savedWords(const Workbench& bench) { return fileNameOf(bench.CurrentFileName) + " is saved."; }

}  // namespace

Form3::Form3(Workbench& bench, const Form3Dialogs& dialogs, std::string commandLine)
    : Form("Form3", "QRV Edit"),
      blocks(bench),
      recentFiles(bench.platform.settings, menu),
      bench_(bench),
      dialogs_(dialogs),
      commandLine_(std::move(commandLine)) {
    for (const std::string_view entry : kProvidedEntries) menu.entry(entry).enabled = false;
    recentFiles.clearMenu();
    wireWindows();
}

bool Form3::isComing(std::string_view entry) const {
    return std::ranges::find(kProvidedEntries, entry) != kProvidedEntries.end() && !provided_.contains(entry);
}

void Form3::wireWindows() {
    bench_.windows.addRecentFile = [this](const std::string& path) { addRecentFile(path); };
    bench_.windows.showOpened = [this] { showOpened(); };
    bench_.windows.showMain = [this] {
        // A board may have come or gone in the other window.
        blocks.showAgain();
        bench_.platform.formHost.show(*this);
    };
    bench_.windows.hideMain = [this] { bench_.platform.formHost.hide(*this); };
}

void Form3::load() { blocks.loadFunctionList(); }

bool Form3::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode) return true;
    mnuFormExit();
    return false;
}

// --- coming up ---

void Form3::showBoards() {
    blocks.fillIg();
    if (bench_.AlreadyActive) blocks.paintAlarmColours();
}

void Form3::activate() {
    SetReadOnly();
    showBoards();
    // Closing a dialog that the first activation opened activates again, and that is no second activation.
    if (isStarting_ || bench_.AlreadyActive) return;
    const WhileSet<bool> starting(isStarting_, true);
    activateFirstTime();
}

void Form3::activateFirstTime() {
    blocks.firstActivate();
    recentFiles.clearMenu();
    recentFiles.rebuild();
    if (commandLine_.find_first_not_of(' ') != std::string::npos) {
        openByName(bench_, FirstToken(commandLine_));
    } else {
        bench_.platform.formHost.showModal(dialogs_.ask);
    }
    if (bench_.FileIsOpen) {
        blocks.fill_grid1();
        mnuEditComments();
    }
    blocks.CurFuncName = "NOP";
    bench_.AlreadyActive = true;
}

void Form3::showOpened() {
    caption = bench_.TitleText;
    FormHost& host = bench_.platform.formHost;
    host.hide(dialogs_.start);
    // Before SetReadOnly runs there is a click, and on a read-only file it must not place a function.
    if (bench_.IsReadOnlyFile) leaveAssignmentView();
    if (!host.isVisible(*this)) host.show(*this);
}

void Form3::SetReadOnly() {
    if (!bench_.IsReadOnlyFile) {
        menu.entry("mnuEditCfg").enabled = true;
        menu.entry("mnuFileSave").enabled = true;
        return;
    }
    menu.entry("mnuFileUpload").enabled = false;
    menu.entry("mnuEditCfg").enabled = false;
    menu.entry("mnuFileSave").enabled = false;
    menu.entry("mnuFileSaveAs").enabled = true;
    leaveAssignmentView();
}

void Form3::leaveAssignmentView() {
    if (!blocks.isDataView()) blocks.showDataView();
}

// --- the file ---

Answer Form3::askToSave() {
    return bench_.platform.messageBox.ask({.text = "Save changes to " + bench_.CurrentFileName + "?",
                                           .buttons = Buttons::YesNoCancel,
                                           .icon = Icon::Question});
}

bool Form3::mayClose() {
    if (!bench_.FileIsOpen) return true;
    const Answer answer = askToSave();
    if (answer != Answer::Yes && answer != Answer::No) return false;
    CloseConfiguration(bench_, answer);
    return true;
}

void Form3::afterOpening() {
    blocks.fill_grid1();
    blocks.showNone();
    blocks.Grid1_Click();
    SetReadOnly();
    dialogs_.general.caption = bench_.TitleText;
    showGeneral();
}

void Form3::showGeneral() {
    bench_.windows.hideMain();
    bench_.platform.formHost.show(dialogs_.general);
}

void Form3::ReloadGlobalFile() {
    if (bench_.CurrentFileName.empty()) return;
    OpenConfiguration(bench_, bench_.CurrentFileName);
    blocks.fill_grid1();
    showBoards();
    bench_.platform.formHost.refresh(*this);
    SetReadOnly();
    blocks.showAgain();
}

void Form3::mnuFileNew() {
    if (!mayClose()) return;
    newFileDialog(bench_) ? afterOpening() : ReloadGlobalFile();
}

void Form3::mnuFileOpen() {
    if (!mayClose()) return;
    openFileDialog(bench_) ? afterOpening() : ReloadGlobalFile();
}

void Form3::mnuFileSave() {
    if (!bench_.FileIsOpen) return;
    const bool isSaved = CloseConfiguration(bench_, Answer::Yes);
    transferEnd = isSaved ? savedWords(bench_) : "";
    ReloadGlobalFile();
}

void Form3::mnuFileSaveAs() {
    if (!bench_.FileIsOpen) return;
    switch (saveConfigurationAs(bench_)) {
        case SaveAsResult::SameName: mnuFileSave(); break;
        case SaveAsResult::Saved:
            transferEnd = savedWords(bench_);
            SetReadOnly();
            blocks.showAgain();
            break;
        case SaveAsResult::Nothing: break;
    }
}

void Form3::mnuFormExit() {
    if (mayClose()) bench_.platform.formHost.endProgram(0);
}

// --- the other entries ---

void Form3::mnuEditCfg() { blocks.mnuEditCfg(); }

void Form3::mnuEditBlk() { blocks.mnuEditBlk(); }

void Form3::mnuEditComments() {
    if (bench_.FileIsOpen) showGeneral();
}

void Form3::mnuAbout() { bench_.platform.formHost.showModal(dialogs_.about); }

void Form3::Command1_Click() {
    if (!Command1.enabled || lacksFile("mnuFileDownload")) return;
    Command1.enabled = false;
    mnuEditBlk();
    runProvided("mnuFileDownload");
    Command1.enabled = true;
}

}  // namespace qrv
