// A configuration as a file of the engine: its tables made, compared with the schema before a row is read, and
// upgraded. Used within the store.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "store/Recordset.h"
#include "store/Schema.h"
#include "store/Sqlite.h"

namespace qrv {

/// Which tables an older file may lack; they are added when it is opened.
[[nodiscard]] bool mayBeMissing(const Table& table);

/// Raises 3343 unless the file is one of ours: its mark, its tables, their columns and their indexes are exactly those
/// of the schema, but for what an older file may lack.
void compareWithSchema(Sqlite& file);
/// Raises 3343 unless the table, whose rows are the same in every file, has exactly those rows.
void checkFixedRows(const Sqlite& file, const Recordset& rows);

[[nodiscard]] bool hasTable(Sqlite& file, const Table& table);
[[nodiscard]] bool hasVisioComment(Sqlite& file);
/// Adds the second block comment, "" in every row.
void addVisioComment(Sqlite& file);
void addTable(Sqlite& file, const Table& table);
void addRows(Sqlite& file, const Table& table, std::span<const std::vector<Value>> rows);

}  // namespace qrv
