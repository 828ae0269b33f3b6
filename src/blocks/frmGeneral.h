// Name, comments and hardware of the open configuration. The board of a slot decides the functions of the slot's 15 I/O
// blocks: they are placed and removed here. Shown beside the hidden main window, not modal: its way out brings that
// back.
#pragma once

#include <string>

#include "blocks/frmvga.h"
#include "platform/Controls.h"
#include "platform/FormHost.h"
#include "platform/Grid.h"

namespace qrv {

struct Workbench;

class frmGeneral : public Form {
 public:
    explicit frmGeneral(Workbench& bench);

    Label Label1{.caption = "TITLE"};
    TextBox txtTitle;
    Label Label3{.caption = "CONFIGURATON"};
    TextBox txtCfg;
    Label Label2{.caption = "COMMENTS"};
    TextBox Text1{.locked = true};  ///< the description; line breaks are "\n"
    Label Label4{.caption = "HARDWARE CONFIGURATION"};
    Grid fg;  ///< a row for each slot: its number, its board

    frmvga description;

    /// For each file that is opened: reads the board texts from its slots, and makes sure of the CPU's blocks. On a
    /// read-only file those stay as they are.
    void loadBoardTexts();
    /// Reads the board texts from the open file's slots.
    void showBoardTexts();
    /// Writes the grid's board texts to the open file's slots.
    void storeBoardTexts();
    /// Gives the CPU's three blocks their functions; constants that they have stay.
    void ProcessCPU();

    void activate() override;
    void txtTitle_Change();
    void txtCfg_Change();
    void Text1_DblClick();
    void mnuexit();
    bool queryUnload(UnloadMode mode) override;

 private:
    void showTexts();
    bool beforeBoardEdit(int row);
    bool validateBoard(int slot);
    void buildBoard(int slot, const std::string& text);

    Workbench& bench_;
};

}  // namespace qrv
