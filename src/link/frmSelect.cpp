#include "link/frmSelect.h"

#include "link/DownloadSections.h"
#include "link/frmDownload.h"
#include "store/Workbench.h"

namespace qrv {

frmSelect::frmSelect(Workbench& bench, const TransferWindow& window)
    : Form("frmSelect", "Download Selector"), bench_(bench), window_(window) {
    for (const DownloadSection& section : kDownloadSections) (this->*section.box).enabled = section.isAvailable();
}

void frmSelect::load() {
    setAll(false);
    Command1.enabled = true;
}

/// A box that is disabled stays clear.
void frmSelect::setAll(bool value) {
    for (const auto& [name, box] : boxes()) box->value = value && box->enabled;
}

/// Events run while the download looks for the controller: what they do here waits until it has ended.
void frmSelect::Command1_Click() {
    if (!Command1.enabled) return;
    Command1.enabled = false;
    bench_.platform.formHost.refresh(*this);
    if (download_ != nullptr) bench_.platform.formHost.showModal(*download_);
    bench_.platform.formHost.unload(*this);
}

void frmSelect::Command2_Click() {
    if (!Command1.enabled) return;
    window_.enableCommand1(true);
    bench_.platform.formHost.unload(*this);
}

bool frmSelect::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode) return true;
    if (!Command1.enabled) return false;
    window_.enableCommand1(true);
    return true;
}

}  // namespace qrv
