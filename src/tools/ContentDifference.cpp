#include "tools/ContentDifference.h"

#include <algorithm>

#include "tools/FieldText.h"

namespace qrv {

namespace {

std::string shown(const Column& column, const Value& value) {
    return isNull(value) ? "nothing" : fieldText(column, value);
}

std::vector<std::size_t> differingColumns(const TableRow& a, const TableRow& b) {
    std::vector<std::size_t> columns;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] != b[i]) columns.push_back(i);
    }
    return columns;
}

/// Walks both tables in the order of their keys.
void compareTables(const TableContent& a, const TableContent& b, std::vector<RowDifference>& differences) {
    const Table* table = a.table;
    auto inA = a.rows.begin();
    auto inB = b.rows.begin();
    while (inA != a.rows.end() || inB != b.rows.end()) {
        const bool aIsFirst = inB == b.rows.end() || (inA != a.rows.end() && keyOf(*table, *inA) < keyOf(*table, *inB));
        const bool bIsFirst = inA == a.rows.end() || (inB != b.rows.end() && keyOf(*table, *inB) < keyOf(*table, *inA));
        if (aIsFirst) {
            differences.push_back({.table = table, .inA = &*inA++, .inB = nullptr, .columns = {}});
        } else if (bIsFirst) {
            differences.push_back({.table = table, .inA = nullptr, .inB = &*inB++, .columns = {}});
        } else {
            std::vector<std::size_t> columns = differingColumns(*inA, *inB);
            if (!columns.empty()) {
                differences.push_back({.table = table, .inA = &*inA, .inB = &*inB, .columns = std::move(columns)});
            }
            ++inA;
            ++inB;
        }
    }
}

/// The row's fields that hold something, its key aside.
std::string contentText(const Table& table, const TableRow& row) {
    const std::vector<std::size_t> key = identityOf(table);
    std::string text;
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (isNull(row[i]) || std::ranges::find(key, i) != key.end()) continue;
        if (!text.empty()) text += ' ';
        text += namedFieldText(table.columns[i], row[i]);
    }
    return text;
}

}  // namespace

std::vector<RowDifference> differencesBetween(const ConfigurationContent& a, const ConfigurationContent& b) {
    std::vector<RowDifference> differences;
    for (const TableContent& table : a.tables) compareTables(table, b.of(table.table->name), differences);
    return differences;
}

std::size_t differenceCount(const std::vector<RowDifference>& differences) {
    std::size_t count = 0;
    for (const RowDifference& difference : differences) count += std::max<std::size_t>(1, difference.columns.size());
    return count;
}

std::vector<std::string> linesOf(const RowDifference& difference, const SideNames& names) {
    const Table& table = *difference.table;
    std::string name(table.name);
    const std::string key = keyText(table, difference.eitherRow());
    if (!key.empty()) name += " " + key;
    if (difference.inA == nullptr) return {name + ": only in " + names.b + ": " + contentText(table, *difference.inB)};
    if (difference.inB == nullptr) return {name + ": only in " + names.a + ": " + contentText(table, *difference.inA)};
    std::vector<std::string> lines;
    for (const std::size_t i : difference.columns) {
        const Column& column = table.columns[i];
        lines.push_back(name + " " + std::string(column.name) + ": " + shown(column, (*difference.inA)[i]) + " -> " +
                        shown(column, (*difference.inB)[i]));
    }
    return lines;
}

}  // namespace qrv
