#include "link/frmWarn.h"

#include "store/Workbench.h"

namespace qrv {

void frmWarn::Command1_Click() {
    cancelled = false;
    bench_.platform.formHost.hide(*this);
}

void frmWarn::Command2_Click() {
    cancelled = true;
    window_.enableCommand1(true);
    bench_.platform.formHost.hide(*this);
}

bool frmWarn::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByUser) window_.enableCommand1(true);
    return true;
}

}  // namespace qrv
