// The window of the picker of a block's outputs.
#pragma once

#include "blocks/frmAaboPick.h"
#include "platform/qt/FormView.h"

namespace qrv {

class frmAaboPickView final : public FormView {
 public:
    frmAaboPickView(frmAaboPick& form, DesktopHost& host);

 private:
    frmAaboPick& form_;
};

}  // namespace qrv
