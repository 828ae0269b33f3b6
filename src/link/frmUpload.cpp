#include "link/frmUpload.h"

#include <algorithm>
#include <utility>

#include "link/BadAnswer.h"
#include "link/TransferWords.h"
#include "link/UploadHeadings.h"
#include "link/UploadLogFile.h"
#include "link/UploadSections.h"
#include "link/frmComm.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "platform/Paths.h"
#include "store/LifeCycle.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr std::size_t kUploadVersionDigits = 5;
constexpr const char* kUnloadReason = "Form Upload query unload";

/// Ties the log, where one is kept, to the protocol for as long as it lives.
class Logging {
 public:
    Logging(frmComm& comm, UploadLog* log) : comm_(comm) { comm_.logTo(log); }
    ~Logging() { comm_.logTo(nullptr); }
    Logging(const Logging&) = delete;
    Logging& operator=(const Logging&) = delete;

 private:
    frmComm& comm_;
};

}  // namespace

frmUpload::frmUpload(Workbench& bench, frmComm& comm, const TransferWindow& window, std::vector<std::string> logFolders)
    : Form("frmUpload", "Upload"), bench_(bench), comm_(comm), window_(window), logFolders_(std::move(logFolders)) {
    for (const UploadSection& section : kUploadSections) (this->*section.box).enabled = section.isAvailable();
}

/// A box that is disabled stays clear.
void frmUpload::setAll(bool value) {
    for (const auto& [name, box] : boxes()) box->value = value && box->enabled;
}

void frmUpload::showProgressControls(bool visible) {
    for (Label* label : {&Uploading, &Section, &BytesRecLbl, &BytesReceived}) label->visible = visible;
}

// --- coming up ---

void frmUpload::load() {
    showProgressControls(false);
    setAll(false);
    quit_now = false;
    outcome_ = {};
    progress_ = {};
    window_.tellEnd({});
    bench_.xfer_abort = false;
    reachController();
    readVersion();
    askToOverwrite();
}

void frmUpload::reachController() {
    comm_.Open_Comm_Port();
    if (!comm_.port_is_open) {
        bench_.platform.messageBox.say("Could Not Open Comm Port");
        quit_now = true;
        return;
    }
    comm_.poll_qrm3();
    if (bench_.xfer_ok) {
        outcome_.stage = UploadStage::Asking;
        return;
    }
    bench_.platform.messageBox.say("Could Not Connect");
    quit_now = true;
}

/// A text without a number leaves the version that was read last.
void frmUpload::readVersion() {
    if (!comm_.port_is_open) return;
    std::string text;
    comm_.get_version(text);
    if (const auto version = firmwareVersion(versionDigits(text, kUploadVersionDigits))) bench_.rom_version = *version;
}

void frmUpload::askToOverwrite() {
    const Notice question{.text =
                              "WARNING  This Action Will Overwrite The Selected Configuration\n"
                              "                       Do You Wish To Continue?",
                          .buttons = Buttons::YesNo,
                          .icon = Icon::Warning};
    if (bench_.platform.messageBox.ask(question) != Answer::Yes) {
        quit_now = true;
        return;
    }
    bench_.bytes_received = 0;
    comm_.Close_Comm_Port();
}

void frmUpload::activate() {
    if (!quit_now) return;
    bench_.in_upload = false;
    window_.enableCommand1(true);
    bench_.platform.formHost.unload(*this);
}

// --- the upload ---

void frmUpload::Continue_Click() {
    if (quit_now || bench_.in_upload) return;
    // Where it can't be opened nothing has begun that would have to be ended.
    const std::unique_ptr<UploadLogFile> log = openLog();
    begin();
    {
        const Logging logging(comm_, log.get());
        runSections();
        bench_.isHalfUploaded = bench_.xfer_abort;
        if (bench_.xfer_ok && !bench_.xfer_abort) window_.showGeneral();
        if (bench_.xfer_abort) {
            comm_.printLine(uploadlog::kCancel);
            comm_.printLine(bench_.xfer_abort_reason);
            revert();
        }
    }
    if (log != nullptr && !log->isWhole()) {
        bench_.platform.messageBox.say("The upload's log could not be written whole:\n" + logPath_);
    }
    end();
}

std::unique_ptr<UploadLogFile> frmUpload::openLog() {
    logPath_.clear();
    if (logFolders_.empty()) return nullptr;
    auto log = std::make_unique<UploadLogFile>(logFolders_);
    logPath_ = log->path();
    return log;
}

void frmUpload::begin() {
    outcome_.stage = UploadStage::Sections;
    comm_.uploadFindings = {};
    showProgressControls(true);
    BytesReceived.caption = "0";
    bench_.in_upload = true;
    bench_.isHalfUploaded = true;
    bench_.bytes_received = 0;
    everySectionCame_ = true;
    window_.enableCommand1(false);
    LoadFnOfBlock(bench_);
    bench_.bytes_total = 0;
    int count = 0;
    for (const UploadSection& section : kUploadSections) {
        if (!section.isAvailable() || !(this->*section.box).value) continue;
        ++count;
        bench_.bytes_total += section.bytes(bench_);
    }
    progress_.start(count, bench_.platform.clock.now());
    retriesBefore_ = comm_.retriesSoFar();
    failuresBefore_ = comm_.failuresSoFar();
    comm_.showBytesReceived = [this] { noteProgress(); };
}

void frmUpload::noteProgress() {
    BytesReceived.caption = joined(bench_.bytes_received);
    progress_.count(bench_.bytes_received, bench_.bytes_total, bench_.platform.clock.now());
    progress_.setRetries(comm_.retriesSoFar() - retriesBefore_);
    if (progress_.isToBeShown()) bench_.platform.formHost.refreshSoon(*this);
    onProgress();
}

void frmUpload::runSections() {
    for (const UploadSection& section : kUploadSections) {
        const bool isFirst = &section == kUploadSections.data();
        if (!isFirst && (!bench_.xfer_ok || bench_.xfer_abort)) return;
        if ((this->*section.box).value && section.isAvailable()) runSection(section);
    }
}

void frmUpload::runSection(const UploadSection& section) {
    if (bench_.rom_version < section.leastFirmware) return;
    Section.caption = section.shown;
    progress_.beginSection(std::string(section.shown));
    noteProgress();
    const std::int32_t before = bench_.bytes_received;
    section.routine(bench_, comm_);
    // A section whose port doesn't open ends without a failure, and without a byte.
    everySectionCame_ = everySectionCame_ && bench_.bytes_received > before;
    window_.refreshSlots();
}

void frmUpload::revert() {
    bench_.platform.messageBox.say(
        "The transfer was not completed successfully.  The open config file will be reverted to its last saved state.");
    CloseConfiguration(bench_, Answer::No);
    OpenConfiguration(bench_, std::string(bench_.CurrentFileName));
    bench_.isHalfUploaded = false;
}

void frmUpload::end() {
    outcome_.failedReads = comm_.failuresSoFar() - failuresBefore_;
    outcome_.complete = bench_.xfer_ok && !bench_.xfer_abort && everySectionCame_;
    outcome_.reason = bench_.xfer_abort ? bench_.xfer_abort_reason : "";
    const auto& error = comm_.uploadFindings.error;
    if (error && !isOfBadAnswer(*error)) outcome_.storeFault = error->description();
    window_.refreshAll();
    window_.tellEnd(endOf(*this, comm_.uploadFindings, fileNameOf(bench_.CurrentFileName)));
    bench_.in_upload = false;
    bench_.xfer_abort = false;
    window_.enableCommand1(true);
    bench_.platform.formHost.unload(*this);
}

// --- going away ---

void frmUpload::Cancel_Click() {
    if (queryUnload(UnloadMode::ByUser)) bench_.platform.formHost.unload(*this);
}

/// In the midst of an upload the window stays until the section has noticed.
bool frmUpload::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode || !bench_.in_upload) return true;
    bench_.xfer_abort = true;
    bench_.xfer_abort_reason = kUnloadReason;
    return false;
}

void frmUpload::unload() {
    comm_.showBytesReceived = [] {};
    comm_.Close_Comm_Port();
    window_.enableCommand1(true);
}

}  // namespace qrv
