#include "shell/MainMenu.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace qrv {
namespace {

using Told = std::vector<std::pair<std::string, std::string>>;

Told entriesOf(const TopMenu& menu) {
    Told entries;
    for (const MenuEntry& entry : menu.entries) entries.emplace_back(entry.name, entry.caption);
    return entries;
}

TEST(MainMenu, HasThreeMenus) {
    const MainMenu menu;
    ASSERT_EQ(menu.menus().size(), 3U);
    EXPECT_EQ(menu.menus()[0].caption, "&File");
    EXPECT_EQ(menu.menus()[1].caption, "&Edit");
    EXPECT_EQ(menu.menus()[2].caption, "&View");
}

TEST(MainMenu, FileHasItsEntriesInOrder) {
    const Told told{{"mnuFileNew", "&New"},
                    {"mnuFileOpen", "&Open"},
                    {"mnuFileSave", "&Save"},
                    {"mnuFileSaveAs", "Sav&e As"},
                    {"mnuFileSep1", "-"},
                    {"mnuFileUpload", "&Upload From QRV"},
                    {"mnuFileDownload", "&Download To QRV"},
                    {"mnuFileImportSelect", "Data &Import..."},
                    {"mnuFileExportSelect", "Data E&xport..."},
                    {"mnuFileStickChartSelect", "Stick Chart..."},
                    {"mnuFileCompare", "&Compare Database Files"},
                    {"mnuFileCheck", "&QRV - Error Check"},
                    {"mnuFileSep2a", "-"},
                    {"mnuFilePrint", "&Print"},
                    {"mnuFileSep3", "-"},
                    {"mnuFormExit", "E&xit"},
                    {"mnuRecentFile0", "-"},
                    {"mnuRecentFile1", ""},
                    {"mnuRecentFile2", ""},
                    {"mnuRecentFile3", ""},
                    {"mnuRecentFile4", ""}};
    EXPECT_EQ(entriesOf(MainMenu().menus()[0]), told);
}

TEST(MainMenu, EditHasItsEntriesInOrder) {
    const Told told{{"mnuEditCfg", "Block &Function Type"},
                    {"mnuEditBlk", "&Block Data"},
                    {"mnuEditSep1", "-"},
                    {"mnuEditLCD", "&Menu/Screen Edit"},
                    {"mnuEditAlarm", "&Alarms / Events / Pages"},
                    {"mnuEditChart", "Chart &Edit"},
                    {"mnuEditEGU", "Engineering &Units"},
                    {"mnuEditPager", "&Pager Information"},
                    {"mnuEditLoop", "Screen L&oop List"},
                    {"mnuEditComments", "&Name, Comments, I/O"},
                    {"mnuEditPoll", "MODBUS &Setup"},
                    {"mnuEditSep2", "-"},
                    {"mnuEditComPort", "&Com Port Setup"}};
    EXPECT_EQ(entriesOf(MainMenu().menus()[1]), told);
}

TEST(MainMenu, ViewHasItsEntriesInOrder) {
    const Told told{{"mnuViewAll", "&All Blocks"}, {"mnuViewSel", "&Selected Blocks"}, {"mnuAbout", "&About"}};
    EXPECT_EQ(entriesOf(MainMenu().menus()[2]), told);
}

}  // namespace
}  // namespace qrv
