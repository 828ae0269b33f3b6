// The window of "Recent Files".
#pragma once

#include "platform/qt/FormView.h"
#include "shell/FrmRecent.h"

namespace qrv {

class FrmRecentView final : public FormView {
 public:
    FrmRecentView(FrmRecent& form, DesktopHost& host);

 private:
    FrmRecent& form_;
};

}  // namespace qrv
