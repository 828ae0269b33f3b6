#include "shell/MainMenu.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace qrv {

namespace {

struct EntryRow {
    std::string_view name;
    std::string_view caption;
};

struct MenuRow {
    std::string_view name;
    std::string_view caption;
};

constexpr MenuRow kFile{"mnuFile", "&File"};
constexpr MenuRow kEdit{"mnuEdit", "&Edit"};
constexpr MenuRow kView{"mnuView", "&View"};

constexpr std::array kFileEntries{
    EntryRow{.name = "mnuFileNew", .caption = "&New"},
    EntryRow{.name = "mnuFileOpen", .caption = "&Open"},
    EntryRow{.name = "mnuFileSave", .caption = "&Save"},
    EntryRow{.name = "mnuFileSaveAs", .caption = "Sav&e As"},
    EntryRow{.name = "mnuFileSep1", .caption = "-"},
    EntryRow{.name = "mnuFileUpload", .caption = "&Upload From QRV"},
    EntryRow{.name = "mnuFileDownload", .caption = "&Download To QRV"},
    EntryRow{.name = "mnuFileImportSelect", .caption = "Data &Import..."},
    EntryRow{.name = "mnuFileExportSelect", .caption = "Data E&xport..."},
    EntryRow{.name = "mnuFileStickChartSelect", .caption = "Stick Chart..."},
    EntryRow{.name = "mnuFileCompare", .caption = "&Compare Database Files"},
    EntryRow{.name = "mnuFileCheck", .caption = "&QRV - Error Check"},
    EntryRow{.name = "mnuFileSep2a", .caption = "-"},
    EntryRow{.name = "mnuFilePrint", .caption = "&Print"},
    EntryRow{.name = "mnuFileSep3", .caption = "-"},
    EntryRow{.name = "mnuFormExit", .caption = "E&xit"},
    EntryRow{.name = "mnuRecentFile0", .caption = "-"},
    EntryRow{.name = "mnuRecentFile1", .caption = ""},
    EntryRow{.name = "mnuRecentFile2", .caption = ""},
    EntryRow{.name = "mnuRecentFile3", .caption = ""},
    EntryRow{.name = "mnuRecentFile4", .caption = ""},
};

constexpr std::array kEditEntries{
    EntryRow{.name = "mnuEditCfg", .caption = "Block &Function Type"},
    EntryRow{.name = "mnuEditBlk", .caption = "&Block Data"},
    EntryRow{.name = "mnuEditSep1", .caption = "-"},
    EntryRow{.name = "mnuEditLCD", .caption = "&Menu/Screen Edit"},
    EntryRow{.name = "mnuEditAlarm", .caption = "&Alarms / Events / Pages"},
    EntryRow{.name = "mnuEditChart", .caption = "Chart &Edit"},
    EntryRow{.name = "mnuEditEGU", .caption = "Engineering &Units"},
    EntryRow{.name = "mnuEditPager", .caption = "&Pager Information"},
    EntryRow{.name = "mnuEditLoop", .caption = "Screen L&oop List"},
    EntryRow{.name = "mnuEditComments", .caption = "&Name, Comments, I/O"},
    EntryRow{.name = "mnuEditPoll", .caption = "MODBUS &Setup"},
    EntryRow{.name = "mnuEditSep2", .caption = "-"},
    EntryRow{.name = "mnuEditComPort", .caption = "&Com Port Setup"},
};

constexpr std::array kViewEntries{
    EntryRow{.name = "mnuViewAll", .caption = "&All Blocks"},
    EntryRow{.name = "mnuViewSel", .caption = "&Selected Blocks"},
    EntryRow{.name = "mnuAbout", .caption = "&About"},
};

template <std::size_t N>
TopMenu menuOf(const MenuRow& menu, const std::array<EntryRow, N>& rows) {
    TopMenu made{.name = std::string(menu.name), .caption = std::string(menu.caption), .entries = {}};
    for (const EntryRow& row : rows) {
        made.entries.push_back({.name = std::string(row.name), .caption = std::string(row.caption)});
    }
    return made;
}

}  // namespace

MainMenu::MainMenu() : menus_{menuOf(kFile, kFileEntries), menuOf(kEdit, kEditEntries), menuOf(kView, kViewEntries)} {}

const MenuEntry* MainMenu::find(std::string_view name) const {
    for (const TopMenu& menu : menus_) {
        const auto found = std::ranges::find(menu.entries, name, &MenuEntry::name);
        if (found != menu.entries.end()) return &*found;
    }
    return nullptr;
}

const MenuEntry& MainMenu::entry(std::string_view name) const {
    const MenuEntry* found = find(name);
    assert(found && "no such menu entry");
    return *found;
}

MenuEntry& MainMenu::entry(std::string_view name) { return const_cast<MenuEntry&>(std::as_const(*this).entry(name)); }

const MenuEntry& MainMenu::mnuRecentFile(int index) const { return entry("mnuRecentFile" + std::to_string(index)); }

MenuEntry& MainMenu::mnuRecentFile(int index) { return entry("mnuRecentFile" + std::to_string(index)); }

}  // namespace qrv
