// Form3's menu: from the name of an entry to what it does, and the recent files.
#include <algorithm>
#include <array>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/WhileSet.h"
#include "shell/Form3.h"
#include "store/LifeCycle.h"

namespace qrv {

namespace {

/// Whether an entry means anything while no file is open.
enum class Needs { Nothing, OpenFile };

struct Action {
    std::string_view entry;
    void (Form3::*run)();
    Needs needs;
};

constexpr std::array kActions{
    Action{"mnuFileNew", &Form3::mnuFileNew, Needs::Nothing},
    Action{"mnuFileOpen", &Form3::mnuFileOpen, Needs::Nothing},
    Action{"mnuFileSave", &Form3::mnuFileSave, Needs::OpenFile},
    Action{"mnuFileSaveAs", &Form3::mnuFileSaveAs, Needs::OpenFile},
    Action{"mnuFileUpload", &Form3::mnuFileUpload, Needs::OpenFile},
    Action{"mnuFileDownload", &Form3::mnuFileDownload, Needs::OpenFile},
    Action{"mnuFileImportSelect", &Form3::mnuFileImportSelect, Needs::OpenFile},
    Action{"mnuFileExportSelect", &Form3::mnuFileExportSelect, Needs::OpenFile},
    Action{"mnuFileStickChartSelect", &Form3::mnuFileStickChartSelect, Needs::OpenFile},
    Action{"mnuFileCompare", &Form3::mnuFileCompare, Needs::OpenFile},
    Action{"mnuFileCheck", &Form3::mnuFileCheck, Needs::OpenFile},
    Action{"mnuFilePrint", &Form3::mnuFilePrint, Needs::OpenFile},
    Action{"mnuFormExit", &Form3::mnuFormExit, Needs::Nothing},
    Action{"mnuEditCfg", &Form3::mnuEditCfg, Needs::Nothing},
    Action{"mnuEditBlk", &Form3::mnuEditBlk, Needs::Nothing},
    Action{"mnuEditLCD", &Form3::mnuEditLCD, Needs::OpenFile},
    Action{"mnuEditAlarm", &Form3::mnuEditAlarm, Needs::OpenFile},
    Action{"mnuEditChart", &Form3::mnuEditChart, Needs::OpenFile},
    Action{"mnuEditEGU", &Form3::mnuEditEGU, Needs::OpenFile},
    Action{"mnuEditPager", &Form3::mnuEditPager, Needs::OpenFile},
    Action{"mnuEditLoop", &Form3::mnuEditLoop, Needs::OpenFile},
    Action{"mnuEditComments", &Form3::mnuEditComments, Needs::OpenFile},
    Action{"mnuEditPoll", &Form3::mnuEditPoll, Needs::OpenFile},
    Action{"mnuEditComPort", &Form3::mnuEditComPort, Needs::Nothing},
    Action{"mnuViewAll", &Form3::mnuViewAll, Needs::OpenFile},
    Action{"mnuViewSel", &Form3::mnuViewSel, Needs::OpenFile},
    Action{"mnuAbout", &Form3::mnuAbout, Needs::Nothing},
};

}  // namespace

bool Form3::lacksFile(std::string_view entry) const {
    const auto action = std::ranges::find(kActions, entry, &Action::entry);
    return action != kActions.end() && action->needs == Needs::OpenFile && !bench_.FileIsOpen;
}

void Form3::choose(std::string_view entry) {
    const MenuEntry& chosen = menu.entry(entry);
    if (!chosen.visible || !chosen.enabled) return;
    for (int index = 1; index <= kRecentFileCount; ++index) {
        if (entry == menu.mnuRecentFile(index).name) return mnuRecentFile_Click(index);
    }
    const auto action = std::ranges::find(kActions, entry, &Action::entry);
    if (action != kActions.end() && !lacksFile(entry)) (this->*action->run)();
}

void Form3::provide(std::string_view entry, std::function<void()> action) {
    provided_.insert_or_assign(std::string(entry), std::move(action));
    menu.entry(entry).enabled = true;
    if (entry == "mnuFileDownload") Command1.enabled = true;
}

void Form3::runProvided(std::string_view entry) {
    const auto found = provided_.find(entry);
    if (found != provided_.end()) found->second();
}

// --- recent files ---

void Form3::addRecentFile(const std::string& path) {
    recentIndex_ > 0 ? recentFiles.moveToTop(recentIndex_, path) : recentFiles.add(path);
}

void Form3::openAsRecent(int index, const std::string& path) {
    const WhileSet<int> opening(recentIndex_, index);
    OpenConfiguration(bench_, path);
    // The work copy counts as written now. Nothing depends on it, so a time that can't be set is no matter.
    const auto now = bench_.platform.clock.wallTime();
    const auto written = lastWriteTime(bench_.WorkFileName);
    if (written && now > *written) static_cast<void>(setFileTimes(bench_.WorkFileName, now));
}

bool Form3::isThere(const std::string& path) {
    if (exists(absolutePath(path))) return true;
    bench_.platform.messageBox.say(path + " No Longer Exists");
    return false;
}

void Form3::GetRecentFile(int index) {
    const std::string tag = menu.mnuRecentFile(index).tag;
    const std::string path = absolutePath(tag);
    if (!isThere(tag) || path == bench_.CurrentFileName) return;
    openAsRecent(index, path);
    blocks.fill_grid1();
}

void Form3::mnuRecentFile_Click(int index) {
    const std::string tag = menu.mnuRecentFile(index).tag;
    const std::string path = absolutePath(tag);
    if (!mayClose()) return;
    if (!isThere(tag) || path == bench_.CurrentFileName) {
        ReloadGlobalFile();
        return;
    }
    openAsRecent(index, path);
    afterOpening();
}

}  // namespace qrv
