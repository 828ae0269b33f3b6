#include "shell/EditorProgram.h"

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
      mainWindow(bench, {.start = splash, .ask = ask, .general = general, .about = about}, start.commandLine),
      recent(bench.platform.formHost, mainWindow.recentFiles, [this](int index) { mainWindow.GetRecentFile(index); }),
      ask(bench, recent),
      splash(bench, about, mainWindow) {
    bench.windows.loadBoardTexts = [this] { general.loadBoardTexts(); };
    bench.windows.storeBoardTexts = [this] { general.storeBoardTexts(); };
    mainWindow.provide("mnuEditComPort", [this] { bench.platform.formHost.showModal(comm); });
    mainWindow.provide("mnuViewAll", [this] { showInItsPlace(allOutputs); });
    mainWindow.provide("mnuViewSel", [this] { showInItsPlace(chosenOutputs); });
    mainWindow.blocks.setToolTips(!start.isClassic);
}

void EditorProgram::showInItsPlace(Form& form) {
    bench.windows.hideMain();
    bench.platform.formHost.show(form);
}

void EditorProgram::start() { bench.platform.formHost.show(splash); }

}  // namespace qrv
