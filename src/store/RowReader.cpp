#include "store/RowReader.h"

#include <cmath>
#include <limits>

#include "platform/CodePage.h"
#include "platform/RunTimeError.h"

namespace qrv {

namespace {

std::string selectSql(const Table& table) {
    std::string sql = "SELECT rowid";
    for (const Column& column : table.columns) sql += ", " + bracketed(column.name);
    return sql + " FROM " + bracketed(table.name) + " NOT INDEXED ORDER BY rowid";
}

bool isPlainAscii(std::string_view text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) return false;
    }
    return true;
}

}  // namespace

void refuseRow(const Sqlite& file, const Table& table, std::int64_t rowId, const std::string& reason) {
    throw RunTimeError(ErrorNumber::UnrecognizedFormat, file.path() + " is damaged: row " + std::to_string(rowId) +
                                                            " of table " + std::string(table.name) + " " + reason +
                                                            ".");
}

RowReader::RowReader(const Table& table, Sqlite& file) : table_(table), file_(file), rows_(file, selectSql(table)) {}

bool RowReader::next() {
    if (!rows_.step()) return false;
    rowId_ = rows_.integer(0);
    if (++count_ > kMostRowsOfTable) refuseRow(file_, table_, rowId_, "is one too many for a file of this kind");
    return true;
}

std::vector<Value> RowReader::takeValues() {
    std::vector<Value> values;
    values.reserve(table_.columns.size());
    for (std::size_t i = 0; i < table_.columns.size(); ++i) values.push_back(valueOf(i));
    return values;
}

void RowReader::refuseColumn(std::size_t column, const std::string& reason) const {
    refuseRow(file_, table_, rowId_, "has a " + std::string(table_.columns[column].name) + " that " + reason);
}

Value RowReader::valueOf(std::size_t column) const {
    if (rows_.kind(static_cast<int>(column) + 1) == Statement::Kind::Null) {
        if (!mayBeNull(table_, table_.columns[column])) refuseColumn(column, "must not be null");
        return std::monostate{};
    }
    switch (table_.columns[column].type) {
        case ColumnType::Text:
        case ColumnType::Memo: return textOf(column);
        default: return numberOf(column);
    }
}

Value RowReader::numberOf(std::size_t column) const {
    const int place = static_cast<int>(column) + 1;
    const ColumnType type = table_.columns[column].type;
    if (type == ColumnType::Single) {
        if (rows_.kind(place) != Statement::Kind::Real) refuseColumn(column, "is no number");
        const double real = rows_.real(place);
        if (!std::isfinite(real) || std::abs(real) > static_cast<double>(std::numeric_limits<float>::max())) {
            refuseColumn(column, "is out of range");
        }
        return static_cast<float>(real);
    }
    if (rows_.kind(place) != Statement::Kind::Integer) refuseColumn(column, "is no whole number");
    const std::int64_t number = rows_.integer(place);
    const auto [least, greatest] = rangeOf(type);
    if (number < least || number > greatest) refuseColumn(column, "is out of range");
    return static_cast<std::int32_t>(number);
}

Value RowReader::textOf(std::size_t column) const {
    const int place = static_cast<int>(column) + 1;
    const Column& definition = table_.columns[column];
    if (rows_.kind(place) != Statement::Kind::Text) refuseColumn(column, "is no text");
    const std::string_view utf8 = rows_.text(place);
    const bool isAscii = isPlainAscii(utf8);
    std::string text = isAscii ? std::string(utf8) : fromUtf8(utf8);
    if (!isAscii && toUtf8(text) != utf8) {
        refuseColumn(column, "has a character that a controller can't show");
    }
    if (countsAsEmpty(text) && !definition.emptyAllowed) refuseColumn(column, "must not be empty");
    if (definition.size > 0 && text.size() > static_cast<std::size_t>(definition.size)) {
        refuseColumn(column, "is too long");
    }
    return text;
}

}  // namespace qrv
