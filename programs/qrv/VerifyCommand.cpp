// Is a controller as a file says? Reads it back and compares all that a controller holds; nothing is written to it.
#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "Commands.h"
#include "DifferenceReport.h"
#include "UploadRun.h"
#include "tools/HeldByController.h"

namespace qrv {

namespace {

using Json = nlohmann::ordered_json;

std::string sentenceOf(const HeldDifferences& result) {
    std::string text = countSentence(differenceCount(result.differing));
    if (result.notHeld == 0) return text;
    return text + " Not held by a controller: " + std::to_string(result.notHeld) +
           (result.notHeld == 1 ? " field." : " fields.");
}

TransferReport::Ending verify(Terminal& terminal, const TransferOptions& options, TransferReport& report) {
    const std::vector<std::string> sections = sectionsNamed(options.sections, uploadSections());
    TransferSession session(terminal, options.line, report);
    session.leaveHardwareAsRead();
    const ConfigurationContent file = session.file().contentOf(options.file);
    // The configuration that is overwritten is nobody's, and the causes of failures are told in the end.
    report.passOver([](const Notice&) { return true; });
    session.file().openNew();
    UploadRun run(session, report);
    run.run(sections, "Nothing was compared.");
    if (run.failedReads() > 0) {
        throw CommandFailure(ExitCode::Link, "Nothing was compared. " + run.failedReadsText());
    }
    if (!run.foreignBlocks().empty()) {
        throw CommandFailure(ExitCode::Link, "Nothing was compared. " + run.foreignText());
    }
    const ConfigurationContent found = session.file().content();
    session.file().close();
    db1& catalogue = session.bench().db;
    const HeldDifferences result = heldDifferences(file, found, catalogue, sections);
    DifferenceNotes notes(file, found, catalogue);
    if (!options.json) terminal.write(textOf(result.differing, notes, {.a = "the file", .b = "the controller"}));
    return {.code = result.differing.empty() ? ExitCode::Done : ExitCode::Findings,
            .sentence = sentenceOf(result),
            .addFacts = [&options, line = session.link().lineName(), list = jsonOf(result.differing, notes),
                         notHeld = result.notHeld](Json& json) {
                json["a"] = options.file;
                json["b"] = line;
                json["equal"] = list.empty();
                json["notHeld"] = notHeld;
                json["differences"] = list;
            }};
}

}  // namespace

void addVerifyCommand(CLI::App& app, Terminal& terminal) {
    const auto options = std::make_shared<TransferOptions>();
    CLI::App* sub = app.add_subcommand("verify", "Compare a configuration with what a controller holds");
    addTransferOptions(*sub, *options, "The configuration", uploadSections());
    sub->callback([options, &terminal] {
        TransferReport report = options->reportOn(terminal);
        report.run("verify", [&] { return verify(terminal, *options, report); });
    });
}

}  // namespace qrv
