// The window of frmUpload, "Upload".
#pragma once

#include "link/frmUpload.h"
#include "platform/qt/FormView.h"

namespace qrv {

class frmUploadView final : public FormView {
 public:
    frmUploadView(frmUpload& form, DesktopHost& host);

 private:
    frmUpload& form_;
};

}  // namespace qrv
