// The rows of a whole configuration: what its text form shows, what two files are compared by, what a new file is made
// from. Rows are sorted by key, so that equal content is equal here, whatever the history of the file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "store/Recordset.h"
#include "store/Schema.h"

namespace qrv {

/// The values of a row, in the order of the table's columns.
using TableRow = std::vector<Value>;

struct TableContent {
    const Table* table = nullptr;
    std::vector<TableRow> rows;
};

struct ConfigurationContent {
    std::vector<TableContent> tables;  ///< all 19, in schema order

    /// Asserts that there is such a table.
    [[nodiscard]] const TableContent& of(std::string_view table) const;
    [[nodiscard]] TableContent& of(std::string_view table);
};

[[nodiscard]] ConfigurationContent contentOfNewFile();
/// Reads a work file that db1 has opened, and so has brought up to date. A flag is 0 or -1.
[[nodiscard]] ConfigurationContent contentOfWorkFile(const std::string& path);
/// Makes a configuration with all tables and these rows, whole or not at all. Raises where the file can't be written or
/// a table refuses a row; 58 where something is at `path`, even if it came at the last moment, and must stay.
void makeConfigurationFile(const std::string& path, const ConfigurationContent& content,
                           Overwrite overwrite = Overwrite::Allow);

/// The values of the columns that tell the row from the others of its table.
[[nodiscard]] std::vector<Value> keyOf(const Table& table, const TableRow& row);
/// Rows with equal keys stay in their order.
void sortByKey(TableContent& content);

}  // namespace qrv
