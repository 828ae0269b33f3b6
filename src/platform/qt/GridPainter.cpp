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
constexpr int kLeastStretch = 62;   // per cent
constexpr double kWrapsFrom = 1.7;  // row height in lines from which a text is wrapped

QColor colourOf(Colour colour) { return QColor::fromRgb(static_cast<QRgb>(colour.rgb)); }

/// Dark or light text, whichever is read more easily on `back`.
QColor readableOn(const QColor& back, const QColor& usual) {
    const double light = 0.299 * back.redF() + 0.587 * back.greenF() + 0.114 * back.blueF();
    return light < 0.56 ? QColor(Qt::white) : usual;
}

/// A text that is too long for its cell is set narrower, down to five eighths, before any of it is lost.
void fitFont(QPainter* painter, QFont font, const QString& text, int room) {
    painter->setFont(font);
    const int needed = painter->fontMetrics().horizontalAdvance(text);
    if (needed <= room) return;
    font.setStretch(std::max(kLeastStretch, 100 * room / needed));
    painter->setFont(font);
}

QString paintedText(const std::string& text) { return text == " " || text.empty() ? QString{} : shownText(text); }

}  // namespace

bool isTicked(const std::string& text) { return !text.empty() && text != "0" && text != " " && text != "False"; }

GridPainter::GridPainter(const Grid& grid, const GridModel& model, QObject* parent)
    : QAbstractItemDelegate(parent), grid_(grid), model_(model) {}

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
    if (selected && isMuted_) {
        painter->setPen(theme::faintText());
        painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    } else if (selected) {
        painter->setPen(QPen(theme::accent(), 2));
        painter->drawRect(QRectF(option.rect).adjusted(1, 1, -1, -1));
    }
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
    QFont font = option.font;
    if (cell.bold) font.setBold(true);
    const bool wraps = option.rect.height() >= kWrapsFrom * option.fontMetrics.height();
    if (wraps) {
        painter->setFont(font);
    } else {
        fitFont(painter, font, text, room.width());
    }
    painter->setPen(cell.fore ? colourOf(*cell.fore) : readableOn(back, usual));
    painter->drawText(room, Qt::AlignVCenter | Qt::AlignLeft | (wraps ? Qt::TextWordWrap : Qt::TextSingleLine), text);
}

QSize GridPainter::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QString text = paintedText(model_.cellAt(index).text);
    return {option.fontMetrics.horizontalAdvance(text) + 2 * kTextMargin, option.fontMetrics.height() + 2};
}

GridHeading::GridHeading(Qt::Orientation orientation, QWidget* parent) : QHeaderView(orientation, parent) {
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
    QFont headingFont = font();
    headingFont.setBold(marked || orientation() == Qt::Horizontal);
    painter->setPen(palette().color(QPalette::WindowText));
    const QString text = model()->headerData(section, orientation(), Qt::DisplayRole).toString();
    fitFont(painter, headingFont, text, rect.width() - 2 * kHeadingMargin);
    painter->drawText(rect.adjusted(kHeadingMargin, 0, -kHeadingMargin, 0),
                      Qt::AlignVCenter | Qt::AlignHCenter | Qt::TextSingleLine, text);
}

}  // namespace qrv
