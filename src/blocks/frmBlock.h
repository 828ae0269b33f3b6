// Asks for a block of one given function (`WantedFunction`), for the menu and screen editors. The answer goes to
// `ChosenBlock`. A cancel leaves that as it is: who asks sets it to 0 first.
#pragma once

#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

struct Workbench;

class frmBlock : public Form {
 public:
    explicit frmBlock(Workbench& bench);

    Label Lab1;  ///< what the block is for: the caller's text
    ListBox Combo1;
    TextBox Text1;
    Button Command1{.caption = "Done"};
    Button Command2{.caption = "Cancel"};

    void load() override;
    void activate() override;
    void Combo1_Click();
    void Command1_Click();
    void Command2_Click();

 private:
    Workbench& bench_;
};

}  // namespace qrv
