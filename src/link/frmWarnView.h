// The window of frmWarn, "WARNING".
#pragma once

#include "link/frmWarn.h"
#include "platform/qt/FormView.h"

namespace qrv {

class frmWarnView final : public FormView {
 public:
    frmWarnView(frmWarn& form, DesktopHost& host);

 private:
    frmWarn& form_;
};

}  // namespace qrv
