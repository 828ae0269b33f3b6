// The window of frmUpload, "Upload": the boxes, the count, and below it how far, how fast and how much longer.
#pragma once

#include "link/frmUpload.h"
#include "platform/qt/FormView.h"
#include "shell/Form3View.h"

namespace qrv {

class frmUploadView final : public FormView {
 public:
    frmUploadView(frmUpload& form, DesktopHost& host, Extras extras);

 private:
    frmUpload& form_;
};

}  // namespace qrv
