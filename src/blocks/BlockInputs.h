// The inputs of the current block, in the grid fg2: what each is wired to, and the wiring by typing a block number.
#pragma once

#include <cstdint>
#include <string>

namespace qrv {

class Grid;
class frmAaboPick;
struct Workbench;

class BlockInputs {
 public:
    BlockInputs(Workbench& bench, Grid& fg2, frmAaboPick& picker) : bench_(bench), fg2_(fg2), picker_(picker) {}

    void layOut();
    /// Writes a row for each input of CurBlock, whose function is CurFn. The catalogue's functions stand on CurFn then.
    void show();
    /// An edit of a cell ends: stores the wiring and lets the user pick an output. False refuses the text.
    bool validateEdit(int row, int col);
    /// Stores a block reference word in the input of fg2's current row.
    void UpdateConstant(std::int16_t value);
    /// The tool tip of the letters' column: its heading's at once, its rows' when they are written next.
    void setToolTips(bool shown);
    /// Numeric, and from 0 to 704.
    [[nodiscard]] static bool BlockNumberIsValid(const std::string& text);

 private:
    void connect(int row, std::int16_t source);
    void showSource(int row, std::int16_t source, const std::string& output);

    Workbench& bench_;
    Grid& fg2_;
    frmAaboPick& picker_;
    bool hasToolTips_ = true;
};

}  // namespace qrv
