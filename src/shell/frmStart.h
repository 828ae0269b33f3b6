// The splash. It opens what the program stands on, the catalogue and the settings, and gives way to the main window
// after two seconds; then it stays loaded, unseen, until the program ends.
#pragma once

#include <string>

#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

class frmAbout;
struct Workbench;

class frmStart final : public Form {
 public:
    /// @param about  home of the version line
    frmStart(Workbench& bench, const frmAbout& about, Form& mainWindow);

    /// A missing logo or catalogue raises.
    void load() override;
    /// Closing the splash by its frame does nothing: it goes by itself.
    bool queryUnload(UnloadMode mode) override { return mode == UnloadMode::ByCode; }
    void Timer1_Timer();
    /// A second way out: asks whether to leave the program, and on Yes leaves without saving.
    void ExitProgram();

    std::string Image1;  ///< the logo, the bytes of its file
    Label lblTitle{.caption = "QRV EDIT"};
    Label lblDescription{.caption = "TESSALY INSTRUMENTS"};
    Label lblVersion;
    Label lblAddress;  ///< some lines
    Timer Timer1;

 private:
    Workbench& bench_;
    const frmAbout& about_;
    Form& mainWindow_;
};

}  // namespace qrv
