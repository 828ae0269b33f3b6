// The window of frmDownload, "Download": the bar, the counts, and beside them how fast and how much longer.
#pragma once

#include "link/frmDownload.h"
#include "platform/qt/FormView.h"
#include "shell/Form3View.h"

namespace qrv {

class frmDownloadView final : public FormView {
 public:
    frmDownloadView(frmDownload& form, DesktopHost& host, Extras extras);

 private:
    frmDownload& form_;
};

}  // namespace qrv
