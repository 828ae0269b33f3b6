#include "platform/qt/GridPainter.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include "platform/qt/GridModel.h"
#include "platform/qt/Texts.h"
#include "platform/qt/Theme.h"

namespace qrv {

namespace {

constexpr int kTextMargin = 4;      // pixels
constexpr int kHeadingMargin = 2;   // pixels
constexpr double kWrapsFrom = 1.7;  // row height in lines from which a text is wrapped

QColor colourOf(Colour colour) { return QColor::fromRgb(static_cast<QRgb>(colour.rgb)); }

/// Dark or light text, whichever is read more easily on `back`.
QColor readableOn(const QColor& back, const QColor& usual) {
    const double light = 0.299 * back.redF() + 0.587 * back.greenF() + 0.114 * back.blueF();
    return light < 0.56 ? QColor(Qt::white) : usual;
}

QString paintedText(const std::string& text) { return text == " " || text.empty() ? QString{} : shownText(text); }

}  // namespace

bool isTicked(const std::string& text) { return !text.empty() && text != "0" && text != " " && text != "False"; }

CellFonts::CellFonts(const QFont& font) {
    fonts_.fill(font);
    for (std::size_t i = 0; i < fonts_.size(); ++i) fonts_.at(i).setStretch(kStretches.at(i));
}

void CellFonts::draw(QPainter* painter, const QString& text, const QRect& room, Qt::Alignment across) const {
    painter->setFont(usual());
    int width = painter->fontMetrics().horizontalAdvance(text);
    if (width > room.width()) {
        std::size_t chosen = 1;
        while (chosen + 1 < fonts_.size() && kStretches.at(chosen) * width > 100 * room.width()) ++chosen;
        painter->setFont(fonts_.at(chosen));
        width = painter->fontMetrics().horizontalAdvance(text);
    }
    const QFontMetrics metrics = painter->fontMetrics();
    const int left = across == Qt::AlignHCenter ? std::max((room.width() - width) / 2, 0) : 0;
    const QPoint start(room.left() + left, room.top() + (room.height() - metrics.height() + 1) / 2 + metrics.ascent());
    const bool isCut = width > room.width();
    if (isCut) painter->save();
    if (isCut) painter->setClipRect(room, Qt::IntersectClip);
    painter->drawText(start, text);
    if (isCut) painter->restore();
}

GridPainter::GridPainter(const Grid& grid, const GridModel& model, QObject* parent)
    : QAbstractItemDelegate(parent),
      grid_(grid),
      model_(model),
      regular_(theme::gridFont()),
      bold_(theme::headingFont()) {}

void GridPainter::paintCheckBox(QPainter* painter, const QStyleOptionViewItem& option, const GridCell& cell) const {
    QStyleOptionButton box;
    box.state = QStyle::State_Enabled | (isTicked(cell.text) ? QStyle::State_On : QStyle::State_Off);
    const int side = QApplication::style()->pixelMetric(QStyle::PM_IndicatorWidth);
    box.rect = QRect(option.rect.center() - QPoint(side / 2, side / 2), QSize(side, side));
    box.palette = option.palette;
    QApplication::style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter);
}

void GridPainter::paintArrow(QPainter* painter, const QStyleOptionViewItem& option) {
    QStyleOption arrow;
    arrow.state = QStyle::State_Enabled;
    arrow.rect = QRect(option.rect.right() - kArrowWidth, option.rect.top(), kArrowWidth, option.rect.height());
    arrow.palette = option.palette;
    QApplication::style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrow, painter);
}

void GridPainter::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const GridCell& cell = model_.cellAt(index);
    const int row = model_.gridRow(index);
    const int col = model_.gridCol(index);
    const bool selected = row == grid_.row() && col == grid_.col();
    QColor back = cell.back ? colourOf(*cell.back) : option.palette.color(QPalette::Base);
    if (selected && !isMuted_ && !cell.back) back = theme::selectedCell();
    if (selected && grid_.selectionColour()) back = colourOf(*grid_.selectionColour());
    painter->fillRect(option.rect, back);
    if (selected) paintFrame(painter, option);
    if (grid_.colKind(col) == ColumnKind::CheckBox) {
        paintCheckBox(painter, option, cell);
        return;
    }
    QRect room = option.rect.adjusted(kTextMargin, 0, -1, 0);
    // Where a list drops down, as long as the user may choose from it.
    if (selected && grid_.colKind(col) == ColumnKind::DropDown && grid_.editable()) {
        room.adjust(0, 0, -kArrowWidth, 0);
        paintArrow(painter, option);
    }
    const QString text = paintedText(cell.text);
    if (text.isEmpty()) return;
    const QColor usual = text == QLatin1String(".") ? theme::faintText() : option.palette.color(QPalette::Text);
    const CellFonts& fonts = cell.bold ? bold_ : regular_;
    const bool wraps = option.rect.height() >= kWrapsFrom * option.fontMetrics.height();
    painter->setPen(cell.fore ? colourOf(*cell.fore) : readableOn(back, usual));
    if (!wraps) {
        fonts.draw(painter, text, room, Qt::AlignLeft);
        return;
    }
    painter->setFont(fonts.usual());
    painter->drawText(room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextWordWrap, text);
}

/// Where the keys are is plain to see, in a muted grid, too; where they would go on, less so.
void GridPainter::paintFrame(QPainter* painter, const QStyleOptionViewItem& option) const {
    if (option.state & QStyle::State_HasFocus) {
        theme::drawFocus(*painter, option.rect);
        return;
    }
    painter->setPen(isMuted_ ? theme::faintText() : theme::accent());
    painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
}

QSize GridPainter::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QString text = paintedText(model_.cellAt(index).text);
    return {option.fontMetrics.horizontalAdvance(text) + 2 * kTextMargin, option.fontMetrics.height() + 2};
}

GridHeading::GridHeading(Qt::Orientation orientation, QWidget* parent)
    : QHeaderView(orientation, parent), regular_(theme::gridFont()), bold_(theme::headingFont()) {
    setSectionResizeMode(QHeaderView::Fixed);
    setSectionsClickable(false);
    setHighlightSections(false);
}

void GridHeading::setMarked(int section) {
    if (section == marked_) return;
    if (marked_ >= 0 && marked_ < count()) updateSection(marked_);
    marked_ = section;
    if (marked_ >= 0 && marked_ < count()) updateSection(marked_);
}

void GridHeading::paintSection(QPainter* painter, const QRect& rect, int section) const {
    if (!rect.isValid()) return;
    const bool marked = section == marked_;
    painter->fillRect(rect, marked ? theme::markedHeading() : theme::heading());
    painter->setPen(theme::line());
    painter->drawLine(rect.bottomLeft(), rect.bottomRight());
    painter->drawLine(rect.topRight(), rect.bottomRight());
    const CellFonts& fonts = marked || orientation() == Qt::Horizontal ? bold_ : regular_;
    painter->setPen(palette().color(QPalette::WindowText));
    const QString text = model()->headerData(section, orientation(), Qt::DisplayRole).toString();
    fonts.draw(painter, text, rect.adjusted(kHeadingMargin, 0, -kHeadingMargin, 0), Qt::AlignHCenter);
}

}  // namespace qrv
