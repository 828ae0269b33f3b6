// The small modal list that chooses an output of a block. A row's place is the output's ordinal: row 0 stands for none
// or for the main output.
#pragma once

#include <string>

#include "blocks/BlockRef.h"
#include "platform/Controls.h"
#include "platform/FormHost.h"
#include "platform/Grid.h"

namespace qrv {

struct Workbench;

class frmAaboPick : public Form {
 public:
    explicit frmAaboPick(Workbench& bench);

    Label Label1{.caption = "Aux Analogs"};    ///< heading of List1
    Label Label2{.caption = "Aux Discretes"};  ///< heading of List2
    ListBox List1;
    ListBox List2;

    /// Lists the auxiliary outputs of one kind that the catalogue's current function has, under `firstRow`, shows the
    /// list and waits. Gives the ordinal picked, 0 for the first row. The short names are in `AuxAnalogShort` or
    /// `AuxDiscreteShort` then, that of place 0 is "MAIN".
    std::int16_t pickOutput(BlockRef::Kind kind, const std::string& firstRow);

    void load() override;
    void List1_Click();
    void List2_Click();
    void List1_DblClick();
    void List2_DblClick();
    /// Enter and Escape. False: not a key of this form.
    bool keyDown(Key key);
    bool queryUnload(UnloadMode mode) override;

 private:
    void fill(ListBox& list, BlockRef::Kind kind, const std::string& firstRow);
    void close();
    void escape();

    Workbench& bench_;
};

}  // namespace qrv
