#include "platform/Grid.h"

#include <algorithm>

#include "platform/RunTimeError.h"

namespace qrv {

namespace {

constexpr int kUsualColWidth = 1000;  // units
constexpr int kUsualRowHeight = 240;  // units
constexpr std::size_t kMostSingleChanges = 4096;

std::size_t sized(int count) { return static_cast<std::size_t>(count); }

}  // namespace

Grid::Grid(std::string name, int rows, int cols, int fixedRows, int fixedCols)
    : name_(std::move(name)),
      rows_(rows),
      cols_(cols),
      fixedRows_(fixedRows),
      fixedCols_(fixedCols),
      cells_(sized(rows) * sized(cols)),
      colWidths_(sized(cols), kUsualColWidth),
      rowHeights_(sized(rows), kUsualRowHeight),
      colKinds_(sized(cols), ColumnKind::Text),
      row_(std::min(fixedRows, std::max(rows - 1, 0))),
      col_(std::min(fixedCols, std::max(cols - 1, 0))),
      topRow_(fixedRows) {}

std::size_t Grid::indexOf(int row, int col) const {
    if (row < 0 || row >= rows_ || col < 0 || col >= cols_) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return sized(row) * sized(cols_) + sized(col);
}

void Grid::touch(int row, int col) {
    ++revision_;
    if (changes_.all) return;
    if (changes_.cells.size() >= kMostSingleChanges) {
        touchAll();
        return;
    }
    changes_.cells.emplace_back(row, col);
}

void Grid::touchAll() {
    ++revision_;
    changes_.all = true;
    changes_.cells.clear();
}

Grid::Changes Grid::takeChanges() { return std::exchange(changes_, Changes{}); }

void Grid::setRows(int rows) {
    if (rows == rows_) return;
    rows_ = rows;
    cells_.resize(sized(rows) * sized(cols_));
    rowHeights_.resize(sized(rows), kUsualRowHeight);
    row_ = std::clamp(row_, 0, std::max(rows - 1, 0));
    topRow_ = std::clamp(topRow_, 0, std::max(rows - 1, 0));
    touchAll();
}

const GridCell& Grid::cell(int row, int col) const { return cells_[indexOf(row, col)]; }

void Grid::setText(int row, int col, std::string text) {
    GridCell& target = at(row, col);
    if (target.text == text) return;
    target.text = std::move(text);
    touch(row, col);
}

void Grid::setBack(int row, int col, std::optional<Colour> colour) {
    GridCell& target = at(row, col);
    if (target.back == colour) return;
    target.back = colour;
    touch(row, col);
}

void Grid::setFore(int row, int col, std::optional<Colour> colour) {
    GridCell& target = at(row, col);
    if (target.fore == colour) return;
    target.fore = colour;
    touch(row, col);
}

void Grid::setBold(int row, int col, bool bold) {
    GridCell& target = at(row, col);
    if (target.bold == bold) return;
    target.bold = bold;
    touch(row, col);
}

void Grid::setToolTip(int row, int col, std::string text) {
    GridCell& target = at(row, col);
    if (target.toolTip == text) return;
    target.toolTip = std::move(text);
    touch(row, col);
}

void Grid::clearFrom(int row, int col) {
    for (int r = row; r < rows_; ++r) {
        for (int c = col; c < cols_; ++c) {
            if (at(r, c) == GridCell{}) continue;
            at(r, c) = GridCell{};
            touch(r, c);
        }
    }
}

void Grid::setColWidth(int col, int units) {
    if (colWidth(col) == units) return;
    colWidths_[sized(col)] = units;
    touchAll();
}

void Grid::setRowHeight(int row, int units) {
    if (rowHeight(row) == units) return;
    rowHeights_[sized(row)] = units;
    touchAll();
}

void Grid::setColKind(int col, ColumnKind kind) {
    colKinds_.at(sized(col)) = kind;
    touchAll();
}

void Grid::setComboList(std::vector<std::string> choices) {
    comboList_ = std::move(choices);
    touchAll();
}

void Grid::setSelectionColour(std::optional<Colour> colour) {
    if (selectionColour_ == colour) return;
    selectionColour_ = colour;
    touchAll();
}

void Grid::select(int row, int col) {
    static_cast<void>(indexOf(row, col));
    if (row == row_ && col == col_) return;
    touch(row_, col_);
    row_ = row;
    col_ = col;
    touch(row_, col_);
}

void Grid::setTopRow(int row) {
    noteTopRow(row);
    mustScroll_ = true;
    ++revision_;
}

void Grid::noteTopRow(int row) { topRow_ = std::clamp(row, 0, std::max(rows_ - 1, 0)); }

std::optional<int> Grid::takeTopRow() {
    return std::exchange(mustScroll_, false) ? std::optional(topRow_) : std::nullopt;
}

void Grid::setVisible(bool visible) {
    if (visible_ == visible) return;
    visible_ = visible;
    ++revision_;
}

void Grid::setEnabled(bool enabled) {
    if (enabled_ == enabled) return;
    enabled_ = enabled;
    ++revision_;
}

void Grid::setEditable(bool editable) { editable_ = editable; }

void Grid::enterCell(int row, int col) {
    select(row, col);
    if (onEnterCell) onEnterCell(row_, col_);
}

void Grid::click(int row, int col) {
    enterCell(row, col);
    if (onClick) onClick();
}

bool Grid::doubleClick(int row, int col) {
    enterCell(row, col);
    return onDoubleClick && onDoubleClick();
}

bool Grid::keyDown(Key key) { return onKeyDown && onKeyDown(key); }

void Grid::gotFocus() {
    if (onGotFocus) onGotFocus();
}

void Grid::lostFocus() {
    if (onLostFocus) onLostFocus();
}

bool Grid::beginEdit() {
    if (editing_ || !editable_ || !enabled_ || row_ < fixedRows_) return false;
    editRow_ = row_;
    editCol_ = col_;
    textBeforeEdit_ = text(editRow_, editCol_);
    if (onBeforeEdit && !onBeforeEdit(editRow_, editCol_)) {
        setText(editRow_, editCol_, textBeforeEdit_);
        return false;
    }
    editing_ = true;
    editText_ = text(editRow_, editCol_);
    return true;
}

void Grid::setEditText(std::string text) {
    editText_ = std::move(text);
    ++revision_;
}

bool Grid::commitEdit(const std::string& typed) {
    if (!editing_) return false;
    editText_ = typed;
    const bool isAccepted = !onValidateEdit || onValidateEdit(editRow_, editCol_);
    // The form may have given the edit up while it looked at the text.
    if (!isAccepted || !editing_) return false;
    editing_ = false;
    setText(editRow_, editCol_, editText_);
    if (onAfterEdit) onAfterEdit(editRow_, editCol_);
    return true;
}

void Grid::cancelEdit() {
    if (!editing_) return;
    editing_ = false;
    setText(editRow_, editCol_, textBeforeEdit_);
    if (onCancelEdit) onCancelEdit(editRow_, editCol_);
}

bool Grid::edit(int row, int col, const std::string& typed) {
    enterCell(row, col);
    if (!beginEdit()) return false;
    if (commitEdit(typed)) return true;
    cancelEdit();
    return false;
}

}  // namespace qrv
