#include "platform/qt/GridView.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>

#include "platform/qt/GridModel.h"
#include "platform/qt/GridPainter.h"
#include "platform/qt/Theme.h"

namespace qrv {

namespace {

constexpr int kRowPadding = 2;         // pixels above and below a line of text, together
constexpr double kLeastStretch = 0.8;  // columns shrink no further before the grid scrolls sideways
constexpr double kMostStretch = 4.0;   // columns grow no further than this
constexpr int kRowsInHint = 12;
constexpr int kRowsAtLeast = 3;

std::optional<Key> keyOf(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: return Key::Enter;
        case Qt::Key_Escape: return Key::Escape;
        case Qt::Key_Delete: return Key::Delete;
        case Qt::Key_F2: return Key::F2;
        case Qt::Key_F5: return Key::F5;
        case Qt::Key_F6: return Key::F6;
        case Qt::Key_Up: return Key::Up;
        case Qt::Key_Down: return Key::Down;
        default: return std::nullopt;
    }
}

/// Keys by which the user leaves a text that is being typed: they go along the grid, or to another block.
bool leavesEditor(const QKeyEvent& event) {
    static constexpr Qt::Key kLeave[] = {Qt::Key_F5,   Qt::Key_F6,  Qt::Key_PageUp, Qt::Key_PageDown,
                                         Qt::Key_Home, Qt::Key_End, Qt::Key_Left,   Qt::Key_Right};
    return std::ranges::find(kLeave, event.key()) != std::end(kLeave);
}

bool isTyping(const QKeyEvent& event) {
    const QString text = event.text();
    if (text.isEmpty() || !text.at(0).isPrint()) return false;
    return !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

}  // namespace

GridView::GridView(Grid& grid, QWidget* parent)
    : QTableView(parent),
      grid_(&grid),
      model_(new GridModel(grid, this)),
      painter_(new GridPainter(grid, *model_, this)),
      across_(new GridHeading(Qt::Horizontal, this)),
      down_(new GridHeading(Qt::Vertical, this)),
      rowsInHint_(kRowsInHint) {
    setObjectName(QString::fromStdString(grid.name()));
    setFont(theme::gridFont());
    setHorizontalHeader(across_);
    setVerticalHeader(down_);
    setModel(model_);
    setItemDelegate(painter_);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAutoScroll(false);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalScrollBar()->setSingleStep(theme::pixelsOf(grid.rows() > 0 ? grid.rowHeight(grid.rows() - 1) : 240));
    across_->setVisible(grid.fixedRows() > 0);
    down_->setVisible(grid.fixedCols() > 0);
    across_->setMinimumSectionSize(1);
    down_->setMinimumSectionSize(1);
    connect(qApp, &QApplication::focusChanged, this, &GridView::followFocus);
    refresh();
}

GridView::~GridView() {
    disconnect(qApp, nullptr, this, nullptr);
    if (editor_) editor_->removeEventFilter(this);
}

void GridView::setAccessibleText(std::function<QString(int, int)> words) { model_->accessibleText = std::move(words); }

void GridView::setFillsWidth(bool fills) {
    fillsWidth_ = fills;
    applyColWidths();
}

void GridView::setMuted(bool muted) {
    if (muted == isMuted_) return;
    isMuted_ = muted;
    painter_->setMuted(muted);
    followSelection();
    viewport()->update();
}

void GridView::showAllRows() {
    rowsInHint_ = grid_->rows();
    setMaximumHeight(sizeHint().height());
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

void GridView::run(const Event& event) {
    if (!grid_) return;
    if (runner_) {
        runner_(event);
    } else {
        event();
        refresh();
    }
}

// --- showing ---

void GridView::refresh() {
    if (!grid_ || grid_->revision() == shownRevision_) return;
    shownRevision_ = grid_->revision();
    const Grid::Changes changes = grid_->takeChanges();
    const std::optional<int> wantedTop = grid_->takeTopRow();
    following_ = true;
    model_->publish(changes);
    applyRowHeights();
    applyColWidths();
    following_ = false;
    if (isHidden() == grid_->visible()) setVisible(grid_->visible());
    setEnabled(grid_->enabled());
    followSelection();
    if (wantedTop) scrollTo(model_->indexOf(*wantedTop, grid_->fixedCols()), QAbstractItemView::PositionAtTop);
    if (editor_ && !committing_ && !grid_->editing()) removeEditor();
}

void GridView::followSelection() {
    following_ = true;
    const QModelIndex wanted = model_->indexOf(grid_->row(), grid_->col());
    selectionModel()->setCurrentIndex(wanted, QItemSelectionModel::NoUpdate);
    const bool marks = wanted.isValid() && !isMuted_;
    across_->setMarked(marks ? wanted.column() : -1);
    down_->setMarked(marks ? wanted.row() : -1);
    following_ = false;
}

void GridView::reveal() {
    if (!grid_) return;
    const QModelIndex index = model_->indexOf(grid_->row(), grid_->col());
    if (index.isValid()) scrollTo(index, QAbstractItemView::EnsureVisible);
}

void GridView::applyRowHeights() {
    const int line = QFontMetrics(font()).height() + kRowPadding;
    const int count = model_->rowCount();
    if (static_cast<int>(shownHeights_.size()) != count) {
        shownHeights_.resize(static_cast<std::size_t>(count), down_->defaultSectionSize());
    }
    for (int section = 0; section < count; ++section) {
        const int units = grid_->rowHeight(section + grid_->fixedRows());
        const int height = units == 0 ? 0 : std::max(theme::pixelsOf(units), line);
        int& shown = shownHeights_[static_cast<std::size_t>(section)];
        if (shown == height && down_->sectionSize(section) == height) continue;
        shown = height;
        setRowHidden(section, height == 0);
        if (height > 0) down_->resizeSection(section, height);
    }
    if (grid_->fixedRows() > 0 && grid_->rows() > 0) {
        across_->setFixedHeight(std::max(theme::pixelsOf(grid_->rowHeight(0)), line) + kRowPadding);
    }
}

int GridView::widthOf(int col) const {
    const int units = grid_->colWidth(col);
    return units <= 0 ? 0 : theme::pixelsOf(units);
}

void GridView::applyColWidths() {
    if (!grid_) return;
    const int fixed = grid_->fixedCols();
    if (fixed > 0) {
        const int labels = QFontMetrics(font()).horizontalAdvance(QStringLiteral("0000"));
        down_->setFixedWidth(std::max(widthOf(0), labels));
    }
    int total = 0;
    for (int col = fixed; col < grid_->cols(); ++col) total += widthOf(col);
    const int room = viewport()->width();
    const double stretch =
        fillsWidth_ && total > 0 ? std::clamp(static_cast<double>(room) / total, kLeastStretch, kMostStretch) : 1.0;
    int done = 0;
    int before = 0;
    shownWidths_.resize(static_cast<std::size_t>(grid_->cols()), -1);
    for (int col = fixed; col < grid_->cols(); ++col) {
        before += widthOf(col);
        const int width = static_cast<int>(before * stretch) - done;
        done += width;
        int& shown = shownWidths_[static_cast<std::size_t>(col)];
        if (shown == width) continue;
        shown = width;
        setColumnHidden(col - fixed, width == 0);
        if (width > 0) across_->resizeSection(col - fixed, width);
    }
}

QRect GridView::rectOf(int row, int col) const { return visualRect(model_->indexOf(row, col)); }

QSize GridView::sizeHint() const {
    if (!grid_) return QTableView::sizeHint();
    int width = 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
    for (int col = 0; col < grid_->cols(); ++col) width += widthOf(col);
    int height = 2 * frameWidth() + (across_->isHidden() ? 0 : across_->height());
    const int rows = std::min(model_->rowCount(), rowsInHint_);
    for (int section = 0; section < rows; ++section) height += down_->sectionSize(section);
    return {width, height};
}

QSize GridView::minimumSizeHint() const {
    const int line = QFontMetrics(font()).height() + kRowPadding;
    return {std::min(sizeHint().width(), theme::pixelsOf(2400)), (kRowsAtLeast + 1) * line + 2 * frameWidth()};
}

void GridView::detach() {
    removeEditor();
    following_ = true;
    model_->detach();
    grid_ = nullptr;
}

void GridView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    applyColWidths();
    placeEditor();
}

void GridView::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    placeEditor();
    // The form knows what is in sight, so that it can go back there, or to the first row.
    const int section = rowAt(0);
    if (grid_ && !following_ && section >= 0) grid_->noteTopRow(section + grid_->fixedRows());
}

// --- the user's events ---

void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (following_ || !grid_ || !current.isValid()) return;
    const int row = model_->gridRow(current);
    const int col = model_->gridCol(current);
    run([this, row, col] { grid_->enterCell(row, col); });
    reveal();
}

bool GridView::tellKey(Key key) {
    bool taken = false;
    run([&] { taken = grid_->keyDown(key); });
    if (taken && afterKey_) afterKey_();
    return taken;
}

/// Of keys that the open editor has no use for, those that leave the cell end the edit first, and no other does
/// anything.
bool GridView::leaveEditor(QKeyEvent* event) {
    if (!editor_) return true;
    event->setAccepted(leavesEditor(*event));
    return event->isAccepted() && finishEdit();
}

void GridView::keyPressEvent(QKeyEvent* event) {
    if (!leaveEditor(event) || !grid_) return;
    const std::optional<Key> key = keyOf(*event);
    const bool taken = key && tellKey(*key);
    if (!grid_ || taken) {
        event->accept();
        return;
    }
    const bool ticks = grid_->colKind(grid_->col()) == ColumnKind::CheckBox;
    if (key == Key::F2 || key == Key::Enter) {
        // Where nothing can be edited, Enter is the default button's.
        event->setAccepted(ticks || grid_->editable());
        if (!event->isAccepted()) return;
        ticks ? tick() : startEdit(std::nullopt);
        return;
    }
    if (key == Key::F5 || key == Key::F6) return;
    if (ticks && event->key() == Qt::Key_Space) {
        event->accept();
        tick();
        return;
    }
    if (isTyping(*event)) {
        event->accept();
        if (!ticks) startEdit(event->text());
        return;
    }
    if (key == Key::Escape || key == Key::Delete) {
        event->ignore();
        return;
    }
    QTableView::keyPressEvent(event);
}

bool GridView::isOnArrow(const QModelIndex& index, const QPoint& position) const {
    if (grid_->colKind(model_->gridCol(index)) != ColumnKind::DropDown) return false;
    return position.x() > visualRect(index).right() - kArrowWidth;
}

void GridView::mousePressEvent(QMouseEvent* event) {
    pressed_ = QModelIndex{};
    if (!grid_ || event->button() != Qt::LeftButton || !finishEdit() || !isFree_()) return;
    // Another grid whose edit the click has ended may have taken the focus back; the user asked for this place.
    setFocus(Qt::MouseFocusReason);
    if (!grid_) return;
    pressed_ = indexAt(event->position().toPoint());
    event->accept();
}

void GridView::mouseMoveEvent(QMouseEvent* event) { event->accept(); }

void GridView::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
    const QModelIndex pressed = pressed_;
    pressed_ = QModelIndex{};
    if (!grid_ || event->button() != Qt::LeftButton || !pressed.isValid()) return;
    const QPoint position = event->position().toPoint();
    if (indexAt(position) != pressed) return;
    const int row = model_->gridRow(pressed);
    const int col = model_->gridCol(pressed);
    const bool opensList = isOnArrow(pressed, position);
    run([this, row, col] { grid_->click(row, col); });
    if (!grid_) return;
    if (grid_->colKind(col) == ColumnKind::CheckBox) tick();
    if (opensList) startEdit(std::nullopt);
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
    if (!grid_ || event->button() != Qt::LeftButton || isEditing()) return;
    const QModelIndex index = indexAt(event->position().toPoint());
    if (!index.isValid()) return;
    const int row = model_->gridRow(index);
    const int col = model_->gridCol(index);
    bool taken = false;
    run([&] { taken = grid_->doubleClick(row, col); });
    if (grid_ && !taken && grid_->colKind(col) != ColumnKind::CheckBox) startEdit(std::nullopt);
}

bool GridView::hasOrLendsFocus() const {
    const QWidget* now = QApplication::focusWidget();
    return now && (now == this || isAncestorOf(now));
}

/// The grid has the focus as long as it or its editor has it, and while another window is in front.
void GridView::followFocus() {
    update();
    const QWidget* now = QApplication::focusWidget();
    if (!now || !grid_ || now->window() != window()) return;
    const bool has = hasOrLendsFocus();
    // An edit that was left ends first.
    if (has == toldFocus_ || (!has && editor_)) return;
    run([this, has] {
        // Another grid's edit, ended first, may have moved the focus once more.
        if (hasOrLendsFocus() != has || has == toldFocus_) return;
        toldFocus_ = has;
        has ? grid_->gotFocus() : grid_->lostFocus();
    });
}

void GridView::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) reveal();
}

bool GridView::event(QEvent* event) {
    const bool done = QTableView::event(event);
    // Here as long as the grid has the focus or lends it to its editor.
    if (event->type() == QEvent::Paint && hasOrLendsFocus()) {
        QPainter painter(this);
        painter.setPen(theme::accent());
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
    return done;
}

bool GridView::viewportEvent(QEvent* event) {
    // A grid looks the same in a window that is not in front: nothing is to be painted anew.
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate) return true;
    if (event->type() == QEvent::ToolTip && grid_ && tellsCutTexts_) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const QModelIndex index = indexAt(help->pos());
        if (index.isValid() && model_->cellAt(index).toolTip.empty()) {
            QStyleOptionViewItem option;
            initViewItemOption(&option);
            const QString text = model_->data(index, Qt::DisplayRole).toString();
            const bool cut = itemDelegate()->sizeHint(option, index).width() > columnWidth(index.column());
            QToolTip::showText(help->globalPos(), cut ? text : QString{}, this);
            return true;
        }
    }
    return QTableView::viewportEvent(event);
}

}  // namespace qrv
