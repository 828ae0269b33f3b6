// The window of "Configuration Description".
#pragma once

#include "blocks/frmvga.h"
#include "platform/qt/FormView.h"

namespace qrv {

class frmvgaView final : public FormView {
 public:
    frmvgaView(frmvga& form, DesktopHost& host);

 private:
    frmvga& form_;
};

}  // namespace qrv
