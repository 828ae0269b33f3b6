#include "store/ConfigurationContent.h"

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <utility>

#include "platform/Files.h"
#include "platform/RunTimeError.h"
#include "store/ConfigurationFile.h"
#include "store/DefaultRows.h"
#include "store/RowReader.h"
#include "store/Sqlite.h"

namespace qrv {

namespace {

/// Any number but 0 reads as true.
void normaliseFlags(const Table& table, TableRow& row) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (table.columns[i].type != ColumnType::Boolean) continue;
        if (auto* flag = std::get_if<std::int32_t>(&row[i])) *flag = *flag == 0 ? 0 : -1;
    }
}

TableContent readTable(const Table& table, Sqlite& file) {
    TableContent content{.table = &table, .rows = {}};
    RowReader reader(table, file);
    while (reader.next()) {
        content.rows.push_back(reader.takeValues());
        normaliseFlags(table, content.rows.back());
    }
    sortByKey(content);
    return content;
}

}  // namespace

const TableContent& ConfigurationContent::of(std::string_view table) const {
    const auto found =
        std::ranges::find_if(tables, [table](const TableContent& content) { return content.table->name == table; });
    assert(found != tables.end());
    return *found;
}

TableContent& ConfigurationContent::of(std::string_view table) {
    return const_cast<TableContent&>(std::as_const(*this).of(table));
}

ConfigurationContent contentOfNewFile() {
    ConfigurationContent content;
    for (const Table& table : configurationTables()) {
        content.tables.push_back({.table = &table, .rows = defaultRows(table)});
    }
    return content;
}

ConfigurationContent contentOfWorkFile(const std::string& path) {
    Sqlite file(path, Sqlite::Mode::ReadOnly);
    ConfigurationContent content;
    for (const Table& table : configurationTables()) content.tables.push_back(readTable(table, file));
    return content;
}

void makeConfigurationFile(const std::string& path, const ConfigurationContent& content, Overwrite overwrite) {
    Sqlite file(path, Sqlite::Mode::Memory);
    file.execute("PRAGMA application_id = " + std::to_string(kConfigurationApplicationId) +
                 "; PRAGMA user_version = " + std::to_string(kConfigurationUserVersion));
    SqlTransaction transaction(file);
    for (const Table& table : configurationTables()) addTable(file, table);
    for (const TableContent& table : content.tables) addRows(file, *table.table, table.rows);
    transaction.commit();
    const bool replaces = overwrite == Overwrite::Allow;
    const FileResult fault = replaces ? writeWholeAtOnce(path, file.bytes(), NewFile::Usual)
                                      : writeNewFile(path, file.bytes(), NewFile::Usual);
    if (fault && fault->code == EEXIST) throw RunTimeError(ErrorNumber::FileAlreadyExists, path + " exists already.");
    if (fault) {
        throw RunTimeError(ErrorNumber::PathAccessError, path + " could not be made: " + fault->text + ".");
    }
}

std::vector<Value> keyOf(const Table& table, const TableRow& row) {
    std::vector<Value> key;
    for (const std::size_t column : identityOf(table)) key.push_back(row[column]);
    return key;
}

void sortByKey(TableContent& content) {
    const std::vector<std::size_t> columns = identityOf(*content.table);
    std::ranges::stable_sort(content.rows, [&columns](const TableRow& a, const TableRow& b) {
        for (const std::size_t column : columns) {
            if (a[column] != b[column]) return a[column] < b[column];
        }
        return false;
    });
}

}  // namespace qrv
