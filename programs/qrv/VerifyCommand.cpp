// Is a controller as a file says? Reads it back and compares all that a controller holds; nothing is written to it.
#include <string>
#include <vector>

#include "Commands.h"
#include "DifferenceReport.h"
#include "UploadRun.h"
#include "link/frmComm.h"
#include "tools/HeldByController.h"

namespace qrv {

namespace {

/// All that differs: in the rows of tables, and in what no table has.
struct VerifyResult {
    HeldDifferences held;
    std::vector<BlockTableFault> blockTable;
    std::vector<RepeatedString> repeatedStrings;

    [[nodiscard]] std::size_t count() const {
        return differenceCount(held.differing) + blockTable.size() + repeatedStrings.size();
    }
};

std::string sentenceOf(const VerifyResult& result) {
    const std::size_t notHeld = result.held.notHeld;
    std::string text = countSentence(result.count());
    if (notHeld == 0) return text;
    return text + " Not held by a controller: " + std::to_string(notHeld) + (notHeld == 1 ? " field." : " fields.");
}

std::string textOf(const VerifyResult& result, DifferenceNotes& notes) {
    std::string text = textOf(result.held.differing, notes, {.a = "the file", .b = "the controller"});
    for (const BlockTableFault& fault : result.blockTable) {
        text += "Block table, block " + std::to_string(fault.block) + ": " + std::string(fault.field) + " " +
                std::to_string(fault.wanted) + " -> " + std::to_string(fault.found) + "\n";
    }
    for (const RepeatedString& repeated : result.repeatedStrings) {
        text += "ParmString BlockNumber=" + std::to_string(repeated.block) +
                " Offset=" + std::to_string(repeated.offset) + ": a second text in the controller\n";
    }
    return text;
}

Json jsonOf(const std::vector<BlockTableFault>& faults) {
    return Json::array(faults, [](const BlockTableFault& fault) {
        return Json::object({{"block", fault.block}, {"field", fault.field}, {"a", fault.wanted}, {"b", fault.found}});
    });
}

/// Reads the controller's program into a configuration that nobody keeps. Ends the command where not all of it came.
void readBack(TransferSession& session, UploadRun& run, const std::vector<std::string>& sections) {
    session.file().openNew();
    run.run(sections, "Nothing was compared.");
    if (run.failedReads() > 0) {
        throw CommandFailure(ExitCode::Link, "Nothing was compared. " + run.failedReadsText());
    }
    if (!run.foreignBlocks().empty()) {
        throw CommandFailure(ExitCode::Link, "Nothing was compared. " + run.foreignText());
    }
}

TransferReport::Ending verify(Terminal& terminal, const TransferOptions& options, TransferReport& report) {
    const std::vector<std::string> sections = sectionsNamed(options.sections, uploadSections());
    TransferSession session(terminal, options.line, report);
    session.leaveHardwareAsRead();
    const ConfigurationContent file = session.file().contentOf(options.file);
    // The configuration that is overwritten is nobody's, and the causes of failures are told in the end.
    report.passOver([](const Notice&) { return true; });
    UploadRun run(session, report, {});
    readBack(session, run, sections);
    const ConfigurationContent found = session.file().content();
    session.file().close();
    db1& catalogue = session.bench().db;
    const VerifyResult result{.held = heldDifferences(file, found, catalogue, sections),
                              .blockTable = faultsOf(run.findings().blockTable, catalogue),
                              .repeatedStrings = run.findings().repeatedStrings};
    DifferenceNotes notes(file, found, catalogue);
    if (!options.json) terminal.write(textOf(result, notes));
    return {.code = result.count() == 0 ? ExitCode::Done : ExitCode::Findings,
            .sentence = sentenceOf(result),
            .facts = Json::object({{"a", options.file},
                                   {"b", session.link().lineName()},
                                   {"equal", result.count() == 0},
                                   {"notHeld", result.held.notHeld},
                                   {"differences", jsonOf(result.held.differing, notes)},
                                   {"blockTable", jsonOf(result.blockTable)},
                                   {"repeatedStrings", jsonOf(result.repeatedStrings)}})};
}

}  // namespace

void verify(Terminal& terminal, const TransferOptions& options) {
    TransferReport report = reportOn(terminal, options);
    report.run("verify", [&] { return verify(terminal, options, report); });
}

}  // namespace qrv
