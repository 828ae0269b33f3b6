// A configuration as a file of the engine: made, compared with the schema before a row is read, and upgraded. Used by
// db1 alone.
#pragma once

#include <string>

#include "store/Schema.h"
#include "store/Sqlite.h"

namespace qrv {

/// Which tables an older file may lack; they are added when it is opened.
[[nodiscard]] bool mayBeMissing(const Table& table);

/// Makes a configuration with all tables and default rows, whole or not at all. Raises where the file can't be written.
void makeConfigurationFile(const std::string& path);

/// Raises 3343 unless the file is one of ours: its mark, its tables, their columns and their indexes are exactly those
/// of the schema, but for what an older file may lack.
void compareWithSchema(Sqlite& file);
/// Raises 3343 unless every table whose rows are the same in every file has exactly those rows.
void checkFixedRows(Sqlite& file);

[[nodiscard]] bool hasTable(Sqlite& file, const Table& table);
[[nodiscard]] bool hasVisioComment(Sqlite& file);
/// Adds the second block comment, "" in every row.
void addVisioComment(Sqlite& file);
void addTable(Sqlite& file, const Table& table);
void addDefaultRows(Sqlite& file, const Table& table);

}  // namespace qrv
