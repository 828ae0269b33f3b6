// The warning before a download: what the outputs may do, and what to do about it first.
#pragma once

#include <array>

#include "link/TransferWindow.h"
#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

struct Workbench;

class frmWarn final : public Form {
 public:
    frmWarn(Workbench& bench, const TransferWindow& window)
        : Form("frmWarn", "WARNING"), bench_(bench), window_(window) {}

    /// Label1 to Label9, from above.
    const std::array<Label, 9> labels{
        Label{.caption = "WARNING"},
        Label{.caption = "Put critical Outputs into MANUAL, ON, or OFF mode"},
        Label{.caption = "BEFORE downloading Logicset to prevent"},
        Label{.caption = "unexpected equipment start-up, shutdown or"},
        Label{.caption = "modulation"},
        Label{.caption = "Failure to do so can result in equipment damage,"},
        Label{.caption = "injury, or death"},
        Label{.caption = "Downloading Logicset into the QRV can cause"},
        Label{.caption = "QRV Relay and Analog Outputs to change suddenly."},
    };
    Button Command1{.caption = "Continue"};
    Button Command2{.caption = "Cancel"};

    /// The user's answer, for who showed the form.
    bool cancelled = true;

    /// Closing the window is no consent.
    void load() override { cancelled = true; }
    void Command1_Click();
    void Command2_Click();
    bool queryUnload(UnloadMode mode) override;

 private:
    Workbench& bench_;
    const TransferWindow& window_;
};

}  // namespace qrv
