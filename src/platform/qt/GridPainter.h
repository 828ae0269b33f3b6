// Paints the cells and headings of a GridView: flat, with the selected cell plain to see and its headings marked.
#pragma once

#include <QAbstractItemDelegate>
#include <QFont>
#include <QHeaderView>
#include <array>

#include "platform/Grid.h"

namespace qrv {

class GridModel;

/// A font and its narrower sisters, each made once: the toolkit looks a font up anew for each copy that is changed.
class CellFonts {
 public:
    explicit CellFonts(const QFont& font);
    [[nodiscard]] const QFont& usual() const { return fonts_.front(); }
    /// Draws one line in the middle of `room`'s height. A text that is too long is set narrower, down to five eighths,
    /// before any of it is lost.
    void draw(QPainter* painter, const QString& text, const QRect& room, Qt::Alignment across) const;

 private:
    static constexpr std::array kStretches{100, 87, 75, 62};  // per cent

    std::array<QFont, kStretches.size()> fonts_;
};

class GridPainter final : public QAbstractItemDelegate {
 public:
    GridPainter(const Grid& grid, const GridModel& model, QObject* parent);
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// A muted grid's selection is a frame only, faint as long as the grid hasn't the focus.
    void setMuted(bool muted) { isMuted_ = muted; }
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
    void paintCheckBox(QPainter* painter, const QStyleOptionViewItem& option, const GridCell& cell) const;
    void paintFrame(QPainter* painter, const QStyleOptionViewItem& option) const;

    static void paintArrow(QPainter* painter, const QStyleOptionViewItem& option);

    const Grid& grid_;
    const GridModel& model_;
    const CellFonts regular_;
    const CellFonts bold_;
    bool isMuted_ = false;
};

/// At the right of a drop-down cell: where a click opens the list.
constexpr int kArrowWidth = 18;  // pixels

/// The headings of one side. The section of the selected cell is marked.
class GridHeading final : public QHeaderView {
 public:
    GridHeading(Qt::Orientation orientation, QWidget* parent);
    void setMarked(int section);
    [[nodiscard]] int marked() const { return marked_; }

 protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

 private:
    const CellFonts regular_;
    const CellFonts bold_;
    int marked_ = -1;
};

/// Whether a check box's cell text stands for a tick.
[[nodiscard]] bool isTicked(const std::string& text);

}  // namespace qrv
