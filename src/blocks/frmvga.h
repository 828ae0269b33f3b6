// The long-text editor of the configuration's description, opened from the configuration info.
#pragma once

#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

struct Workbench;

class frmvga : public Form {
 public:
    /// @param opener  the form that comes back when this one is done
    frmvga(Workbench& bench, Form& opener);

    TextBox txtCmt;  ///< line breaks are "\n"

    void activate() override;
    /// Stores the text at once. It may come back shorter: the caret stays where it is.
    void txtCmt_Change();
    void mnuexit();
    bool queryUnload(UnloadMode mode) override;

 private:
    Workbench& bench_;
    Form& opener_;
};

}  // namespace qrv
