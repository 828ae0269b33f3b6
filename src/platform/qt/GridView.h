// The one view of every grid of the tool: shows a Grid and turns the user's mouse and keys into the Grid's events. The
// headings stay while the cells scroll. Typing, F2 and a double click edit; Enter ends an edit, Esc gives back the old
// value; a refused text leaves the editor open.
#pragma once

#include <QTableView>
#include <functional>
#include <optional>
#include <vector>

#include "platform/Grid.h"

class QComboBox;
class QLineEdit;

namespace qrv {

class GridHeading;
class GridModel;
class GridPainter;

class GridView : public QTableView {
 public:
    using Event = std::function<void()>;
    /// Runs an event of the form, and shows every form again afterwards.
    using Runner = std::function<void(const Event&)>;

    /// The view's object name is the grid's name.
    GridView(Grid& grid, QWidget* parent);
    ~GridView() override;

    /// Without a runner events go straight to the grid, and the view shows itself again.
    void setRunner(Runner runner) { runner_ = std::move(runner); }
    /// Tells whether the user may go to this grid: not while another one holds on to a text that it refused.
    void setIsFree(std::function<bool()> isFree) { isFree_ = std::move(isFree); }
    /// After each key that the grid was told of.
    void setAfterKey(Event afterKey) { afterKey_ = std::move(afterKey); }
    void setAccessibleText(std::function<QString(int row, int col)> words);
    /// Whether the columns grow together until they fill the width; on from the start.
    void setFillsWidth(bool fills);
    /// Whether a text that its cell cuts is read in full where the pointer rests; on from the start.
    void setTellsCutTexts(bool tells) { tellsCutTexts_ = tells; }
    /// Asks for room for all rows, and for no more.
    void showAllRows();
    /// How many rows the window is to have room for when it comes up.
    void setRowsInHint(int rows) { rowsInHint_ = rows; }

    /// A muted grid's selection doesn't catch the eye: for the one of two grids that the shown data doesn't belong to.
    void setMuted(bool muted);

    /// Shows what has changed in the grid since the last call: one repaint, however many cells.
    void refresh();
    /// Scrolls the selected cell into sight.
    void reveal();
    /// Ends an edit that is left: a typed text is taken as by Enter, a list without a choice gives back the old text.
    /// False: the typed text was refused, and the editor stays.
    bool finishEdit();
    [[nodiscard]] bool isEditing() const { return editor_ != nullptr; }
    /// An edit is being stored because the user goes elsewhere: the focus stays where the user puts it.
    [[nodiscard]] bool isBeingLeft() const { return isBeingLeft_; }
    /// The grid is about to go: the view is empty and deaf from now on.
    void detach();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    /// Where a cell of the grid is painted, in the viewport; for tests and pictures.
    [[nodiscard]] QRect rectOf(int row, int col) const;

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

 private:
    void run(const Event& event);
    void followSelection();
    void followFocus();
    [[nodiscard]] bool hasOrLendsFocus() const;
    void applyRowHeights();
    void applyColWidths();
    [[nodiscard]] int widthOf(int col) const;
    bool tellKey(Key key);
    bool leaveEditor(QKeyEvent* event);
    bool editorKey(QKeyEvent* event);
    bool listKey(const QKeyEvent& event);
    void startEdit(const std::optional<QString>& typed);
    void openEditor(const std::optional<QString>& typed);
    QWidget* makeDropDown(const std::optional<QString>& typed);
    QWidget* makeLine(const std::optional<QString>& typed);
    void placeEditor();
    void removeEditor();
    void finishLeftEdit();
    void giveUpEdit();
    void takeEdit();
    bool commitEditor();
    [[nodiscard]] std::string editorText() const;
    void tick();
    [[nodiscard]] bool isOnArrow(const QModelIndex& index, const QPoint& position) const;

    Grid* grid_;
    GridModel* model_;
    GridPainter* painter_;
    GridHeading* across_;
    GridHeading* down_;
    Runner runner_;
    std::function<bool()> isFree_ = [] { return true; };
    Event afterKey_;
    QWidget* editor_ = nullptr;
    QPersistentModelIndex pressed_;
    std::vector<int> shownHeights_;
    std::vector<int> shownWidths_;
    std::uint64_t shownRevision_ = ~std::uint64_t{0};
    int rowsInHint_;
    bool fillsWidth_ = true;
    bool tellsCutTexts_ = true;
    bool isMuted_ = false;
    bool following_ = false;
    bool committing_ = false;
    bool isBeingLeft_ = false;
    bool toldFocus_ = false;
};

}  // namespace qrv
