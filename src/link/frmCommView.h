// The window of frmComm, "Comm Port Settings".
#pragma once

#include "link/frmComm.h"
#include "platform/qt/FormView.h"

namespace qrv {

class frmCommView final : public FormView {
 public:
    frmCommView(frmComm& form, DesktopHost& host);

 private:
    frmComm& form_;
};

}  // namespace qrv
