#include "store/TableWriter.h"

#include <array>
#include <charconv>

#include "platform/CodePage.h"

namespace qrv {

namespace {

// 5.01 stays 5.01 in the file: the shortest text that gives the float back, read as a double.
double readableDouble(float value) {
    std::array<char, 32> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), value);
    double readable = value;
    std::from_chars(text.data(), written.ptr, readable);
    return readable;
}

std::string insertSql(const Table& table) {
    std::string names;
    std::string marks;
    for (const Column& column : table.columns) {
        if (!names.empty()) {
            names += ", ";
            marks += ", ";
        }
        names += bracketed(column.name);
        marks += "?";
    }
    return "INSERT INTO " + bracketed(table.name) + " (" + names + ") VALUES (" + marks + ")";
}

std::string updateSql(const Table& table, std::uint32_t columns) {
    std::string changes;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if ((columns >> i & 1U) == 0) continue;
        if (!changes.empty()) changes += ", ";
        changes += bracketed(table.columns[i].name) + " = ?";
    }
    return "UPDATE " + bracketed(table.name) + " SET " + changes + " WHERE rowid = ?";
}

}  // namespace

void bindValue(Statement& statement, int parameter, const Value& value) {
    if (const auto* number = std::get_if<std::int32_t>(&value)) {
        statement.bind(parameter, *number);
    } else if (const auto* real = std::get_if<float>(&value)) {
        statement.bindReal(parameter, readableDouble(*real));
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        statement.bindText(parameter, toUtf8(*text));
    } else {
        statement.bindNull(parameter);
    }
}

std::int64_t TableWriter::insert(std::span<const Value> values) {
    file_.joinBatch();
    if (!insert_.isPrepared()) insert_ = file_.prepare(insertSql(table_));
    int parameter = 0;
    for (const Value& value : values) bindValue(insert_, ++parameter, value);
    insert_.run();
    return file_.lastRowId();
}

Statement& TableWriter::updateOf(std::uint32_t columns) {
    Statement& statement = updates_[columns];
    if (!statement.isPrepared()) statement = file_.prepare(updateSql(table_, columns));
    return statement;
}

void TableWriter::update(std::int64_t rowId, std::span<const Value> before, std::span<const Value> after) {
    std::uint32_t columns = 0;
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (before[i] != after[i]) columns |= 1U << i;
    }
    if (columns == 0) return;
    file_.joinBatch();
    Statement& statement = updateOf(columns);
    int parameter = 0;
    for (std::size_t i = 0; i < after.size(); ++i) {
        if ((columns >> i & 1U) != 0) bindValue(statement, ++parameter, after[i]);
    }
    statement.bind(parameter + 1, rowId);
    statement.run();
}

void TableWriter::remove(std::int64_t rowId) {
    if (!remove_.isPrepared()) {
        remove_ = file_.prepare("DELETE FROM " + bracketed(table_.name) + " WHERE rowid = ?");
    }
    file_.joinBatch();
    remove_.bind(1, rowId);
    remove_.run();
}

}  // namespace qrv
