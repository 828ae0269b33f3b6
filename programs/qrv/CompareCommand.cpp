// Two configurations, field by field.
#include <string>
#include <vector>

#include "Commands.h"
#include "DifferenceReport.h"
#include "Session.h"
#include "Terminal.h"
#include "tools/HeldByController.h"

namespace qrv {

namespace {

std::string jsonTextOf(const CompareOptions& options, const std::vector<RowDifference>& differences,
                       DifferenceNotes& notes) {
    return Json::object({{"a", options.pathA},
                         {"b", options.pathB},
                         {"equal", differences.empty()},
                         {"differences", jsonOf(differences, notes)}})
        .text();
}

}  // namespace

void compare(Terminal& terminal, const CompareOptions& options) {
    Session session(terminal);
    const ConfigurationContent a = session.file().contentOf(options.pathA);
    const ConfigurationContent b = session.file().contentOf(options.pathB);
    const std::vector<RowDifference> differences =
        options.onlyHeld ? heldDifferences(a, b, session.bench().db).differing : differencesBetween(a, b);
    DifferenceNotes notes(a, b, session.bench().db);
    terminal.write(options.json ? jsonTextOf(options, differences, notes) : textOf(differences, notes));
    terminal.say(countSentence(differenceCount(differences)));
    if (!differences.empty()) terminal.endWith(ExitCode::Findings);
}

}  // namespace qrv
