// Two configurations, field by field.
#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Commands.h"
#include "Session.h"
#include "Terminal.h"
#include "platform/CodePage.h"
#include "tools/ContentDifference.h"
#include "tools/ContentNotes.h"
#include "tools/FieldText.h"

namespace qrv {

namespace {

using Json = nlohmann::ordered_json;

struct Comparison {
    std::string pathA;
    std::string pathB;
    bool asJson = false;
};

Json jsonOf(const Column& column, const Value& value) {
    if (std::holds_alternative<std::monostate>(value)) return nullptr;
    if (const auto* text = std::get_if<std::string>(&value)) return toUtf8(*text);
    // Numbers and flags as the text form has them: 5.01, not what that is in double precision.
    return Json::parse(fieldText(column, value));
}

Json jsonOf(const Table& table, const TableRow& row, const std::vector<std::size_t>& columns) {
    Json json = Json::object();
    for (const std::size_t column : columns) {
        json[std::string(table.columns[column].name)] = jsonOf(table.columns[column], row[column]);
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
    Json json;
    json["table"] = table.name;
    json["key"] = jsonOf(table, difference.eitherRow(), identityOf(table));
    if (!note.empty()) json["note"] = note;
    const bool inBoth = difference.inA != nullptr && difference.inB != nullptr;
    const std::vector<std::size_t> columns = inBoth ? difference.columns : allColumns(table);
    json["a"] = difference.inA == nullptr ? Json(nullptr) : jsonOf(table, *difference.inA, columns);
    json["b"] = difference.inB == nullptr ? Json(nullptr) : jsonOf(table, *difference.inB, columns);
    return json;
}

/// Names come from the configuration that has the row, from A where both have it.
class Notes {
 public:
    Notes(const ConfigurationContent& a, const ConfigurationContent& b, db1& catalogue)
        : a_(a, catalogue), b_(b, catalogue) {}
    [[nodiscard]] std::string noteOf(const RowDifference& difference) {
        return (difference.inA != nullptr ? a_ : b_).noteOf(*difference.table, difference.eitherRow());
    }

 private:
    ContentNotes a_;
    ContentNotes b_;
};

std::string textOf(const std::vector<RowDifference>& differences, Notes& notes) {
    std::string text;
    for (const RowDifference& difference : differences) {
        const std::string note = notes.noteOf(difference);
        for (const std::string& line : linesOf(difference)) text += line + (note.empty() ? "" : "  # " + note) + '\n';
    }
    return text;
}

std::string jsonTextOf(const Comparison& given, const std::vector<RowDifference>& differences, Notes& notes) {
    Json json;
    json["a"] = given.pathA;
    json["b"] = given.pathB;
    json["equal"] = differences.empty();
    json["differences"] = Json::array();
    for (const RowDifference& difference : differences) {
        json["differences"].push_back(jsonOf(difference, notes.noteOf(difference)));
    }
    return json.dump(2) + "\n";
}

void compare(Terminal& terminal, const Comparison& given) {
    Session session(terminal);
    const ConfigurationContent a = session.contentOf(given.pathA);
    const ConfigurationContent b = session.contentOf(given.pathB);
    const std::vector<RowDifference> differences = differencesBetween(a, b);
    Notes notes(a, b, session.bench().db);
    terminal.write(given.asJson ? jsonTextOf(given, differences, notes) : textOf(differences, notes));
    const std::size_t count = differenceCount(differences);
    terminal.say(count == 0 ? "No differences."
                            : std::to_string(count) + (count == 1 ? " difference." : " differences."));
    if (count > 0) terminal.endWith(ExitCode::Findings);
}

}  // namespace

void addCompareCommand(CLI::App& app, Terminal& terminal) {
    const auto given = std::make_shared<Comparison>();
    CLI::App* sub = app.add_subcommand("compare", "Compare two configurations field by field");
    sub->add_option("A", given->pathA, "A configuration")->required();
    sub->add_option("B", given->pathB, "Another one")->required();
    sub->add_flag("--json", given->asJson, "As one JSON object");
    sub->callback([given, &terminal] { compare(terminal, *given); });
}

}  // namespace qrv
