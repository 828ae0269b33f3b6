// The window of "About QRV Edit".
#pragma once

#include "platform/qt/FormView.h"
#include "shell/frmAbout.h"

namespace qrv {

class frmAboutView final : public FormView {
 public:
    frmAboutView(frmAbout& form, DesktopHost& host);

 private:
    frmAbout& form_;
};

}  // namespace qrv
