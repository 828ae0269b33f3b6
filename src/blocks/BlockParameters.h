// The parameters of the current block, in the grid fg3: their values as the user reads them, the check of a typed value
// on its way back, and the one parameter of the blocks that read an auxiliary output.
#pragma once

#include <cstdint>
#include <string>

namespace qrv {

class Grid;
class frmAaboPick;
struct Workbench;

class BlockParameters {
 public:
    /// @param fg2  the inputs of the same block: an AABO or DABO block's source is read from there
    BlockParameters(Workbench& bench, Grid& fg3, Grid& fg2, frmAaboPick& picker)
        : bench_(bench), fg3_(fg3), fg2_(fg2), picker_(picker) {}

    void layOut();
    /// Writes a row for each parameter of CurBlock, whose function is CurFn; of AABO and DABO only the output they
    /// read.
    void show();
    /// Checks a typed value of the parameter in the grid's current row, stores it, and puts it as shown into the cell.
    /// False refuses it, after a notice. The text changes only if it is a string parameter's.
    bool CheckParamCell(Grid& grid, std::string& text);

    /// The shown block reads an auxiliary output of another one: AABO or DABO.
    [[nodiscard]] bool readsAuxOutput() const;
    /// Lets the user pick the output that an AABO or DABO block reads; nothing on a read-only file.
    void ProcessAuxOutputs();
    /// Shows the output that an AABO or DABO block reads.
    void UpdateAuxOutput();

    void setToolTips(bool shown) { hasToolTips_ = shown; }

 private:
    struct AuxSource;

    void showRow(int p);
    [[nodiscard]] std::string shownString(int slot);
    bool checkString(Grid& grid, std::string& text, int slot);
    bool checkNumber(Grid& grid, const std::string& text, int slot);
    [[nodiscard]] std::int32_t countBehind(int p, int slot);
    bool refuse(double least, double greatest);
    [[nodiscard]] AuxSource auxSource();

    Workbench& bench_;
    Grid& fg3_;
    Grid& fg2_;
    frmAaboPick& picker_;
    bool hasToolTips_ = true;
};

}  // namespace qrv
