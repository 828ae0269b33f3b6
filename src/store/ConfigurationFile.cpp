#include "store/ConfigurationFile.h"

#include <algorithm>
#include <array>
#include <map>
#include <vector>

#include "platform/RunTimeError.h"
#include "store/DefaultRows.h"
#include "store/TableWriter.h"

namespace qrv {

namespace {

constexpr std::string_view kSecondComment = "VisioComment";
constexpr std::array<std::string_view, 3> kAddedLater{"Pager", "Poll List", "mod comm"};

[[noreturn]] void refuse(const Sqlite& file, const std::string& reason) {
    throw RunTimeError(ErrorNumber::UnrecognizedFormat, file.path() + " is no QRV configuration: " + reason + ".");
}

const Table& blockList() { return tableNamed(configurationTables(), "Block List"); }

/// The block list of an older file: without its second comment, which is the last column.
Table olderBlockList() {
    Table table = blockList();
    table.columns = table.columns.first(table.columns.size() - 1);
    return table;
}

struct SchemaEntry {
    std::string type;
    std::string sql;
};

std::map<std::string, SchemaEntry> schemaOf(Sqlite& file) {
    std::map<std::string, SchemaEntry> entries;
    Statement rows = file.prepare("SELECT type, name, sql FROM sqlite_schema");
    while (rows.step()) {
        const std::string name(rows.text(1));
        // The engine's own statistics say nothing about the content.
        if (name.starts_with("sqlite_stat")) continue;
        if (!entries.emplace(name, SchemaEntry{std::string(rows.text(0)), std::string(rows.text(2))}).second) {
            refuse(file, "it has two things named " + name);
        }
    }
    return entries;
}

bool isAsExpected(const Table& table, const std::string& sql) {
    if (sql == createTableSql(table)) return true;
    return &table == &blockList() && sql == createTableSql(olderBlockList());
}

void checkMark(Sqlite& file) {
    // 0: made by the engine's own tools from a text dump. Whether it is ours is for its tables to tell.
    const auto mark = file.integerOf("PRAGMA application_id").value_or(0);
    if (mark != 0 && mark != kConfigurationApplicationId) refuse(file, "another program's mark stands in it");
    if (file.integerOf("PRAGMA user_version").value_or(0) > kConfigurationUserVersion) {
        refuse(file, "it was made by a newer version of this program");
    }
}

void checkTable(Sqlite& file, const Table& table, std::map<std::string, SchemaEntry>& entries) {
    const std::string name(table.name);
    const auto found = entries.find(name);
    if (found == entries.end()) {
        if (mayBeMissing(table)) return;
        refuse(file, "table " + name + " is missing");
    }
    if (found->second.type != "table") refuse(file, name + " is no table");
    if (!isAsExpected(table, found->second.sql)) refuse(file, "the columns of table " + name + " are not those told");
    entries.erase(found);
    for (const Index& index : table.indexes) {
        const auto indexFound = entries.find(name + "." + std::string(index.name));
        if (indexFound == entries.end() || indexFound->second.sql != createIndexSql(table, index)) {
            refuse(file, "the index of table " + name + " is missing or differs");
        }
        entries.erase(indexFound);
    }
}

std::string orderedByKey(const Table& table, const std::vector<std::size_t>& columns) {
    std::string names;
    for (const std::size_t column : columns) {
        if (!names.empty()) names += ", ";
        names += bracketed(table.columns[column].name);
    }
    if (names.empty()) return "SELECT 1 FROM " + bracketed(table.name);
    // By rowid and sorted: the index may lie.
    return "SELECT " + names + " FROM " + bracketed(table.name) + " NOT INDEXED ORDER BY " + names;
}

void checkRows(Sqlite& file, const Table& table) {
    const std::vector<std::size_t> columns = identityOf(table);
    Statement rows = file.prepare(orderedByKey(table, columns));
    for (const std::vector<Value>& expected : defaultRows(table)) {
        if (!rows.step()) refuse(file, "a row of table " + std::string(table.name) + " is missing");
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (rows.integer(static_cast<int>(i)) != std::get<std::int32_t>(expected[columns[i]])) {
                refuse(file, "the rows of table " + std::string(table.name) + " are not those of a controller");
            }
        }
    }
    if (rows.step()) refuse(file, "table " + std::string(table.name) + " has a row too many");
}

}  // namespace

bool mayBeMissing(const Table& table) {
    return std::find(kAddedLater.begin(), kAddedLater.end(), table.name) != kAddedLater.end();
}

void compareWithSchema(Sqlite& file) {
    std::map<std::string, SchemaEntry> entries = schemaOf(file);
    if (entries.empty()) refuse(file, "it is empty");
    checkMark(file);
    for (const Table& table : configurationTables()) checkTable(file, table, entries);
    if (!entries.empty()) refuse(file, "it holds " + entries.begin()->first + ", which no configuration has");
}

void checkFixedRows(Sqlite& file) {
    for (const Table& table : configurationTables()) {
        if (table.rowSet == RowSet::Fixed && hasTable(file, table)) checkRows(file, table);
    }
}

bool hasTable(Sqlite& file, const Table& table) {
    Statement found = file.prepare("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?");
    found.bindText(1, table.name);
    return found.step();
}

bool hasVisioComment(Sqlite& file) {
    Statement columns = file.prepare("SELECT 1 FROM pragma_table_info(?) WHERE name = ? COLLATE NOCASE");
    columns.bindText(1, blockList().name);
    columns.bindText(2, kSecondComment);
    return columns.step();
}

void addVisioComment(Sqlite& file) {
    Transaction transaction(file);
    const Column& column = blockList().columns.back();
    const std::string table = bracketed(blockList().name);
    file.execute("ALTER TABLE " + table + " ADD COLUMN " + columnSql(column, false));
    file.execute("UPDATE " + table + " SET " + bracketed(column.name) + " = ''");
    transaction.commit();
}

void addTable(Sqlite& file, const Table& table) {
    file.execute(createTableSql(table));
    for (const Index& index : table.indexes) file.execute(createIndexSql(table, index));
}

void addRows(Sqlite& file, const Table& table, std::span<const std::vector<Value>> rows) {
    Transaction transaction(file);
    TableWriter writer(table, file);
    for (const std::vector<Value>& row : rows) writer.insert(row);
    transaction.commit();
}

}  // namespace qrv
