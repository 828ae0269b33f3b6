// Writes the changes of one table through to the file: a row added, changed or deleted by its row number.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "store/Recordset.h"
#include "store/Sqlite.h"

namespace qrv {

class TableWriter {
 public:
    TableWriter(const Table& table, Sqlite& file) : table_(table), file_(file) {}

    /// Gives the new row's number.
    std::int64_t insert(std::span<const Value> values);
    /// Writes the columns in which `after` differs from `before`.
    void update(std::int64_t rowId, std::span<const Value> before, std::span<const Value> after);
    void remove(std::int64_t rowId);

 private:
    Statement& updateOf(std::uint32_t columns);

    const Table& table_;
    Sqlite& file_;
    Statement insert_;
    Statement remove_;
    std::map<std::uint32_t, Statement> updates_;  ///< by the set of columns, bit n for column n
};

/// Binds a value to a statement's parameter, texts as UTF-8.
void bindValue(Statement& statement, int parameter, const Value& value);

}  // namespace qrv
