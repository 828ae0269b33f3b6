// Two configurations, field by field.
#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "DifferenceReport.h"
#include "Session.h"
#include "Terminal.h"
#include "tools/HeldByController.h"

namespace qrv {

namespace {

struct Comparison {
    std::string pathA;
    std::string pathB;
    bool asJson = false;
    bool onlyHeld = false;
};

std::string jsonTextOf(const Comparison& given, const std::vector<RowDifference>& differences, DifferenceNotes& notes) {
    return Json::object({{"a", given.pathA},
                         {"b", given.pathB},
                         {"equal", differences.empty()},
                         {"differences", jsonOf(differences, notes)}})
        .text();
}

void compare(Terminal& terminal, const Comparison& given) {
    Session session(terminal);
    const ConfigurationContent a = session.file().contentOf(given.pathA);
    const ConfigurationContent b = session.file().contentOf(given.pathB);
    const std::vector<RowDifference> differences =
        given.onlyHeld ? heldDifferences(a, b, session.bench().db).differing : differencesBetween(a, b);
    DifferenceNotes notes(a, b, session.bench().db);
    terminal.write(given.asJson ? jsonTextOf(given, differences, notes) : textOf(differences, notes));
    terminal.say(countSentence(differenceCount(differences)));
    if (!differences.empty()) terminal.endWith(ExitCode::Findings);
}

}  // namespace

void addCompareCommand(CLI::App& app, Terminal& terminal) {
    const auto given = std::make_shared<Comparison>();
    CLI::App* sub = app.add_subcommand("compare", "Compare two configurations field by field");
    sub->add_option("A", given->pathA, "A configuration")->required();
    sub->add_option("B", given->pathB, "Another one")->required();
    sub->add_flag("--json", given->asJson, "As one JSON object");
    sub->add_flag("--held", given->onlyHeld, "Only what a controller holds of it: not comments, for instance");
    sub->callback([given, &terminal] { compare(terminal, *given); });
}

}  // namespace qrv
