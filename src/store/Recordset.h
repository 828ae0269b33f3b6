// A table-type cursor over one table in memory: order of the current index, exact seek, edit, add, delete, one position
// shared by all callers, null. Every change is written through to the file before it is seen. What the table refuses is
// a RunTimeError with the engine's number.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
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
using KeyPart = std::variant<std::int32_t, std::string>;

class Recordset {
 public:
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
    void moveNext();
    [[nodiscard]] bool isEof() const { return state_ == State::AtEnd || rows_.empty(); }
    /// Exact seek on the current index; sets noMatch(). Without an index 3019, with a part of the wrong type 3421.
    void seek(std::span<const KeyPart> key);
    [[nodiscard]] bool noMatch() const { return noMatch_; }
    [[nodiscard]] std::int32_t rowCount() const;

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
    [[nodiscard]] const Value& value(std::size_t column) const;
    /// Raises 3020 outside an edit; 6 where the number doesn't fit the column, 3163 where the text is too long.
    void setValue(std::size_t column, Value value);

 private:
    struct Row {
        std::int64_t id = 0;  ///< the file's row number: stored order
        std::vector<Value> values;
    };
    using Rows = std::map<std::int64_t, Row>;
    using Order = std::map<std::string, Row*>;
    enum class State { OnRow, AtEnd, NoRow, Deleted };
    enum class Pending { None, Edit, Add };

    [[nodiscard]] std::string keyOf(const Index& index, const Row& row) const;
    [[nodiscard]] bool holdsKey(const Index& index, std::size_t order, const Row& row) const;
    [[nodiscard]] bool changesKey(const Row& after, const Row& before) const;
    void load(Sqlite& file);
    void checkColumns(const Row& row) const;
    void checkKeys(const Row& row, const Row* known) const;
    void enterInOrders(Row& row);
    void leaveOrders(const Row& row);
    void standOn(Row* row);
    void writeEdit();
    void writeAddition();

    const Table* table_;
    Missed missed_;
    std::unique_ptr<TableWriter> writer_;  ///< absent on a read-only file
    Rows rows_;
    std::vector<Order> orders_;  ///< one for each index of the table
    int index_ = -1;             ///< the current index; -1: stored order
    State state_ = State::AtEnd;
    Row* current_ = nullptr;
    Order::iterator inOrder_;   ///< where current_ stands in the current index, while State is OnRow
    std::string placeInOrder_;  ///< of a deleted row, for the move behind it
    std::int64_t placeInRows_ = 0;
    bool noMatch_ = false;
    Pending pending_ = Pending::None;
    std::vector<Value> buffer_;
};

}  // namespace qrv
