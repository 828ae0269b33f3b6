// What a download looks at before it begins, its sections, its progress, and Cancel.
#include "link/frmDownload.h"

#include <gtest/gtest.h>

#include <map>

#include "TransferRig.h"
#include "link/DownloadSections.h"

namespace qrv::test {

namespace {

SimSetup firmware(const std::string& version) { return {.versionText = "V" + version + " QRV"}; }

/// Loads the form with boxes set, and says why it would leave.
std::string reasonAfterLoad(TransferRig& rig, std::initializer_list<Choice frmSelect::*> boxes) {
    for (Choice frmSelect::*box : boxes) (rig.select.*box).value = true;
    rig.download.load();
    return rig.bench.xfer_abort ? rig.bench.xfer_abort_reason : "";
}

void addConstants(TransferRig& rig, int wanted) {
    db1& db = rig.bench.db;
    int count = 0;
    for (db.ConstantMoveFirst(); !db.ConstantEOF(); db.ConstantMoveNext()) ++count;
    for (int offset = 0; count < wanted; ++count, ++offset) {
        db.ConstantAddNew();
        db.ConstantBlockNumber(599);
        db.ConstantOffset(offset);
        db.ConstantValue(0);
        db.ConstantUpdate();
    }
}

/// Blocks from 10 on get functions until the sum of their retentive bytes is `wanted`.
void useRetentive(TransferRig& rig, int wanted) {
    db1& db = rig.bench.db;
    int sum = 0;
    db.FuncSetIndex("FN");
    for (db.BlockMoveFirst(); !db.BlockEOF(); db.BlockMoveNext()) {
        db.FuncSeekI(db.BlockFn());
        sum += db.FuncVolRam();
    }
    for (std::int16_t block = 10; sum < wanted; ++block) {
        int best = -1;
        int bestSize = 0;
        for (int function = 0; function < 127; ++function) {
            db.FuncSeekI(function);
            if (db.FuncNoMatch() || db.FuncVolRam() > wanted - sum || db.FuncVolRam() <= bestSize) continue;
            best = function;
            bestSize = db.FuncVolRam();
        }
        ASSERT_GE(best, 0) << "the catalogue has no function small enough";
        db.BlockSeek(block);
        db.BlockEdit();
        db.BlockFn(best);
        db.BlockUpdate();
        sum += bestSize;
    }
}

}  // namespace

TEST(frmDownload, WholeDownloadCommitsOnce) {
    TransferRig rig;
    rig.place(4, "PID");
    rig.runDownload();
    EXPECT_EQ(rig.controller.counters().commits, 1U);
    EXPECT_EQ(rig.controller.counters().announces, 1U);
    EXPECT_TRUE(rig.download.outcome().committed);
    EXPECT_EQ(rig.download.Label7.caption, "100%");
    EXPECT_TRUE(rig.command1);
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_FALSE(rig.bench.in_download);
    EXPECT_FALSE(rig.bench.xfer_abort);
}

TEST(frmDownload, NothingTickedLeavesAtActivationWithoutAWord) {
    TransferRig rig;
    rig.host.load(rig.select);
    rig.host.showModal(rig.download);
    EXPECT_EQ(rig.bench.xfer_abort_reason, "Form Download Form Activate");
    EXPECT_FALSE(rig.host.isVisible(rig.download));
    EXPECT_FALSE(rig.port.isOpen());
}

TEST(frmDownload, ConstantsOf5632Pass) {
    TransferRig rig;
    addConstants(rig, 5632);
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Blocks}), "");
}

TEST(frmDownload, The5633rdConstantStopsBeforeTheFirstFrame) {
    TransferRig rig;
    addConstants(rig, 5633);
    rig.boxes.expect("Config Exceeds Maximum size at block # 602");
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Blocks}), "Form Download Form Load Num Constants");
    EXPECT_TRUE(rig.record.sends.empty());
}

TEST(frmDownload, RetentiveSumOf634Passes) {
    TransferRig rig;
    useRetentive(rig, 634);
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Blocks}), "");
}

TEST(frmDownload, RetentiveSumOf635Stops) {
    TransferRig rig;
    useRetentive(rig, 635);
    std::int16_t last = 0;
    db1& db = rig.bench.db;
    db.FuncSetIndex("FN");
    for (db.BlockMoveFirst(); !db.BlockEOF(); db.BlockMoveNext()) {
        db.FuncSeekI(db.BlockFn());
        if (db.FuncVolRam() > 0) last = db.blockNumber();
    }
    rig.boxes.expect("Maximum Retentive Bytes Exceeded At Block # " + std::to_string(last));
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Blocks}), "Form Download Form Load Num Volram");
    EXPECT_TRUE(rig.record.sends.empty());
}

TEST(frmDownload, APortThatWontOpen) {
    TransferRig rig;
    rig.port.refuseToOpen();
    rig.boxes.expect("COM1: not available. Change the setting to another port.");
    rig.boxes.expect(Notice{.text = "Could Not Open Comm Port", .title = "Comm Error"});
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Blocks}), "Form Download Form Load comm open fail");
}

TEST(frmDownload, NoController) {
    TransferRig rig;
    rig.controller.play(SimFaultPlan::always("silence"));
    rig.boxes.expect("Could Not Connect To Target\nCheck Settings And Connection Cables");
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Blocks}), "Form Download Form Load poll fail");
    EXPECT_FALSE(rig.port.isOpen());
}

struct VersionText {
    const char* name;
    const char* text;
    bool good;
};

class frmDownloadVersion : public testing::TestWithParam<VersionText> {};

TEST_P(frmDownloadVersion, FourCharactersMustBeADecimalNumber) {
    TransferRig rig(SimSetup{.versionText = GetParam().text});
    if (!GetParam().good) rig.boxes.expect("Could not acquire ROM Version. Download Aborted");
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Blocks}), GetParam().good ? "" : "Form Download Form Load bad version");
}

INSTANTIATE_TEST_SUITE_P(Edges, frmDownloadVersion,
                         testing::Values(VersionText{"plain", "V6.73", true}, VersionText{"blank", "V6.7 ", true},
                                         VersionText{"noBlankBehind", "V6.73QRV", true},
                                         VersionText{"letter", "V6.7X", false}, VersionText{"exponent", "V1E1 ", false},
                                         VersionText{"words", "QRV 6", false}),
                         [](const auto& row) { return row.param.name; });

struct Gate {
    const char* name;
    const char* version;
    bool passes;
};

class frmDownloadTriacGate : public testing::TestWithParam<Gate> {};

TEST_P(frmDownloadTriacGate, WarnsAndGoesOnWithTheLoad) {
    TransferRig rig(firmware(GetParam().version));
    rig.bench.db.SlotMoveFirst();
    rig.bench.db.SlotMoveNext();
    rig.bench.db.SlotEdit();
    rig.bench.db.SlotDescription("TRIAC OUTPUT      610033");
    rig.bench.db.SlotUpdate();
    if (!GetParam().passes) rig.boxes.expect("TOUT Modules Require Firmware V6.20 or Higher. Download Aborted");
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Blocks}),
              GetParam().passes ? "" : "Form Download Form Load TOUT firmware");
    EXPECT_EQ(rig.download.Label2.caption, "Click Start to Begin Download");
    EXPECT_TRUE(rig.port.isOpen());
}

INSTANTIATE_TEST_SUITE_P(Edges, frmDownloadTriacGate,
                         testing::Values(Gate{"below", "6.19", false}, Gate{"at", "6.20", true},
                                         Gate{"above", "6.21", true}),
                         [](const auto& row) { return row.param.name; });

// The load goes on through the other gates; the form leaves at its activation, and lets the port go.
TEST(frmDownload, ATriacBoardOnOldFirmwareLetsTheOtherGatesSpeakAndLeaves) {
    TransferRig rig(firmware("4.00"));
    rig.bench.db.SlotMoveFirst();
    rig.bench.db.SlotMoveNext();
    rig.bench.db.SlotEdit();
    rig.bench.db.SlotDescription("TRIAC OUTPUT      610033");
    rig.bench.db.SlotUpdate();
    rig.boxes.expect("TOUT Modules Require Firmware V6.20 or Higher. Download Aborted");
    rig.boxes.expect("ROM Version 4.00 Does Not Support Modbus\nRegisters and Coils Will Not Be Downloaded");
    rig.select.Blocks.value = true;
    rig.select.Modbus.value = true;
    rig.command1 = false;
    rig.host.showModal(rig.download);
    EXPECT_FALSE(rig.host.isLoaded(rig.download));
    EXPECT_EQ(rig.download.outcome().reason, "Form Download Form Load TOUT firmware");
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_TRUE(rig.command1);
    EXPECT_FALSE(rig.bench.xfer_abort) << "it would end the exchanges of the next that talks to a controller";
    EXPECT_EQ(rig.record.sends.size(), 2U);
}

TEST(frmDownload, APortThatWontOpenAtTheStart) {
    TransferRig rig;
    rig.host.load(rig.select);
    rig.select.Blocks.value = true;
    rig.boxes.expect("COM1: not available. Change the setting to another port.");
    rig.host.onModal("frmDownload", [&](Form&) {
        rig.port.refuseToOpen();
        rig.download.Download_Click();
    });
    rig.host.showModal(rig.download);
    EXPECT_EQ(rig.record.sends.size(), 2U);
    EXPECT_EQ(rig.download.outcome().reason, "Form Download Form Load comm open fail");
    EXPECT_EQ(rig.download.outcome().stage, DownloadStage::Reaching) << "no fault of the configuration's";
    EXPECT_EQ(rig.download.Label7.caption, "100%");
    EXPECT_FALSE(rig.bench.in_download);
    EXPECT_FALSE(rig.bench.xfer_abort);
    EXPECT_TRUE(rig.command1);
}

class frmDownloadPagerGate : public testing::TestWithParam<Gate> {};

TEST_P(frmDownloadPagerGate, PagersAskForFirmware438) {
    TransferRig rig(firmware(GetParam().version));
    rig.bench.FnOfBlock[7] = 94;
    if (!GetParam().passes) {
        rig.boxes.expect("ROM Version " + std::string(GetParam().version) +
                         " Does Not Support Pagers\nPager Numbers Will Not Be Downloaded");
    }
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Pager}), "");
    EXPECT_TRUE(rig.bench.has_pager_block);
    EXPECT_EQ(rig.bench.pager_supported, GetParam().passes);
    EXPECT_EQ(rig.bench.dl_pager, GetParam().passes);
    EXPECT_EQ(rig.bench.dl_alarms, GetParam().passes);
}

INSTANTIATE_TEST_SUITE_P(Edges, frmDownloadPagerGate,
                         testing::Values(Gate{"below", "4.37", false}, Gate{"at", "4.38", true},
                                         Gate{"above", "4.39", true}),
                         [](const auto& row) { return row.param.name; });

TEST(frmDownload, AlarmsAloneAskForPagersToo) {
    TransferRig rig(firmware("4.37"));
    rig.bench.FnOfBlock[704] = 94;
    rig.boxes.expect("ROM Version 4.37 Does Not Support Pagers\nPager Numbers Will Not Be Downloaded");
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Alarms}), "");
    EXPECT_TRUE(rig.bench.has_pager_block);
    EXPECT_TRUE(rig.bench.dl_alarms);
}

TEST(frmDownload, TheBlockBeforeTheFirstIsNotAskedForPagers) {
    TransferRig rig;
    rig.bench.FnOfBlock[0] = 94;
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Pager, &frmSelect::Blocks}), "");
    EXPECT_FALSE(rig.bench.has_pager_block);
    EXPECT_FALSE(rig.bench.dl_pager);
}

TEST(frmDownload, WhatAnEarlierDownloadKnewOfPagersIsForgotten) {
    TransferRig rig;
    rig.bench.has_pager_block = true;
    rig.bench.pager_supported = true;
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Blocks}), "");
    EXPECT_FALSE(rig.bench.has_pager_block);
    EXPECT_FALSE(rig.bench.pager_supported);
}

class frmDownloadModbusGate : public testing::TestWithParam<Gate> {};

TEST_P(frmDownloadModbusGate, ModbusAsksForFirmware41) {
    TransferRig rig(firmware(GetParam().version));
    if (!GetParam().passes) {
        rig.boxes.expect("ROM Version " + std::string(GetParam().version) +
                         " Does Not Support Modbus\nRegisters and Coils Will Not Be Downloaded");
    }
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Modbus}), "");
    EXPECT_EQ(rig.bench.dl_modbus, GetParam().passes);
}

INSTANTIATE_TEST_SUITE_P(Edges, frmDownloadModbusGate,
                         testing::Values(Gate{"below", "4.09", false}, Gate{"at", "4.10", true},
                                         Gate{"above", "4.11", true}),
                         [](const auto& row) { return row.param.name; });

class frmDownloadChartGate : public testing::TestWithParam<Gate> {};

TEST_P(frmDownloadChartGate, ChartsAskForFirmware438AndBringUnits) {
    TransferRig rig(firmware(GetParam().version));
    if (!GetParam().passes) {
        rig.boxes.expect("ROM Version " + std::string(GetParam().version) +
                         " Does Not Support Charts\nCharts will not be downloaded");
    }
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Charts}), "");
    EXPECT_EQ(rig.bench.dl_charts, GetParam().passes);
    EXPECT_EQ(rig.bench.dl_egus, GetParam().passes);
}

INSTANTIATE_TEST_SUITE_P(Edges, frmDownloadChartGate,
                         testing::Values(Gate{"below", "4.37", false}, Gate{"at", "4.38", true},
                                         Gate{"above", "4.39", true}),
                         [](const auto& row) { return row.param.name; });

class frmDownloadAnnounceGate : public testing::TestWithParam<Gate> {};

TEST_P(frmDownloadAnnounceGate, Command48AndForcedAlarmsTurnAtFirmware44) {
    TransferRig rig(firmware(GetParam().version));
    // Alarms are forced and can't be sent yet: blocks without them don't go to such firmware.
    if (!GetParam().passes) {
        rig.boxes.expect(
            "ROM Version 4.39 Needs Alarms With The Blocks\nThis Program Cannot Send Alarms Yet. Download Aborted");
    }
    GetParam().passes ? rig.runDownload() : rig.refusedDownload();
    EXPECT_EQ(rig.controller.counters().announces, GetParam().passes ? 1U : 0U);
    EXPECT_EQ(rig.controller.counters().commits, GetParam().passes ? 1U : 0U);
    EXPECT_EQ(rig.controller.counters().frames > 2U, GetParam().passes);
    EXPECT_EQ(rig.bench.dl_alarms, !GetParam().passes);
    EXPECT_EQ(rig.bench.bytes_total, GetParam().passes ? 36240 : 36240 + 3040);
    EXPECT_EQ(rig.download.outcome().reason, GetParam().passes ? "" : "Form Download Form Load no alarms");
    EXPECT_FALSE(rig.bench.xfer_abort) << "what comes next begins anew";
    EXPECT_FALSE(rig.port.isOpen());
}

INSTANTIATE_TEST_SUITE_P(Edges, frmDownloadAnnounceGate,
                         testing::Values(Gate{"below", "4.39", false}, Gate{"at", "4.40", true},
                                         Gate{"above", "4.41", true}),
                         [](const auto& row) { return row.param.name; });

TEST(frmDownload, PagerWithoutItsBlockIsDroppedSilently) {
    TransferRig rig;
    EXPECT_EQ(reasonAfterLoad(rig, {&frmSelect::Pager}), "");
    EXPECT_FALSE(rig.bench.dl_pager);
    EXPECT_FALSE(rig.bench.dl_alarms);
}

TEST(frmDownload, TheWheelTurnsThroughTheRainbowIn1530Steps) {
    TransferRig rig;
    frmDownload& form = rig.download;
    form.red = 255;
    form.reddir = 1;
    const std::map<int, std::int32_t> expected{{1, 255},      {2, 511},        {256, 65535},     {257, 65534},
                                               {511, 65280},  {766, 16776960}, {1021, 16711680}, {1276, 16711935},
                                               {1530, 65791}, {1531, 255}};
    for (int update = 1; update <= 1531; ++update) {
        form.update_progress_picture();
        const auto found = expected.find(update);
        if (found == expected.end()) continue;
        EXPECT_EQ(form.colr, found->second) << "after " << update;
    }
}

TEST(frmDownload, TheBarStaysInItsBox) {
    TransferRig rig;
    rig.bench.bytes_total = 0;
    rig.bench.bytes_sent = 15;
    rig.download.update_progress_picture();
    EXPECT_EQ(rig.download.Label7.caption, "100%");
    EXPECT_DOUBLE_EQ(rig.download.Progress.width, 7095);
    rig.bench.bytes_total = 1000;
    rig.bench.bytes_sent = 999;
    rig.download.update_progress_picture();
    EXPECT_EQ(rig.download.Label7.caption, "99%");
}

TEST(TransferProgress, IsShownAtASectionsBeginningAndThenTenTimesASecond) {
    TransferProgress progress;
    const Clock::TimePoint start{};
    const auto isShownAfter = [&](int passed) {
        progress.count(0, 0, start + std::chrono::milliseconds(passed));
        return progress.isToBeShown();
    };
    progress.start(2, start);
    progress.beginSection("one");
    EXPECT_TRUE(isShownAfter(0));
    EXPECT_FALSE(isShownAfter(99));
    EXPECT_TRUE(isShownAfter(100));
    EXPECT_FALSE(isShownAfter(150));
    progress.beginSection("two");
    EXPECT_TRUE(isShownAfter(151));
}

TEST(frmDownload, CancelStopsBeforeTheCommitAndSaysNothing) {
    TransferRig rig;
    rig.download.onProgress = [&] {
        if (rig.bench.bytes_sent == 300) rig.download.Cancel_Click();
    };
    rig.runDownload();
    EXPECT_EQ(rig.controller.counters().commits, 0U);
    EXPECT_EQ(rig.download.outcome().reason, "Form Download Cancel Button Click");
    EXPECT_TRUE(rig.command1);
}

TEST(frmDownload, ATextLongerThanItsFieldEndsTheDownloadAndNotTheProgram) {
    TransferRig rig;
    rig.place(5, "SCHEDULE");
    db1& db = rig.bench.db;
    db.ParmstrMoveFirst();
    ASSERT_FALSE(db.ParmstrEOF());
    db.ParmstrEdit();
    db.ParmstrStr("EIGHTEEN CHARACTERS");
    db.ParmstrUpdate();
    rig.boxes.expect({.text = "Run-time error '6':\n\nOverflow", .title = "QRV_Edit", .icon = Icon::Critical});
    rig.runDownload();
    EXPECT_EQ(rig.controller.counters().commits, 0U);
    EXPECT_EQ(rig.download.outcome().reason, "Runtime Error");
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_TRUE(rig.command1);
}

TEST(frmDownload, ClosingTheWindowInTheMidstCancels) {
    TransferRig rig;
    rig.download.onProgress = [&] {
        if (rig.bench.bytes_sent != 300) return;
        EXPECT_FALSE(rig.download.queryUnload(UnloadMode::ByUser));
    };
    rig.runDownload();
    EXPECT_EQ(rig.controller.counters().commits, 0U);
}

TEST(frmDownload, CancelBeforeStartClosesThePort) {
    TransferRig rig;
    rig.host.load(rig.select);
    rig.select.Blocks.value = true;
    rig.host.onModal("frmDownload", [&](Form&) { rig.download.Cancel_Click(); });
    rig.host.showModal(rig.download);
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_EQ(rig.controller.counters().frames, 2U);
}

TEST(DownloadSections, OnlyTheBlocksCanGoYetAndTheirOrderIsFixed) {
    const std::vector<std::string> order{"alarms", "pager", "modbus", "charts", "menus", "egus", "blocks"};
    std::vector<std::string> found;
    for (const DownloadSection& section : kDownloadSections) {
        found.emplace_back(section.word);
        EXPECT_EQ(section.isAvailable(), section.word == "blocks");
    }
    EXPECT_EQ(found, order);
}

}  // namespace qrv::test
