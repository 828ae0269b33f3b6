// The one text grid: every grid of the tool is one of these, and one GridView shows them all. Fixed cells (headings,
// row numbers) are ordinary cells, so that rows and columns count as the user's text counts them: row 0 is the heading.
// Texts are code page 1252, one byte a character.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qrv {

/// 0xRRGGBB.
struct Colour {
    std::uint32_t rgb = 0;
    friend bool operator==(const Colour&, const Colour&) = default;
};

struct GridCell {
    std::string text;
    std::optional<Colour> back;  ///< absent: the grid's own background
    std::optional<Colour> fore;
    bool bold = false;
    std::string toolTip;
    friend bool operator==(const GridCell&, const GridCell&) = default;
};

/// How a column shows and edits its cells.
enum class ColumnKind { Text, CheckBox, DropDown };

/// Keys that a grid tells its form of.
enum class Key { Enter, Escape, Delete, F2, F5, F6, Up, Down, Other };

class Grid {
 public:
    Grid(std::string name, int rows, int cols, int fixedRows = 1, int fixedCols = 1);

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] int rows() const { return rows_; }
    [[nodiscard]] int cols() const { return cols_; }
    [[nodiscard]] int fixedRows() const { return fixedRows_; }
    [[nodiscard]] int fixedCols() const { return fixedCols_; }
    /// Keeps the cells that stay; new ones are empty.
    void setRows(int rows);

    // --- cells; a row or column outside the grid is RunTimeError 9 ---
    [[nodiscard]] const std::string& text(int row, int col) const { return cell(row, col).text; }
    void setText(int row, int col, std::string text);
    [[nodiscard]] const GridCell& cell(int row, int col) const;
    void setBack(int row, int col, std::optional<Colour> colour);
    void setFore(int row, int col, std::optional<Colour> colour);
    void setBold(int row, int col, bool bold);
    void setToolTip(int row, int col, std::string text);
    /// Empties texts, colours and tool tips of all cells from (row, col) to the grid's end.
    void clearFrom(int row, int col);

    // --- looks, in the layout's units (15 a pixel) ---
    [[nodiscard]] int colWidth(int col) const { return colWidths_.at(static_cast<std::size_t>(col)); }
    void setColWidth(int col, int units);
    [[nodiscard]] int rowHeight(int row) const { return rowHeights_.at(static_cast<std::size_t>(row)); }
    void setRowHeight(int row, int units);
    [[nodiscard]] ColumnKind colKind(int col) const { return colKinds_.at(static_cast<std::size_t>(col)); }
    void setColKind(int col, ColumnKind kind);
    /// The choices of the drop-down columns.
    [[nodiscard]] const std::vector<std::string>& comboList() const { return comboList_; }
    void setComboList(std::vector<std::string> choices);
    [[nodiscard]] std::optional<Colour> selectionColour() const { return selectionColour_; }
    void setSelectionColour(std::optional<Colour> colour);

    // --- selection ---
    [[nodiscard]] int row() const { return row_; }
    [[nodiscard]] int col() const { return col_; }
    /// Moves the selection by the program: no event.
    void select(int row, int col);
    [[nodiscard]] int topRow() const { return topRow_; }
    /// Scrolls this row to the top, as far as there are rows below it.
    void setTopRow(int row);
    /// For the view: the user scrolled.
    void noteTopRow(int row);
    /// For the view: the row to scroll to, once.
    [[nodiscard]] std::optional<int> takeTopRow();

    // --- what the user sees and may do ---
    [[nodiscard]] bool visible() const { return visible_; }
    void setVisible(bool visible);
    [[nodiscard]] bool enabled() const { return enabled_; }
    void setEnabled(bool enabled);
    /// Whether typing into the selected cell begins an edit. A form sets it as the selection enters a cell.
    [[nodiscard]] bool editable() const { return editable_; }
    void setEditable(bool editable);

    // --- the user's events; a view or a test calls these ---
    /// The selection enters a cell: moves it, then tells the form.
    void enterCell(int row, int col);
    void click(int row, int col);
    /// Gives true if the form took it; else a view begins an edit.
    [[nodiscard]] bool doubleClick(int row, int col);
    /// Tells the form of a key. Gives true if the form took it.
    bool keyDown(Key key);
    void gotFocus();
    void lostFocus();

    /// Begins an edit of the selected cell as the user does by typing. False: the cell takes no input.
    bool beginEdit();
    /// The text that the editor shows while an edit is under way, which validation may replace.
    [[nodiscard]] const std::string& editText() const { return editText_; }
    void setEditText(std::string text);
    [[nodiscard]] bool editing() const { return editing_; }
    /// Ends the edit with a typed text: validates, and unless refused stores and tells. False: refused, the cell stays
    /// in edit.
    bool commitEdit(const std::string& typed);
    /// Esc: the old value comes back.
    void cancelEdit();
    /// The whole edit cycle in one call, as a user who selects a cell, types and presses Enter. False: not editable, or
    /// refused (the edit is then cancelled and the old value is back).
    bool edit(int row, int col, const std::string& typed);

    // --- the form's side of the events ---
    std::function<void(int row, int col)> onEnterCell;
    std::function<void()> onClick;
    std::function<bool()> onDoubleClick;
    std::function<bool(Key)> onKeyDown;
    std::function<void()> onGotFocus;
    std::function<void()> onLostFocus;
    /// Before an edit starts; may change the cell or the choices. False refuses, and the cell is as it was.
    std::function<bool(int row, int col)> onBeforeEdit;
    /// May replace the text (setEditText). False refuses: the cell stays in edit.
    std::function<bool(int row, int col)> onValidateEdit;
    std::function<void(int row, int col)> onAfterEdit;
    /// The user gave up an edit.
    std::function<void(int row, int col)> onCancelEdit;

    /// Goes up with every change that a view must show.
    [[nodiscard]] std::uint64_t revision() const { return revision_; }
    /// The cells changed since the last call, and whether more than cells changed: for a view's repaint.
    struct Changes {
        bool all = false;
        std::vector<std::pair<int, int>> cells;
    };
    [[nodiscard]] Changes takeChanges();

 private:
    [[nodiscard]] std::size_t indexOf(int row, int col) const;
    GridCell& at(int row, int col) { return cells_[indexOf(row, col)]; }
    void touch(int row, int col);
    void touchAll();

    std::string name_;
    int rows_;
    int cols_;
    int fixedRows_;
    int fixedCols_;
    std::vector<GridCell> cells_;
    std::vector<int> colWidths_;
    std::vector<int> rowHeights_;
    std::vector<ColumnKind> colKinds_;
    std::vector<std::string> comboList_;
    std::optional<Colour> selectionColour_;
    int row_;
    int col_;
    int topRow_;
    bool mustScroll_ = false;
    bool visible_ = true;
    bool enabled_ = true;
    bool editable_ = false;
    bool editing_ = false;
    int editRow_ = 0;  ///< the cell that the edit began in, wherever the selection goes meanwhile
    int editCol_ = 0;
    std::string editText_;
    std::string textBeforeEdit_;
    std::uint64_t revision_ = 0;
    Changes changes_;
};

}  // namespace qrv
