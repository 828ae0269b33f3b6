// Which sections are to go into the controller.
#pragma once

#include <array>

#include "link/TransferWindow.h"
#include "platform/Controls.h"
#include "platform/FormHost.h"
#include "platform/NamedChoice.h"

namespace qrv {

class frmDownload;
struct Workbench;

class frmSelect final : public Form {
 public:
    frmSelect(Workbench& bench, const TransferWindow& window);

    Label Label1{.caption = "Select Items To Download"};
    Choice Blocks{.caption = "Blocks"};
    Choice Alarms{.caption = "Alarms"};
    Choice Pager{.caption = "Pager Information + Alarms"};
    Choice Egus{.caption = "Engineering Units"};
    Choice Modbus{.caption = "Modbus Registers + Coils"};
    Choice Menus{.caption = "Menus + Screens + EGUs"};
    Choice Charts{.caption = "Charts + EGUs"};
    Button btnAll{.caption = "Select All"};
    Button btnNone{.caption = "Select None"};
    Button Command1{.caption = "Continue", .isDefault = true};
    Button Command2{.caption = "Cancel"};

    /// The boxes in the window's order.
    [[nodiscard]] std::array<NamedChoice, 7> boxes() {
        return {{{"Blocks", &Blocks},
                 {"Alarms", &Alarms},
                 {"Pager", &Pager},
                 {"Egus", &Egus},
                 {"Modbus", &Modbus},
                 {"Menus", &Menus},
                 {"Charts", &Charts}}};
    }
    /// What "Continue" shows.
    void continueWith(frmDownload& download) { download_ = &download; }

    void load() override;
    void btnAll_Click() { setAll(true); }
    void btnNone_Click() { setAll(false); }
    void Command1_Click();
    void Command2_Click();
    bool queryUnload(UnloadMode mode) override;

 private:
    void setAll(bool value);

    Workbench& bench_;
    const TransferWindow& window_;
    frmDownload* download_ = nullptr;
};

}  // namespace qrv
