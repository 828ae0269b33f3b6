// The start dialog: make a configuration, open one, or open a recent one. It stays until a file is open or the user
// gives up, which ends the program.
#pragma once

#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

struct Workbench;

class FrmAsk final : public Form {
 public:
    /// @param recent  the list of recent files, shown on demand
    FrmAsk(Workbench& bench, Form& recent);

    void load() override;
    /// The close box is Cancel.
    bool queryUnload(UnloadMode mode) override;

    void Option1_Click();
    void Option2_Click();
    void Option3_Click();
    void Command1_Click();
    void Command2_Click();

    Label Frame1{.caption = "Configuration"};
    Choice Option1{.caption = "Create A New Configuration"};
    Choice Option2{.caption = "Open An Existing Configuration"};
    Choice Option3{.caption = "Open A Recent Configuration"};
    Button Command1{.caption = "OK"};
    Button Command2{.caption = "Cancel"};

 private:
    void choose(Choice& chosen);

    Workbench& bench_;
    Form& recent_;
};

}  // namespace qrv
