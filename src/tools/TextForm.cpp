#include "tools/TextForm.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "store/DefaultRows.h"
#include "store/NullFields.h"
#include "tools/ContentNotes.h"
#include "tools/FieldText.h"

namespace qrv {

namespace {

using Key = std::vector<Value>;

struct Line {
    Key key;
    std::string text;
};

std::string rowLine(const Table& table, const TableRow& row, ContentNotes& notes) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (isNull(row[i]) && isReadIfNull(table, table.columns[i])) continue;
        if (!line.empty()) line += ' ';
        line += namedFieldText(table.columns[i], row[i]);
    }
    const std::string note = notes.noteOf(table, row);
    return note.empty() ? line : line + "  # " + note;
}

std::vector<Line> linesOf(const TableContent& content, ContentNotes& notes) {
    const Table& table = *content.table;
    std::map<Key, TableRow> missing;  // rows of a new file, less those that are here
    for (TableRow& row : defaultRows(table)) missing.emplace(keyOf(table, row), std::move(row));
    std::vector<Line> lines;
    for (const TableRow& row : content.rows) {
        Key key = keyOf(table, row);
        const auto usual = missing.find(key);
        const bool isUsual = usual != missing.end() && usual->second == row;
        if (usual != missing.end()) missing.erase(usual);
        if (!isUsual) lines.push_back({std::move(key), rowLine(table, row, notes)});
    }
    for (const auto& [key, row] : missing) lines.push_back({key, "- " + keyText(table, row)});
    std::ranges::stable_sort(lines, {}, &Line::key);
    return lines;
}

}  // namespace

std::string textFormOf(const ConfigurationContent& content, ContentNotes& notes) {
    std::string text(kTextFormMark);
    text += '\n';
    for (const TableContent& table : content.tables) {
        const std::vector<Line> lines = linesOf(table, notes);
        if (lines.empty()) continue;
        text += "\n[" + std::string(table.table->name) + "]\n";
        for (const Line& line : lines) text += line.text + '\n';
    }
    return text;
}

}  // namespace qrv
