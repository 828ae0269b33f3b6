#include "link/frmDownload.h"

#include <algorithm>

#include "link/DownloadSections.h"
#include "link/FirmwareVersion.h"
#include "link/TransferWords.h"
#include "link/frmComm.h"
#include "platform/EventPump.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "platform/Paths.h"
#include "platform/RunTimeErrorNotice.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr std::chrono::milliseconds kPauseBeforeSections{50};
constexpr const char* kCancelReason = "Form Download Cancel Button Click";
constexpr const char* kRunTimeReason = "Runtime Error";

}  // namespace

frmDownload::frmDownload(Workbench& bench, frmComm& comm, frmSelect& select, const TransferWindow& window)
    : Form("frmDownload", "Download"), bench_(bench), comm_(comm), select_(select), window_(window) {}

bool frmDownload::anyFlag() const {
    return std::ranges::any_of(kDownloadSections, [this](const auto& section) { return bench_.*section.flag; });
}

void frmDownload::activate() {
    if (bench_.in_download) return;
    if (!anyFlag()) {
        if (!bench_.xfer_abort) window_.tellEnd("There was nothing to download.");
        bench_.xfer_abort = true;
        bench_.xfer_abort_reason = "Form Download Form Activate";
    } else {
        bench_.platform.clock.sleep(std::chrono::milliseconds(10));
    }
    if (!bench_.xfer_abort) return;
    outcome_.reason = bench_.xfer_abort_reason;
    window_.enableCommand1(true);
    bench_.platform.formHost.unload(*this);
}

// --- the download ---

void frmDownload::Download_Click() {
    if (bench_.in_download) return;
    Download.enabled = false;
    bench_.in_download = true;
    outcome_ = {.stage = DownloadStage::Sections, .committed = false, .reason = {}};
    resetBar();
    comm_.showBytesSent = [this] { showBytes(); };
    comm_.Open_Comm_Port();
    if (comm_.port_is_open) {
        announce();
        runSections();
    } else {
        outcome_.stage = DownloadStage::Reaching;
        fail("Form Download Form Load comm open fail");
    }
    finish();
}

void frmDownload::resetBar() {
    red = 255;
    green = blue = colr = 0;
    reddir = 1;
    greendir = bluedir = 0;
    Progress = {};
}

void frmDownload::announce() {
    if (bench_.rom_version >= kAnnounceFirmware) comm_.sendCommand(Command::AnnounceDownload);
    bench_.platform.clock.sleep(kPauseBeforeSections);
}

void frmDownload::runSections() {
    int count = 0;
    expectedBytes_ = 0;
    for (const DownloadSection& section : kDownloadSections) {
        if (!section.isAvailable() || !(bench_.*section.flag)) continue;
        ++count;
        expectedBytes_ += section.closely == nullptr ? section.estimate(bench_) : section.closely(bench_);
    }
    // The bytes sent never count beyond the total that was shown.
    expectedBytes_ = std::min(expectedBytes_, bench_.bytes_total);
    progress_.start(count, bench_.platform.clock.now());
    retriesBefore_ = comm_.retriesSoFar();
    failuresBefore_ = comm_.failuresSoFar();
    comm_.unsentStrings = 0;
    for (const DownloadSection& section : kDownloadSections) {
        if (bench_.xfer_ok && bench_.*section.flag && !bench_.xfer_abort) runSection(section);
    }
    if (!anyFlag() || !bench_.xfer_ok || bench_.xfer_abort) return;
    // The last moment for a Cancel.
    bench_.platform.eventPump.pump();
    if (bench_.xfer_abort) return;
    comm_.SendEE();
    if (comm_.frameLeft()) outcome_.stage = DownloadStage::Commit;
    outcome_.committed = bench_.xfer_ok;
}

void frmDownload::runSection(const DownloadSection& section) {
    const bool mayGo = !section.needsPager || (bench_.has_pager_block && bench_.pager_supported);
    if (!section.isAvailable()) return;
    Label2.caption = section.operation;
    progress_.beginSection(std::string(section.operation));
    noteProgress();
    if (mayGo) runRoutine(section);
    if (section.bringsUnits) bench_.dl_egus = true;
}

/// What the section can't put into a frame - a text that is longer than its field, a sum that overflows - ends the
/// download, not the program.
void frmDownload::runRoutine(const DownloadSection& section) {
    try {
        section.routine(bench_, comm_);
    } catch (const RunTimeError& error) {
        if (!bench_.xfer_abort) bench_.platform.messageBox.ask(noticeOf(error));
        bench_.xfer_abort = true;
        bench_.xfer_abort_reason = kRunTimeReason;
    }
}

void frmDownload::finish() {
    // A Cancel that came when the commit was on its way came too late.
    outcome_.unconfirmed = comm_.failuresSoFar() - failuresBefore_;
    outcome_.unsentStrings = comm_.unsentStrings;
    outcome_.reason = bench_.xfer_abort && !outcome_.committed ? bench_.xfer_abort_reason : "";
    bench_.bytes_sent = bench_.bytes_total;
    Label7.caption = "100%";
    if (!bench_.xfer_abort) update_progress_picture();
    comm_.Close_Comm_Port();
    window_.enableCommand1(true);
    window_.refreshGrid();
    window_.tellEnd(endOf(*this, fileNameOf(bench_.CurrentFileName)));
    bench_.platform.formHost.hide(*this);
    bench_.in_download = false;
    bench_.xfer_abort = false;
    Download.enabled = true;
    bench_.platform.formHost.unload(*this);
}

void frmDownload::Cancel_Click() {
    if (bench_.in_download) {
        bench_.xfer_abort = true;
        bench_.xfer_abort_reason = kCancelReason;
        return;
    }
    window_.enableCommand1(true);
    bench_.platform.formHost.unload(*this);
}

/// A window that closes in the midst of a download cancels it, and goes when the section has noticed.
bool frmDownload::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode) return true;
    window_.enableCommand1(true);
    if (!bench_.in_download) return true;
    Cancel_Click();
    return false;
}

void frmDownload::unload() {
    comm_.showBytesSent = [] {};
    comm_.Close_Comm_Port();
    // A form that left before its start has raised it, and would end the next user's exchanges at their first attempt.
    bench_.xfer_abort = false;
}

// --- the progress ---

void frmDownload::showBytes() {
    Label5.caption = joined(bench_.bytes_sent);
    update_progress_picture();
    noteProgress();
}

void frmDownload::noteProgress() {
    progress_.count(bench_.bytes_sent, expectedBytes_, bench_.platform.clock.now());
    progress_.setRetries(comm_.retriesSoFar() - retriesBefore_);
    if (progress_.isToBeShown()) bench_.platform.formHost.refreshSoon(*this);
    onProgress();
}

void frmDownload::update_progress_picture() {
    bench_.bytes_total = bench_.bytes_total == 0 ? 1 : bench_.bytes_total;
    // The estimate need not be exact: this is what keeps the bar inside its box.
    bench_.bytes_sent = std::min(bench_.bytes_sent, bench_.bytes_total);
    const double fraction = static_cast<double>(bench_.bytes_sent) / bench_.bytes_total;
    Label7.caption = joined(static_cast<std::int32_t>(fraction * 100)) + "%";
    turnColourWheel();
    colr = blue * 65536 + green * 256 + red;
    Progress = {.width = fraction * ProgressPicture::kWidth, .colour = colr};
}

void frmDownload::turnColourWheel() {
    const auto step = [](std::int32_t& colour, std::int16_t rises) {
        if (rises == 1 && colour < 255) {
            ++colour;
        } else if (rises == 0 && colour > 0) {
            --colour;
        }
    };
    step(red, reddir);
    step(green, greendir);
    step(blue, bluedir);
    const auto is = [](std::int32_t colour, std::int16_t direction, std::int32_t value, std::int16_t rises) {
        return colour == value && direction == rises;
    };
    // In this order: a rule may set what the next one asks for.
    if (red == 255) {
        if (reddir == 1 && is(green, greendir, 0, 0) && is(blue, bluedir, 0, 0)) greendir = 1;
        if (reddir == 1 && is(green, greendir, 255, 1) && is(blue, bluedir, 0, 0)) reddir = 0;
    }
    if (red == 0) {
        if (reddir == 0 && is(green, greendir, 255, 1) && is(blue, bluedir, 0, 0)) bluedir = 1;
        if (reddir == 0 && is(green, greendir, 255, 1) && is(blue, bluedir, 255, 1)) greendir = 0;
        if (reddir == 0 && is(green, greendir, 0, 0) && is(blue, bluedir, 255, 1)) reddir = 1;
    }
    if (is(red, reddir, 255, 1) && is(green, greendir, 0, 0) && is(blue, bluedir, 255, 1)) bluedir = 0;
}

}  // namespace qrv
