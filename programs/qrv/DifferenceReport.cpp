#include "DifferenceReport.h"

#include "platform/CodePage.h"
#include "tools/FieldText.h"

namespace qrv {

namespace {

Json jsonOf(const Column& column, const Value& value) {
    if (std::holds_alternative<std::monostate>(value)) return {};
    if (const auto* text = std::get_if<std::string>(&value)) return toUtf8(*text);
    // Numbers and flags as the text form has them: 5.01, not what that is in double precision.
    return Json::fromDigits(fieldText(column, value));
}

Json jsonOf(const Table& table, const TableRow& row, const std::vector<std::size_t>& columns) {
    Json json = Json::object();
    for (const std::size_t column : columns) {
        json.add(table.columns[column].name, jsonOf(table.columns[column], row[column]));
    }
    return json;
}

std::vector<std::size_t> allColumns(const Table& table) {
    std::vector<std::size_t> columns(table.columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) columns[i] = i;
    return columns;
}

Json jsonOf(const RowDifference& difference, const std::string& note) {
    const Table& table = *difference.table;
    Json json =
        Json::object({{"table", table.name}, {"key", jsonOf(table, difference.eitherRow(), identityOf(table))}});
    if (!note.empty()) json.add("note", note);
    const bool inBoth = difference.inA != nullptr && difference.inB != nullptr;
    const std::vector<std::size_t> columns = inBoth ? difference.columns : allColumns(table);
    json.add("a", difference.inA == nullptr ? Json() : jsonOf(table, *difference.inA, columns));
    json.add("b", difference.inB == nullptr ? Json() : jsonOf(table, *difference.inB, columns));
    return json;
}

}  // namespace

std::string textOf(const std::vector<RowDifference>& differences, DifferenceNotes& notes, const SideNames& names) {
    std::string text;
    for (const RowDifference& difference : differences) {
        const std::string note = notes.noteOf(difference);
        for (const std::string& line : linesOf(difference, names)) {
            text += line + (note.empty() ? "" : "  # " + note) + '\n';
        }
    }
    return text;
}

Json jsonOf(const std::vector<RowDifference>& differences, DifferenceNotes& notes) {
    return Json::array(differences, [&notes](const RowDifference& difference) {
        return jsonOf(difference, notes.noteOf(difference));
    });
}

std::string countSentence(std::size_t count) {
    if (count == 0) return "No differences.";
    return std::to_string(count) + (count == 1 ? " difference." : " differences.");
}

}  // namespace qrv
