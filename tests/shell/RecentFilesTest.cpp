#include "shell/RecentFiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "shell/MainMenu.h"
#include "twins/MemorySettings.h"

namespace qrv {
namespace {

using Paths = std::vector<std::string>;

struct RecentRig {
    MemorySettings settings;
    MainMenu menu;
    RecentFiles files{settings, menu};

    RecentRig() { files.clearMenu(); }
    void store(const Paths& paths) {
        for (std::size_t i = 0; i < paths.size(); ++i) {
            settings.save("Recent Files", "RecentFile" + std::to_string(i + 1), paths[i]);
        }
        files.rebuild();
    }
    [[nodiscard]] Paths stored() const {
        Paths found;
        for (const char* key : {"RecentFile1", "RecentFile2", "RecentFile3", "RecentFile4", "RecentFile5"}) {
            found.push_back(settings.get("Recent Files", key, ""));
        }
        while (!found.empty() && found.back().empty()) found.pop_back();
        return found;
    }
    [[nodiscard]] Paths shown() const {
        Paths tags;
        for (int i = 1; i <= 4; ++i) {
            if (menu.mnuRecentFile(i).visible) tags.push_back(menu.mnuRecentFile(i).tag);
        }
        return tags;
    }
};

TEST(RecentFiles, AnEmptyListShowsNoEntryAndNoSeparator) {
    RecentRig rig;
    rig.files.rebuild();
    EXPECT_FALSE(rig.menu.mnuRecentFile(0).visible);
    EXPECT_EQ(rig.shown(), Paths{});
}

TEST(RecentFiles, TheFirstShowsTheSeparatorToo) {
    RecentRig rig;
    rig.files.add("/a.qrv");
    EXPECT_TRUE(rig.menu.mnuRecentFile(0).visible);
    EXPECT_EQ(rig.shown(), (Paths{"/a.qrv"}));
    EXPECT_EQ(rig.stored(), (Paths{"/a.qrv"}));
}

TEST(RecentFiles, TheFifthPushesTheOldestOut) {
    RecentRig rig;
    for (const char* path : {"/a", "/b", "/c", "/d", "/e"}) rig.files.add(path);
    EXPECT_EQ(rig.stored(), (Paths{"/e", "/d", "/c", "/b"}));
    EXPECT_EQ(rig.shown(), (Paths{"/e", "/d", "/c", "/b"}));
}

TEST(RecentFiles, APathThatIsListedMovesNothing) {
    RecentRig rig;
    rig.store({"/a", "/b", "/c"});
    rig.files.add("/c");
    EXPECT_EQ(rig.stored(), (Paths{"/a", "/b", "/c"}));
}

TEST(RecentFiles, ListedMeansEqualToTheLetter) {
    RecentRig rig;
    rig.store({"/a"});
    rig.files.add("/A");
    EXPECT_EQ(rig.stored(), (Paths{"/A", "/a"}));
}

TEST(RecentFiles, TheThirdMovesToTheTop) {
    RecentRig rig;
    rig.store({"/a", "/b", "/c", "/d"});
    rig.files.moveToTop(3, "/c");
    EXPECT_EQ(rig.stored(), (Paths{"/c", "/a", "/b", "/d"}));
    EXPECT_EQ(rig.shown(), (Paths{"/c", "/a", "/b", "/d"}));
}

TEST(RecentFiles, TheFirstMovedToTheTopStays) {
    RecentRig rig;
    rig.store({"/a", "/b"});
    rig.files.moveToTop(1, "/a");
    EXPECT_EQ(rig.stored(), (Paths{"/a", "/b"}));
}

TEST(RecentFiles, CaptionAndTagAreThePathAsItIs) {
    RecentRig rig;
    rig.files.add("/boiler & pump.qrv");
    EXPECT_EQ(rig.menu.mnuRecentFile(1).caption, "/boiler & pump.qrv");
    EXPECT_EQ(rig.menu.mnuRecentFile(1).tag, "/boiler & pump.qrv");
}

TEST(RecentFiles, ClearingHidesEveryEntry) {
    RecentRig rig;
    rig.store({"/a", "/b"});
    rig.files.clearMenu();
    EXPECT_FALSE(rig.menu.mnuRecentFile(0).visible);
    EXPECT_EQ(rig.shown(), Paths{});
    EXPECT_EQ(rig.menu.mnuRecentFile(1).tag, "");
}

}  // namespace
}  // namespace qrv
