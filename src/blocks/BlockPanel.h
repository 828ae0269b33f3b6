// The body of the main window: the block maps, the data view with the current block's inputs and parameters, the
// assignment view with the function list. Form3 owns one and adds the menu, the title line and the way in and out.
#pragma once

#include <string>

#include "blocks/BlockInputs.h"
#include "blocks/BlockMap.h"
#include "blocks/BlockParameters.h"
#include "blocks/FormComment.h"
#include "blocks/frmAaboPick.h"
#include "platform/Controls.h"
#include "platform/Grid.h"

namespace qrv {

struct Workbench;

class BlockPanel {
 public:
    /// Lays out the grids. The catalogue may be closed yet.
    explicit BlockPanel(Workbench& bench);
    BlockPanel(const BlockPanel&) = delete;
    BlockPanel& operator=(const BlockPanel&) = delete;

    // --- what the user sees ---
    Grid Grid1;  ///< blocks 0..599
    Grid Ig;     ///< blocks 600..704
    Grid fg2;    ///< inputs of the current block. Its visibility is the mode flag: shown, the data view is up
    Grid fg3;    ///< parameters of the current block
    ListBox List1;
    ListBox List2;  ///< the slots' descriptions; never shown
    TextBox txtCmt{.visible = false, .locked = true};
    Label Label1{.caption = "INPUTS"};
    Label Label2{.caption = "PARAMETERS"};
    Label Label3{.caption = "I / O BLOCKS 600 - 704"};
    Label Label4;  ///< "COMMENTS:" or ""
    Label Label5;  ///< "BLOCK 12 - PID"
    Label Label6;  ///< the I/O block map, eight lines
    Label Label7{.caption = "I / O Boards"};
    Label Label8{.caption = "  ALARM"};
    Label Label9{.caption = "  EVENT"};
    Label Label10{.caption = "   PAGE"};
    Button cmdViewAlarmInfo{.caption = "View Alarm/Event Settings"};
    static constexpr const char* kCmdViewAlarmInfoToolTip =
        "This button is visible when the selected block is alarmable. The button is red when there is at least 1 alarm "
        "already set.";
    /// The control that a routine gave the focus, by name; the window moves it there and empties this.
    std::string focus;

    /// Name of the function that a click in the assignment view places.
    std::string CurFuncName = "NOP";

    // --- the forms that open from here ---
    FormComment comment;
    frmAaboPick picker;

    // --- start-up ---
    /// Fills List1 from the catalogue in its stored order: once, before any other use of the functions.
    void loadFunctionList();
    /// What the window's first activation sets.
    void firstActivate();

    // --- the maps ---
    void fill_grid1() {
        map_.fill_grid1();
        isCellChosen_ = false;
    }
    /// The same behind a download, which changes no program: the selection is where the user left it, not on the block
    /// filled last.
    void refillGrid1();
    /// Fills Ig and List2 from the slots' descriptions; with no file open, as for seven empty ones.
    void fillIg() { map_.fillIg(); }
    void paintAlarmColours() { map_.paintAlarmColours(); }

    // --- the user's events ---
    /// A click on a logic block: shows it in the data view, places the chosen function in the assignment view.
    void Grid1_Click();
    /// A click on an I/O block: shows it in the data view.
    void New_IG_Click();
    /// A row of List1 was chosen (`List1.listIndex`).
    void List1_Click();
    void txtCmt_DblClick();
    void cmdViewAlarmInfo_Click() {}

    // --- the two views ---
    [[nodiscard]] bool isDataView() const { return fg2.visible(); }
    void mnuEditBlk();
    void mnuEditCfg();
    /// The data view without a click on the current block: for a read-only file, which can't be in the other view.
    void showDataView();
    /// Another program has come: no block of the former one is on show.
    void showNone();
    /// The file may hold other data than the data view shows: shows the block again, or none where its function has
    /// gone. Neither a click nor a move of any selection.
    void showAgain();

    // --- additions ---
    /// Whether a block is a logic block, or one that a board or the CPU has.
    [[nodiscard]] bool hasBoard(int block) const;
    /// Whether the user has gone to a cell of the maps since they were filled. Filling leaves Grid1 on its last block,
    /// which nobody has chosen.
    [[nodiscard]] bool isCellChosen() const { return isCellChosen_; }
    /// Selects a block's cell and, in the data view, shows it. @param block  0..704
    void goToBlock(int block);
    /// Tool tips with the meaning of an input's letter, and with a parameter's least, greatest and default value; off
    /// in the classic look.
    void setToolTips(bool shown) {
        inputs_.setToolTips(shown);
        parameters_.setToolTips(shown);
    }

    // --- the routines behind the grids, under their own names ---
    void UpdateConstant(std::int16_t value) { inputs_.UpdateConstant(value); }
    bool CheckParamCell(Grid& grid, std::string& text) { return parameters_.CheckParamCell(grid, text); }
    void ProcessAuxOutputs() { parameters_.ProcessAuxOutputs(); }
    void UpdateAuxOutput() { parameters_.UpdateAuxOutput(); }

 private:
    void wireMaps();
    void wireInputs();
    void wireParameters();
    void clearData();
    void showComment(bool isUsed);
    void showCurrent();
    bool mapKey(Grid& grid, Key key);
    bool readAuxOutput();
    bool dataKey(Key key);
    void takeFocus(Grid& focused, Grid& other);

    Workbench& bench_;
    BlockMap map_;
    BlockInputs inputs_;
    BlockParameters parameters_;
    bool isShown_ = false;  ///< the data grids show CurBlock
    bool isCellChosen_ = false;
};

}  // namespace qrv
