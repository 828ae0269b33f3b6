// Paints the cells and headings of a GridView: flat, with the selected cell plain to see and its headings marked.
#pragma once

#include <QAbstractItemDelegate>
#include <QHeaderView>

#include "platform/Grid.h"

namespace qrv {

class GridModel;

class GridPainter final : public QAbstractItemDelegate {
 public:
    GridPainter(const Grid& grid, const GridModel& model, QObject* parent);
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// A muted grid's selection is a faint frame only.
    void setMuted(bool muted) { isMuted_ = muted; }
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
    void paintCheckBox(QPainter* painter, const QStyleOptionViewItem& option, const GridCell& cell) const;

    static void paintArrow(QPainter* painter, const QStyleOptionViewItem& option);

    const Grid& grid_;
    const GridModel& model_;
    bool isMuted_ = false;
};

/// At the right of a drop-down cell: where a click opens the list.
constexpr int kArrowWidth = 18;  // pixels

/// The headings of one side. The section of the selected cell is marked.
class GridHeading final : public QHeaderView {
 public:
    GridHeading(Qt::Orientation orientation, QWidget* parent);
    void setMarked(int section);

 protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

 private:
    int marked_ = -1;
};

/// Whether a check box's cell text stands for a tick.
[[nodiscard]] bool isTicked(const std::string& text);

}  // namespace qrv
