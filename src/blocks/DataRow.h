// What the rows of the two data grids have in common.
#pragma once

#include <string>

namespace qrv {

class Grid;

constexpr int kDataRowHeight = 220;  ///< units

/// Writes a row's description, and makes the row as high as that needs: two lines for a long one.
void describeRow(Grid& grid, int row, int col, const std::string& description);

}  // namespace qrv
