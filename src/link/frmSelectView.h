// The window of frmSelect, "Download Selector".
#pragma once

#include "link/frmSelect.h"
#include "platform/qt/FormView.h"

namespace qrv {

class frmSelectView final : public FormView {
 public:
    frmSelectView(frmSelect& form, DesktopHost& host);

 private:
    frmSelect& form_;
};

}  // namespace qrv
