// The window of "Configuration Info": name, comments and the boards of the slots.
#pragma once

#include "blocks/frmGeneral.h"
#include "platform/qt/FormView.h"

namespace qrv {

class frmGeneralView final : public FormView {
 public:
    frmGeneralView(frmGeneral& form, DesktopHost& host);

 private:
    frmGeneral& form_;
};

}  // namespace qrv
