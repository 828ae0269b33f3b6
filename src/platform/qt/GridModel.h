// What a GridView shows of a Grid: the cells behind the fixed ones as the table's body, the fixed row and column as its
// headings. Holds no texts of its own.
#pragma once

#include <QAbstractTableModel>
#include <functional>

#include "platform/Grid.h"

namespace qrv {

class GridModel final : public QAbstractTableModel {
 public:
    GridModel(Grid& grid, QObject* parent);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

    [[nodiscard]] int gridRow(const QModelIndex& index) const { return index.row() + fixedRows_; }
    [[nodiscard]] int gridCol(const QModelIndex& index) const { return index.column() + fixedCols_; }
    /// The index of a grid's cell; an invalid one for a fixed cell.
    [[nodiscard]] QModelIndex indexOf(int row, int col) const;
    [[nodiscard]] const GridCell& cellAt(const QModelIndex& index) const;

    /// Tells the view what has changed in the grid: one signal, whatever the number of cells.
    void publish(const Grid::Changes& changes);
    /// The grid goes away: an empty table from now on.
    void detach();

    /// The words by which an assistive tool reads a cell; without it the cell's own text.
    std::function<QString(int row, int col)> accessibleText;

 private:
    void followRowCount();

    Grid* grid_;
    int fixedRows_;
    int fixedCols_;
    int shownRows_;
};

}  // namespace qrv
