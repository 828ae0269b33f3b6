// The main window: its menu and what each entry does, the title line, the open file's coming and going, the recent
// files. Its body, the map of blocks, is a BlockPanel.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "blocks/BlockPanel.h"
#include "platform/Controls.h"
#include "platform/FormHost.h"
#include "platform/MessageBox.h"
#include "shell/MainMenu.h"
#include "shell/RecentFiles.h"

namespace qrv {

class FrmAsk;
class frmAbout;
class frmGeneral;
class frmStart;
struct Workbench;

/// The forms that the main window opens.
struct Form3Dialogs {
    frmStart& start;      ///< the splash: hidden when a file is open
    FrmAsk& ask;          ///< the start dialog
    frmGeneral& general;  ///< name, comments, I/O
    frmAbout& about;
};

class Form3 final : public Form {
 public:
    /// @param commandLine  what stands behind the program's name
    Form3(Workbench& bench, const Form3Dialogs& dialogs, std::string commandLine);

    // --- the window ---
    void load() override;
    /// Each time the window comes up or control returns to it. The first time it opens the file of the command line or
    /// asks for one.
    void activate() override;
    /// The close box is the way out: it asks, and leaves by itself.
    bool queryUnload(UnloadMode mode) override;

    BlockPanel blocks;
    MainMenu menu;
    RecentFiles recentFiles;
    Button Command1{.caption = "DOWNLOAD", .enabled = false};
    /// An addition: how the last transfer ended, or the save behind it.
    std::string transferEnd;

    /// The user chooses an entry of the menu by its name. Nothing happens where it is disabled or hidden.
    void choose(std::string_view entry);
    /// Whether an entry does nothing now, for there are no tables behind its form while no file is open.
    [[nodiscard]] bool lacksFile(std::string_view entry) const;
    /// Whether an entry is disabled since nothing is provided for it yet.
    [[nodiscard]] bool isComing(std::string_view entry) const;
    /// Gives an entry, or `Command1` by way of "mnuFileDownload", what it does, and enables it: for forms that stand
    /// beside the main window. Until then it is disabled.
    void provide(std::string_view entry, std::function<void()> action);

    // --- the entries ---
    void mnuFileNew();
    void mnuFileOpen();
    void mnuFileSave();
    void mnuFileSaveAs();
    void mnuFileUpload() { runProvided("mnuFileUpload"); }
    void mnuFileDownload() { Command1_Click(); }
    void mnuFileImportSelect() { runProvided("mnuFileImportSelect"); }
    void mnuFileExportSelect() { runProvided("mnuFileExportSelect"); }
    void mnuFileStickChartSelect() { runProvided("mnuFileStickChartSelect"); }
    void mnuFileCompare() { runProvided("mnuFileCompare"); }
    void mnuFileCheck() { runProvided("mnuFileCheck"); }
    void mnuFilePrint() { runProvided("mnuFilePrint"); }
    void mnuFormExit();
    void mnuRecentFile_Click(int index);
    void mnuEditCfg();
    void mnuEditBlk();
    void mnuEditLCD() { runProvided("mnuEditLCD"); }
    void mnuEditAlarm() { runProvided("mnuEditAlarm"); }
    void mnuEditChart() { runProvided("mnuEditChart"); }
    void mnuEditEGU() { runProvided("mnuEditEGU"); }
    void mnuEditPager() { runProvided("mnuEditPager"); }
    void mnuEditLoop() { runProvided("mnuEditLoop"); }
    void mnuEditComments();
    void mnuEditPoll() { runProvided("mnuEditPoll"); }
    void mnuEditComPort() { runProvided("mnuEditComPort"); }
    void mnuViewAll() { runProvided("mnuViewAll"); }
    void mnuViewSel() { runProvided("mnuViewSel"); }
    void mnuAbout();
    /// "DOWNLOAD": disabled while what was provided for it runs.
    void Command1_Click();

    // --- files ---
    /// Opens the recent file with an index, 1 to 4, unless it is gone or open already. Closes nothing first.
    void GetRecentFile(int index);
    /// Opens the user's file again in a fresh work copy.
    void ReloadGlobalFile();
    /// Fits the menu to whether the open file is read-only. An upload, once taken away, never comes back.
    void SetReadOnly();

 private:
    /// Asks the save question and closes the open file. False: the user cancelled, and the file stays open. Without an
    /// open file nothing is asked.
    bool mayClose();
    [[nodiscard]] Answer askToSave();
    void afterOpening();
    /// Name, comments and I/O in the main window's place, until that form brings it back.
    void showGeneral();
    void openAsRecent(int index, const std::string& path);
    /// Says so where a file is gone.
    [[nodiscard]] bool isThere(const std::string& path);
    void addRecentFile(const std::string& path);
    void showOpened();
    /// The data view, without a click on a block.
    void leaveAssignmentView();
    void showBoards();
    void activateFirstTime();
    void runProvided(std::string_view entry);
    void wireWindows();

    Workbench& bench_;
    Form3Dialogs dialogs_;
    std::string commandLine_;
    std::map<std::string, std::function<void()>, std::less<>> provided_;
    int recentIndex_ = 0;  ///< the recent file that is being opened; 0 for any other
    bool isStarting_ = false;
};

}  // namespace qrv
