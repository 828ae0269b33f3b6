// The two dialogs before a download: the warning, and what is to go.
#include "link/frmSelect.h"

#include <gtest/gtest.h>

#include "TransferRig.h"
#include "link/frmDownload.h"
#include "link/frmWarn.h"

namespace qrv::test {

TEST(frmWarn, OnlyContinueConsents) {
    TransferRig rig;
    rig.host.onModal("frmWarn", [&](Form&) { rig.warn.Command1_Click(); });
    rig.host.showModal(rig.warn);
    EXPECT_FALSE(rig.warn.cancelled);
    rig.host.unload(rig.warn);
    rig.command1 = false;
    rig.host.onModal("frmWarn", [&](Form&) { rig.host.close(rig.warn); });
    rig.host.showModal(rig.warn);
    EXPECT_TRUE(rig.warn.cancelled);
    EXPECT_TRUE(rig.command1);
}

TEST(frmSelect, BoxesOfMissingSectionsAreDisabledAndStayClear) {
    TransferRig rig;
    rig.host.load(rig.select);
    rig.select.btnAll_Click();
    for (const auto& [name, box] : rig.select.boxes()) {
        EXPECT_EQ(box->enabled, box == &rig.select.Blocks) << box->caption;
        EXPECT_EQ(box->value, box == &rig.select.Blocks) << box->caption;
    }
    rig.select.btnNone_Click();
    EXPECT_FALSE(rig.select.Blocks.value);
}

TEST(frmSelect, ItsBoxesStandInTheirOrderEachUnderItsName) {
    TransferRig rig;
    std::vector<std::string> shown;
    for (const auto& [name, box] : rig.select.boxes()) shown.push_back(name + std::string(": ") + box->caption);
    EXPECT_EQ(shown, (std::vector<std::string>{"Blocks: Blocks", "Alarms: Alarms", "Pager: Pager Information + Alarms",
                                               "Egus: Engineering Units", "Modbus: Modbus Registers + Coils",
                                               "Menus: Menus + Screens + EGUs", "Charts: Charts + EGUs"}));
}

TEST(frmSelect, EnterContinues) {
    TransferRig rig;
    EXPECT_TRUE(rig.select.Command1.isDefault);
    EXPECT_FALSE(rig.select.Command2.isDefault);
}

TEST(frmSelect, WaitsForTheDownloadThatItBegan) {
    TransferRig rig;
    rig.host.load(rig.select);
    rig.select.Blocks.value = true;
    int downloads = 0;
    rig.host.onModal("frmDownload", [&](Form&) {
        ++downloads;
        rig.download.Cancel_Click();
    });
    rig.pump.at(rig.clock.now(), [&] {
        // The user's hand while the controller is looked for.
        rig.select.Command1_Click();
        rig.select.Command2_Click();
        EXPECT_FALSE(rig.select.queryUnload(UnloadMode::ByUser));
    });
    rig.command1 = false;
    rig.select.Command1_Click();
    EXPECT_EQ(downloads, 1);
}

TEST(frmSelect, EveryWayOutLetsTheNextTransferBegin) {
    TransferRig rig;
    rig.host.onModal("frmSelect", [&](Form&) { rig.select.Command2_Click(); });
    rig.command1 = false;
    rig.host.showModal(rig.select);
    EXPECT_TRUE(rig.command1) << "Cancel";
    rig.host.onModal("frmSelect", [&](Form&) { rig.host.close(rig.select); });
    rig.command1 = false;
    rig.host.showModal(rig.select);
    EXPECT_TRUE(rig.command1) << "the window's frame";
    EXPECT_TRUE(rig.record.sends.empty());
}

}  // namespace qrv::test
