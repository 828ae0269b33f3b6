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

using Identity = std::vector<std::int32_t>;

/// What tells a row of a fixed table from the others: its key, or the number of a pager string.
Identity identityOf(const Table& table, const std::vector<Value>& row) {
    Identity identity;
    for (const Index& index : table.indexes) {
        for (std::size_t part = 0; part < index.partCount(); ++part) {
            const auto column = static_cast<std::size_t>(table.columnIndex(index.parts[part]));
            identity.push_back(std::get<std::int32_t>(row[column]));
        }
    }
    if (table.name == "Pager") {
        const auto* number = std::get_if<std::int32_t>(&row.front());
        identity.push_back(number == nullptr ? -1 : *number);
    }
    return identity;
}

std::vector<Identity> identitiesOf(const Table& table, const std::vector<std::vector<Value>>& rows) {
    std::vector<Identity> identities;
    identities.reserve(rows.size());
    for (const std::vector<Value>& row : rows) identities.push_back(identityOf(table, row));
    std::sort(identities.begin(), identities.end());
    return identities;
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

void checkFixedRows(const Sqlite& file, const Recordset& rows) {
    const Table& table = rows.table();
    if (identitiesOf(table, rows.allRows()) == identitiesOf(table, defaultRows(table))) return;
    const auto count = static_cast<std::int32_t>(defaultRows(table).size());
    const std::string name(table.name);
    if (rows.rowCount() < count) refuse(file, "a row of table " + name + " is missing");
    if (rows.rowCount() > count) refuse(file, "table " + name + " has a row too many");
    refuse(file, "the rows of table " + name + " are not those of a controller");
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
    SqlTransaction transaction(file);
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
    SqlTransaction transaction(file);
    TableWriter writer(table, file);
    for (const std::vector<Value>& row : rows) writer.insert(row);
    transaction.commit();
}

}  // namespace qrv
