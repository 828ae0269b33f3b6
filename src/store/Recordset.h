// A table-type cursor over one table in memory: order of the current index, exact seek, edit, add, delete, one position
// shared by all callers, null. Every change is written through to the file before it is seen. What the table refuses is
// a RunTimeError with the engine's number.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "store/Schema.h"

namespace qrv {

class Sqlite;
class TableWriter;

/// A field: null, a whole number (16 or 32 bits, byte, flag), a 32-bit float, or a text in code page 1252.
using Value = std::variant<std::monostate, std::int32_t, float, std::string>;

/// One part of a key as a seek gives it.
using KeyPart = std::variant<std::int32_t, std::string_view>;

class Recordset {
 public:
    /// The fields of a row, in the schema's order of columns.
    using Values = std::vector<Value>;
    /// What a seek that misses leaves behind.
    enum class Missed { LosesRow, KeepsRow };

    /// Reads all rows of the table, in stored order, checking every value against the schema. Stands on the first row,
    /// with no index. @param writable  whether changes are written through; without it XEdit and XAddNew raise 3027
    Recordset(const Table& table, Sqlite& file, bool writable, Missed missed = Missed::LosesRow);
    ~Recordset();
    Recordset(Recordset&&) noexcept;
    Recordset& operator=(Recordset&&) noexcept;

    [[nodiscard]] const Table& table() const { return *table_; }

    /// Chooses the order of walks and the key of seeks, by the index's name.
    void setIndex(std::string_view name);

    /// First row in index order, or in stored order without an index. Raises 3021 on an empty table.
    void moveFirst();
    /// Next row; past the last one isEof() is true. After a deletion: the row behind the deleted place.
    void moveNext() {
        cancelUpdate();
        const Order& order = currentOrder();
        if (state_ == State::OnRow && isAt(order, place_) && place_ + 1 < order.size()) {
            current_ = order[++place_].row;
        } else {
            moveBehind(order);
        }
    }
    [[nodiscard]] bool isEof() const { return state_ == State::AtEnd || stored_.empty(); }
    /// Exact seek on the current index; sets noMatch(). Without an index 3019, with a part of the wrong type 3421.
    void seek(std::span<const KeyPart> key);
    [[nodiscard]] bool noMatch() const { return noMatch_; }
    [[nodiscard]] std::int32_t rowCount() const;
    /// A copy of all rows, in stored order; moves nothing.
    [[nodiscard]] std::vector<Values> allRows() const;

    void edit();
    void addNew();
    /// Writes the pending edit or row. After an edit the cursor stays on the row, also when its key has changed; after
    /// an addition on the row where it stood before. Raises 3020 without a pending change, 3022 on a key that is there
    /// already, 3315 on a text that must not be empty.
    void update();
    /// Drops a pending edit or row.
    void cancelUpdate() { pending_ = Pending::None; }
    /// No current row afterwards until a move.
    void deleteRow();

    /// A field of the current row, or of the row being edited or added. Raises 3021 without a current row.
    [[nodiscard]] const Value& value(std::size_t column) const {
        if (pending_ != Pending::None) return buffer_[column];
        if (state_ != State::OnRow) raiseNoRow();
        return current_->values[column];
    }
    /// Raises 3020 outside an edit; 6 where the number doesn't fit the column or is no number, 3163 where the text is
    /// too long.
    void setValue(std::size_t column, Value value);

 private:
    struct Row {
        std::int64_t id = 0;     ///< the file's row number, which the file may give again after a deletion
        std::int64_t added = 0;  ///< its place in the order of adding, never given again
        Values values;
    };
    /// A row in an order: sorted by key, rows of one key as they were added.
    struct Entry {
        std::uint64_t key;
        std::int64_t added;
        Row* row;
        friend bool operator<(const Entry& a, const Entry& b) {
            return a.key != b.key ? a.key < b.key : a.added < b.added;
        }
    };
    using Order = std::vector<Entry>;
    enum class State { OnRow, AtEnd, NoRow, Deleted };
    enum class Pending { None, Edit, Add };

    [[noreturn]] static void raiseNoRow();
    [[nodiscard]] const Order& currentOrder() const { return index_ < 0 ? stored_ : orders_[std::size_t(index_)]; }
    [[nodiscard]] bool isAt(const Order& order, std::size_t place) const {
        return place < order.size() && order[place].row == current_;
    }
    [[nodiscard]] std::optional<std::uint64_t> keyOf(const Index& index, const Values& row) const;
    [[nodiscard]] Entry entryOf(const Index& index, Row& row) const;
    [[nodiscard]] Entry placeOfCurrent() const;
    [[nodiscard]] std::optional<std::uint64_t> wantedKey(const Index& index, std::span<const KeyPart> key) const;
    [[nodiscard]] bool changesKey(const Index& index, const Values& after, const Values& before) const;
    [[nodiscard]] bool changesAnyKey(const Values& after, const Values& before) const;
    [[nodiscard]] bool holdsKey(std::size_t index, const Values& row) const;
    void moveBehind(const Order& order);
    void standAt(const Order& order, Order::const_iterator place);
    void load(Sqlite& file);
    void checkColumns(const Values& row) const;
    void checkKeys(const Values& row, const Row* known) const;
    Row& keep(std::int64_t id, Values values);
    void enterInOrders(Row& row);
    void leaveOrders(Row& row);
    void writeEdit();
    void writeAddition();

    const Table* table_;
    Missed missed_;
    std::unique_ptr<TableWriter> writer_;  ///< absent on a read-only file
    std::deque<Row> rows_;                 ///< where rows live and never move
    std::vector<Row*> unused_;             ///< places in rows_ whose rows were deleted
    std::int64_t lastAdded_ = 0;           ///< the greatest place in the order of adding that was ever given
    Order stored_;                         ///< all rows in the order in which they were added
    std::vector<Order> orders_;            ///< one for each index of the table
    int index_ = -1;                       ///< the current index; -1: stored order
    State state_ = State::AtEnd;
    Row* current_ = nullptr;
    std::size_t place_ = 0;  ///< where current_ stood in the current order when last looked for
    Entry deleted_{};        ///< the place of a deleted row, for the move behind it
    bool noMatch_ = false;
    Pending pending_ = Pending::None;
    Values buffer_;
};

}  // namespace qrv
