// Reads the rows of one table in stored order, and checks every value against the schema: the engine's own check passes
// files whose bytes were changed. Refuses with one sentence that names file, table, row and reason.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/Recordset.h"
#include "store/Sqlite.h"

namespace qrv {

/// Raises 3343 for one row of a file.
[[noreturn]] void refuseRow(const Sqlite& file, const Table& table, std::int64_t rowId, const std::string& reason);

class RowReader {
 public:
    RowReader(const Table& table, Sqlite& file);

    [[nodiscard]] bool next();
    [[nodiscard]] std::int64_t rowId() const { return rowId_; }
    [[nodiscard]] std::vector<Value> takeValues();

 private:
    [[nodiscard]] Value valueOf(std::size_t column) const;
    [[nodiscard]] Value numberOf(std::size_t column) const;
    [[nodiscard]] Value textOf(std::size_t column) const;
    [[noreturn]] void refuseColumn(std::size_t column, const std::string& reason) const;

    const Table& table_;
    Sqlite& file_;
    Statement rows_;
    std::int64_t rowId_ = 0;
    std::size_t count_ = 0;
};

}  // namespace qrv
