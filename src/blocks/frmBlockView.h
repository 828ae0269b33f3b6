// The window of "Block Required".
#pragma once

#include "blocks/frmBlock.h"
#include "platform/qt/FormView.h"

namespace qrv {

class frmBlockView final : public FormView {
 public:
    frmBlockView(frmBlock& form, DesktopHost& host);

 private:
    frmBlock& form_;
};

}  // namespace qrv
