#include "blocks/DataRow.h"

#include "platform/CodePage.h"
#include "platform/Grid.h"

namespace qrv {

namespace {

constexpr std::size_t kLongDescription = 28;  // characters
constexpr int kHighRow = 440;                 // units

}  // namespace

void describeRow(Grid& grid, int row, int col, const std::string& description) {
    grid.setText(row, col, description);
    grid.setRowHeight(row, trimmed(description).size() > kLongDescription ? kHighRow : kDataRowHeight);
}

}  // namespace qrv
