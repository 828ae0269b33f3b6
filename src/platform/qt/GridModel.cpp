#include "platform/qt/GridModel.h"

#include <algorithm>

#include "platform/qt/Texts.h"

namespace qrv {

GridModel::GridModel(Grid& grid, QObject* parent)
    : QAbstractTableModel(parent),
      grid_(&grid),
      fixedRows_(grid.fixedRows()),
      fixedCols_(grid.fixedCols()),
      shownRows_(std::max(grid.rows() - grid.fixedRows(), 0)) {
    Q_ASSERT_X(fixedRows_ <= 1 && fixedCols_ <= 1, "GridModel", "one row and one column of headings at most");
}

int GridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : shownRows_; }

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() || !grid_ ? 0 : grid_->cols() - fixedCols_;
}

QModelIndex GridModel::indexOf(int row, int col) const {
    if (row < fixedRows_ || col < fixedCols_) return {};
    return index(row - fixedRows_, col - fixedCols_);
}

const GridCell& GridModel::cellAt(const QModelIndex& index) const {
    static const GridCell kNothing;
    // The form may have taken rows away since the view was told last.
    if (!grid_ || gridRow(index) >= grid_->rows()) return kNothing;
    return grid_->cell(gridRow(index), gridCol(index));
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const GridCell& cell = cellAt(index);
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole: return shownText(cell.text);
        case Qt::ToolTipRole: return cell.toolTip.empty() ? QVariant{} : QVariant{shownText(cell.toolTip)};
        case Qt::AccessibleTextRole:
            return accessibleText && grid_ ? accessibleText(gridRow(index), gridCol(index)) : shownText(cell.text);
        default: return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (!grid_ || (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole)) return {};
    const bool across = orientation == Qt::Horizontal;
    if (across ? fixedRows_ == 0 : fixedCols_ == 0) return {};
    const int row = across ? 0 : section + fixedRows_;
    const int col = across ? section + fixedCols_ : 0;
    if (row >= grid_->rows() || col >= grid_->cols()) return {};
    const GridCell& cell = grid_->cell(row, col);
    return shownText(role == Qt::ToolTipRole ? cell.toolTip : cell.text);
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

void GridModel::followRowCount() {
    const int wanted = std::max(grid_->rows() - fixedRows_, 0);
    if (wanted > shownRows_) {
        beginInsertRows({}, shownRows_, wanted - 1);
        shownRows_ = wanted;
        endInsertRows();
    } else if (wanted < shownRows_) {
        beginRemoveRows({}, wanted, shownRows_ - 1);
        shownRows_ = wanted;
        endRemoveRows();
    }
}

void GridModel::publish(const Grid::Changes& changes) {
    if (!grid_) return;
    followRowCount();
    int top = 0;
    int left = 0;
    int bottom = grid_->rows() - 1;
    int right = grid_->cols() - 1;
    if (!changes.all) {
        if (changes.cells.empty()) return;
        std::tie(top, left) = changes.cells.front();
        std::tie(bottom, right) = changes.cells.front();
        for (const auto& [row, col] : changes.cells) {
            top = std::min(top, row);
            bottom = std::max(bottom, row);
            left = std::min(left, col);
            right = std::max(right, col);
        }
    }
    if (top < fixedRows_ && columnCount() > 0) emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    if (left < fixedCols_ && shownRows_ > 0) emit headerDataChanged(Qt::Vertical, 0, shownRows_ - 1);
    const QModelIndex first = indexOf(std::max(top, fixedRows_), std::max(left, fixedCols_));
    const QModelIndex last = indexOf(std::min(bottom, shownRows_ - 1 + fixedRows_), right);
    if (first.isValid() && last.isValid()) emit dataChanged(first, last);
}

void GridModel::detach() {
    beginResetModel();
    grid_ = nullptr;
    shownRows_ = 0;
    endResetModel();
}

}  // namespace qrv
