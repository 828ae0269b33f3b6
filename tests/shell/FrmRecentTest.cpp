#include "shell/FrmRecent.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "shell/MainMenu.h"
#include "shell/RecentFiles.h"
#include "twins/MemorySettings.h"
#include "twins/ScriptedHost.h"

namespace qrv {
namespace {

struct CutRow {
    const char* name;
    std::string whole;
    std::string shown;
};

class ShownNameTest : public testing::TestWithParam<CutRow> {};
TEST_P(ShownNameTest, IsCutAtTheEnd) { EXPECT_EQ(shownName(GetParam().whole), GetParam().shown); }
INSTANTIATE_TEST_SUITE_P(
    Edges, ShownNameTest,
    testing::Values(CutRow{"short", "a.qrv", "a.qrv"},
                    CutRow{"thirty", "abcdefghijklmnopqrstuvwxyz.qrv", "abcdefghijklmnopqrstuvwxyz.qrv"},
                    CutRow{"thirtyOne", "abcdefghijklmnopqrstuvwxyz1.qrv", "...abcdefghijklmnopqrstuvwxyz1.qr"}),
    [](const auto& row) { return row.param.name; });

class ShownFolderTest : public testing::TestWithParam<CutRow> {};
TEST_P(ShownFolderTest, IsCutAtTheStart) { EXPECT_EQ(shownFolder(GetParam().whole), GetParam().shown); }
INSTANTIATE_TEST_SUITE_P(Edges, ShownFolderTest,
                         testing::Values(CutRow{"short", "/home/me", "/home/me"},
                                         CutRow{"fortyFive", "/23456789/123456789/123456789/123456789/12345",
                                                "/23456789/123456789/123456789/123456789/12345"},
                                         CutRow{"fortySix", "/23456789/123456789/123456789/123456789/123456",
                                                "...89/123456789/123456789/123456789/123456"}),
                         [](const auto& row) { return row.param.name; });

struct ListRig {
    MemorySettings settings;
    MainMenu menu;
    RecentFiles files{settings, menu};
    ScriptedHost host;
    std::vector<int> opened;
    FrmRecent form{host, files, [this](int index) { opened.push_back(index); }};

    void store(int index, const std::string& path) {
        settings.save("Recent Files", "RecentFile" + std::to_string(index), path);
    }
    void showWith(const std::function<void()>& user) {
        host.onModal("FrmRecent", [user](Form&) { user(); });
        host.showModal(form);
    }
};

TEST(FrmRecent, ListsNameAndFolderOfEachFile) {
    ListRig rig;
    rig.store(1, "/home/me/boiler.qrv");
    rig.store(2, "C:\\plant\\chiller.mdb");
    rig.showWith([&rig] {
        ASSERT_EQ(rig.form.Grid1.rows(), 3);
        EXPECT_EQ(rig.form.Grid1.text(1, 0), "boiler.qrv");
        EXPECT_EQ(rig.form.Grid1.text(1, 1), "/home/me");
        EXPECT_EQ(rig.form.Grid1.text(2, 0), "chiller.mdb");
        EXPECT_EQ(rig.form.Grid1.text(2, 1), "C:\\plant");
        rig.form.Command2_Click();
    });
    EXPECT_TRUE(rig.opened.empty());
}

TEST(FrmRecent, RowAndMenuEntryHaveTheSameNumberEvenBehindAGap) {
    ListRig rig;
    rig.store(1, "/a.qrv");
    rig.store(3, "/c.qrv");
    rig.showWith([&rig] {
        ASSERT_EQ(rig.form.Grid1.rows(), 4);
        EXPECT_EQ(rig.form.Grid1.text(2, 0), "");
        EXPECT_TRUE(rig.form.Grid1.doubleClick(3, 0));
    });
    EXPECT_EQ(rig.opened, (std::vector<int>{3}));
}

TEST(FrmRecent, NothingIsListedBehindAnEmptyFirstPlace) {
    ListRig rig;
    rig.store(2, "/b.qrv");
    rig.showWith([&rig] {
        EXPECT_EQ(rig.form.Grid1.rows(), 1);
        rig.form.Command1_Click();
    });
    EXPECT_TRUE(rig.opened.empty());
}

TEST(FrmRecent, TheHelperGridIsHidden) {
    ListRig rig;
    EXPECT_FALSE(rig.form.Grid2.visible());
    EXPECT_EQ(rig.form.caption, "Recent Files");
}

}  // namespace
}  // namespace qrv
