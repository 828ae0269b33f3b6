// The window of the start dialog.
#pragma once

#include "platform/qt/FormView.h"
#include "shell/FrmAsk.h"

namespace qrv {

class FrmAskView final : public FormView {
 public:
    FrmAskView(FrmAsk& form, DesktopHost& host);

 private:
    FrmAsk& form_;
};

}  // namespace qrv
