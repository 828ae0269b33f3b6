#include "shell/EditorProgram.h"

#include "platform/Folders.h"
#include "platform/FormHost.h"

namespace qrv {

// The main window is made before the forms that it opens and that need it: it keeps references and uses none yet.
EditorProgram::EditorProgram(const Platform& platform, const EditorStart& start)
    : bench(platform, start.places),
      about(bench, !start.isClassic),
      general(bench),
      blockQuestion(bench),
      comm(bench, start.serialPorts),
      allOutputs(bench, comm, start.isClassic ? StaleMarks::Absent : StaleMarks::Shown),
      tagQuestion(bench),
      chosenOutputs(bench, comm, tagQuestion, start.isClassic ? StaleMarks::Absent : StaleMarks::Shown),
      warn(bench, transferWindow),
      select(bench, transferWindow),
      download(bench, comm, select, transferWindow),
      upload(bench, comm, transferWindow, logFolders(systemEnvironment)),
      mainWindow(bench, {.start = splash, .ask = ask, .general = general, .about = about}, start.commandLine),
      recent(bench.platform.formHost, mainWindow.recentFiles, [this](int index) { mainWindow.GetRecentFile(index); }),
      ask(bench, recent),
      splash(bench, about, mainWindow) {
    if (!start.isClassic) bench.windows.newFileTitle = "New Configuration";
    bench.windows.loadBoardTexts = [this] { general.loadBoardTexts(); };
    bench.windows.storeBoardTexts = [this] { general.storeBoardTexts(); };
    mainWindow.provide("mnuEditComPort", [this] { bench.platform.formHost.showModal(comm); });
    mainWindow.provide("mnuViewAll", [this] { showInItsPlace(allOutputs); });
    mainWindow.provide("mnuViewSel", [this] { showInItsPlace(chosenOutputs); });
    mainWindow.blocks.setToolTips(!start.isClassic);
    wireTransfer();
}

void EditorProgram::wireTransfer() {
    select.continueWith(download);
    transferWindow.enableCommand1 = [this](bool enabled) { mainWindow.Command1.enabled = enabled; };
    transferWindow.refreshGrid = [this] { mainWindow.blocks.refillGrid1(); };
    transferWindow.refreshAll = [this] {
        mainWindow.caption = bench.TitleText;
        mainWindow.blocks.fill_grid1();
        mainWindow.blocks.fillIg();
        mainWindow.blocks.showNone();
        // The block on show may be another one now. In the assignment view a click would place a function.
        mainWindow.blocks.mnuEditBlk();
        mainWindow.SetReadOnly();
    };
    transferWindow.refreshSlots = [this] { general.showBoardTexts(); };
    transferWindow.showGeneral = [this] {
        general.loadBoardTexts();
        bench.platform.formHost.showModal(general);
    };
    transferWindow.tellEnd = [this](const std::string& words) { mainWindow.transferEnd = words; };
    mainWindow.provide("mnuFileDownload", [this] { startDownload(); });
    mainWindow.provide("mnuFileUpload", [this] { bench.platform.formHost.showModal(upload); });
}

void EditorProgram::startDownload() {
    FormHost& host = bench.platform.formHost;
    host.showModal(warn);
    const bool cancelled = warn.cancelled;
    host.unload(warn);
    if (!cancelled) host.showModal(select);
}

void EditorProgram::showInItsPlace(Form& form) {
    bench.windows.hideMain();
    bench.platform.formHost.show(form);
}

void EditorProgram::start() { bench.platform.formHost.show(splash); }

}  // namespace qrv
