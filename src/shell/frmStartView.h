// The splash window: the logo, the program's name, version and maker.
#pragma once

#include "platform/qt/FormView.h"
#include "shell/frmStart.h"

namespace qrv {

class frmStartView final : public FormView {
 public:
    frmStartView(frmStart& form, DesktopHost& host);

 private:
    frmStart& form_;
};

}  // namespace qrv
