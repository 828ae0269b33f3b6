// The whole desktop tool without its windows: the one Workbench, every form, and the wires between them. The desktop
// program gives it the machine's services and starts it; a test does the same with its own.
#pragma once

#include <string>

#include "blocks/frmBlock.h"
#include "blocks/frmGeneral.h"
#include "link/MGrid.h"
#include "link/Monitor.h"
#include "link/TransferWindow.h"
#include "link/frmComm.h"
#include "link/frmDownload.h"
#include "link/frmSelect.h"
#include "link/frmTag.h"
#include "link/frmUpload.h"
#include "link/frmWarn.h"
#include "platform/Platform.h"
#include "shell/Form3.h"
#include "shell/FrmAsk.h"
#include "shell/FrmRecent.h"
#include "shell/frmAbout.h"
#include "shell/frmStart.h"
#include "store/Workbench.h"

namespace qrv {

class SerialPortList;

/// How a program is started.
struct EditorStart {
    ProgramPlaces places;
    std::string commandLine;                ///< what stands behind the program's name, as `commandTail` gives it
    bool isClassic = false;                 ///< without additions
    SerialPortList* serialPorts = nullptr;  ///< the ports to choose from; null where the system lists none
};

class EditorProgram {
 public:
    EditorProgram(const Platform& platform, const EditorStart& start);
    EditorProgram(const EditorProgram&) = delete;
    EditorProgram& operator=(const EditorProgram&) = delete;

    /// Shows the splash; all else follows from it. A missing logo or catalogue raises.
    void start();

    Workbench bench;
    frmAbout about;
    frmGeneral general;
    frmBlock blockQuestion;
    frmComm comm;
    MGrid allOutputs;
    frmTag tagQuestion;
    Monitor chosenOutputs;
    TransferWindow transferWindow;
    frmWarn warn;
    frmSelect select;
    frmDownload download;
    frmUpload upload;
    Form3 mainWindow;
    FrmRecent recent;
    FrmAsk ask;
    frmStart splash;

 private:
    void wireTransfer();
    /// The warning first, then the selection.
    void startDownload();
    /// In the main window's place, until that form brings it back.
    void showInItsPlace(Form& form);
};

}  // namespace qrv
