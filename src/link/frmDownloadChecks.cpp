// What a download looks at before it begins: whether the configuration fits a controller, whether one is there, and
// what its firmware can take.
#include <algorithm>
#include <string>

#include "blocks/MemoryUse.h"
#include "link/DownloadSections.h"
#include "link/FirmwareVersion.h"
#include "link/frmComm.h"
#include "link/frmDownload.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "platform/RunTimeError.h"
#include "store/ControllerLimits.h"
#include "store/KnownFunctions.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr std::size_t kVersionDigits = 4;
constexpr const char* kTriacPartNumber = "610033";

constexpr std::int32_t kTotalUntilKnown = 100000;  // bytes

}  // namespace

void frmDownload::fail(const char* reason) {
    bench_.xfer_abort = true;
    bench_.xfer_abort_reason = reason;
    window_.enableCommand1(true);
}

void frmDownload::load() {
    VerNum.caption = "Unknown";
    Label5.caption.clear();
    Label2.caption = "Press Start To Begin Download";
    Progress = {};
    Download.enabled = true;
    progress_ = {};
    outcome_ = {};
    window_.tellEnd({});
    takeBoxes();
    if (!fitsController()) return;
    outcome_.stage = DownloadStage::Reaching;
    if (!reachController() || !readVersion()) return;
    outcome_.stage = DownloadStage::Gates;
    gateTriacs();
    gatePagers();
    gateModbusAndCharts();
    estimate();
    if (!forcedAlarmsCanGo()) return;
    Label7.caption = "0%";
    Label2.caption = "Click Start to Begin Download";
}

void frmDownload::takeBoxes() {
    for (const DownloadSection& section : kDownloadSections) bench_.*section.flag = (select_.*section.box).value;
    bench_.bytes_total = kTotalUntilKnown;
    bench_.xfer_abort = false;
    bench_.has_pager_block = false;
    bench_.pager_supported = false;
}

bool frmDownload::fitsController() { return fitsConstants() && fitsRetentive(); }

bool frmDownload::fitsConstants() {
    db1& db = bench_.db;
    // An empty table refuses to move, and nothing of it is too much.
    if (!ignoringErrors([&] { db.ConstantMoveFirst(); })) return true;
    std::int32_t count = 0;
    for (; !db.ConstantEOF(); db.ConstantMoveNext()) {
        if (++count <= kMostConstants) continue;
        bench_.platform.messageBox.say("Config Exceeds Maximum size at block # " + joined(db.ConstantBlockNumber()));
        fail("Form Download Form Load Num Constants");
        return false;
    }
    return true;
}

bool frmDownload::fitsRetentive() {
    db1& db = bench_.db;
    std::int16_t sum = 0;
    db.FuncSetIndex("FN");
    for (db.BlockMoveFirst(); !db.BlockEOF(); db.BlockMoveNext()) {
        db.FuncSeekI(db.BlockFn());
        sum = toInt16(sum + db.FuncVolRam());
        if (sum <= kMostRetentiveBytes) continue;
        bench_.platform.messageBox.say("Maximum Retentive Bytes Exceeded At Block # " + joined(db.blockNumber()));
        fail("Form Download Form Load Num Volram");
        return false;
    }
    return true;
}

bool frmDownload::reachController() {
    comm_.Open_Comm_Port();
    if (!comm_.port_is_open) {
        bench_.platform.messageBox.say("Could Not Open Comm Port", "Comm Error");
        fail("Form Download Form Load comm open fail");
        return false;
    }
    comm_.poll_qrm3();
    if (bench_.xfer_ok) return true;
    bench_.platform.messageBox.say("Could Not Connect To Target\nCheck Settings And Connection Cables");
    comm_.Close_Comm_Port();
    fail("Form Download Form Load poll fail");
    return false;
}

bool frmDownload::readVersion() {
    std::string text;
    comm_.get_version(text);
    const std::string digits = versionDigits(text, kVersionDigits);
    const auto version = firmwareVersion(digits);
    if (!version) {
        bench_.platform.messageBox.say("Could not acquire ROM Version. Download Aborted");
        comm_.Close_Comm_Port();
        fail("Form Download Form Load bad version");
        return false;
    }
    VerNum.caption = digits;
    bench_.rom_version = *version;
    return true;
}

void frmDownload::gateTriacs() {
    if (bench_.rom_version >= kTriacFirmware) return;
    db1& db = bench_.db;
    db.SlotMoveFirst();
    for (int slot = 0; slot < kSlotCount; ++slot, db.SlotMoveNext()) {
        if (db.SlotDescription().find(kTriacPartNumber) == std::string::npos) continue;
        fail("Form Download Form Load TOUT firmware");
        bench_.platform.messageBox.say("TOUT Modules Require Firmware V6.20 or Higher. Download Aborted");
        return;
    }
}

bool frmDownload::hasBlockOf(std::int16_t function) {
    for (std::size_t block = 1; block < bench_.FnOfBlock.size(); ++block) {
        if (bench_.FnOfBlock[block] == function) return true;
    }
    return false;
}

void frmDownload::gatePagers() {
    if (!bench_.dl_pager && !bench_.dl_alarms) return;
    bench_.has_pager_block = hasBlockOf(kPagerFunction);
    if (!bench_.has_pager_block) {
        bench_.dl_pager = false;
        return;
    }
    bench_.pager_supported = bench_.rom_version >= kPagerFirmware;
    if (bench_.pager_supported) {
        bench_.dl_alarms = true;
        return;
    }
    bench_.dl_pager = false;
    bench_.platform.messageBox.say("ROM Version " + VerNum.caption +
                                   " Does Not Support Pagers\nPager Numbers Will Not Be Downloaded");
}

void frmDownload::gateModbusAndCharts() {
    const std::string version = "ROM Version " + VerNum.caption;
    if (bench_.dl_modbus && bench_.rom_version < kModbusFirmware) {
        bench_.dl_modbus = false;
        bench_.platform.messageBox.say(version +
                                       " Does Not Support Modbus\nRegisters and Coils Will Not Be Downloaded");
    }
    if (bench_.dl_charts && bench_.rom_version < kChartFirmware) {
        bench_.dl_charts = false;
        bench_.platform.messageBox.say(version + " Does Not Support Charts\nCharts will not be downloaded");
    }
}

/// Old firmware takes its alarms with the blocks: new blocks beside the alarms of the former program would be a hazard,
/// so as long as this program can't send alarms the download doesn't begin.
bool frmDownload::forcedAlarmsCanGo() {
    const bool isForced = bench_.rom_version < kAnnounceFirmware && bench_.dl_blocks;
    const auto* alarms = std::ranges::find(kDownloadSections, &Workbench::dl_alarms, &DownloadSection::flag);
    if (!isForced || bench_.xfer_abort || alarms->isAvailable()) return true;
    bench_.platform.messageBox.say("ROM Version " + VerNum.caption +
                                   " Needs Alarms With The Blocks\nThis Program Cannot Send Alarms Yet. Download "
                                   "Aborted");
    comm_.Close_Comm_Port();
    fail("Form Download Form Load no alarms");
    return false;
}

void frmDownload::estimate() {
    if (bench_.rom_version < kAnnounceFirmware && bench_.dl_blocks) bench_.dl_alarms = true;
    if (bench_.dl_charts || bench_.dl_menus) bench_.dl_egus = true;
    bench_.bytes_sent = 0;
    bench_.bytes_total = 0;
    for (const DownloadSection& section : kDownloadSections) {
        if (bench_.*section.flag) bench_.bytes_total += section.estimate(bench_);
    }
}

}  // namespace qrv
