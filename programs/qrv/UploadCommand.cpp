// A controller's configuration into a file, new or there.
#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "Commands.h"
#include "UploadRun.h"
#include "platform/Files.h"

namespace qrv {

namespace {

using Json = nlohmann::ordered_json;

/// True for a file that is there. Ends the command where it may not be uploaded into.
bool isThere(const TransferOptions& options) {
    checkOutput(options.file, Overwrite::Allow);
    if (!exists(options.file)) return false;
    if (!options.force) {
        throw CommandFailure(ExitCode::Refused,
                             options.file + " exists already; --force uploads into it and keeps what isn't uploaded.");
    }
    if (isReadOnly(options.file)) throw CommandFailure(ExitCode::File, options.file + " is read-only.");
    return true;
}

void openTarget(TransferSession& session, TransferReport& report, const TransferOptions& options, bool isThere) {
    if (isThere) {
        session.file().open(options.file);
        return;
    }
    session.file().openNew();
    // There is nothing that could be overwritten.
    report.passOver([](const Notice& notice) { return notice.buttons == Buttons::YesNo; });
}

TransferReport::Ending upload(Terminal& terminal, const TransferOptions& options, TransferReport& report) {
    const std::vector<std::string> sections = sectionsNamed(options.sections, uploadSections());
    const bool wasThere = isThere(options);
    TransferSession session(terminal, options.line, report);
    openTarget(session, report, options, wasThere);
    UploadRun run(session, report);
    const Clock& clock = session.bench().platform.clock;
    const auto start = clock.now();
    run.run(sections, wasThere ? options.file + " is as it was." : "No file was made.");
    session.file().saveAs(options.file);
    const TransferProgress& progress = run.progress();
    const int failed = run.failedReads();
    std::string sentence = options.file + (wasThere ? " has" : " made with") +
                           " what the controller holds: " + countsText(progress, clock.now() - start);
    if (failed > 0) sentence += " " + run.failedReadsText();
    const std::vector<std::int16_t> foreign = run.foreignBlocks();
    if (!foreign.empty()) sentence += " " + run.foreignText();
    return {.code = failed > 0 || !foreign.empty() ? ExitCode::Findings : ExitCode::Done,
            .sentence = sentence,
            .addFacts = [&options, line = session.link().lineName(), log = run.logFile(), bytes = progress.bytes(),
                         retries = progress.retries(), failed, foreign](Json& json) {
                json["file"] = options.file;
                json["line"] = line;
                json["bytes"] = bytes;
                json["retries"] = retries;
                json["failedReads"] = failed;
                json["foreignBlocks"] = foreign;
                json["log"] = log;
            }};
}

}  // namespace

void addUploadCommand(CLI::App& app, Terminal& terminal) {
    const auto options = std::make_shared<TransferOptions>();
    CLI::App* sub = app.add_subcommand("upload", "Read a controller's configuration into a file");
    addTransferOptions(*sub, *options, "The configuration, new or one that is there", uploadSections());
    sub->add_flag("--force", options->force, "Upload into a file that exists; what isn't uploaded stays in it");
    sub->add_flag("--yes", options->yes, "Overwrite what the file holds without asking");
    sub->callback([options, &terminal] {
        TransferReport report = options->reportOn(terminal);
        report.run("upload", [&] { return upload(terminal, *options, report); });
    });
}

}  // namespace qrv
