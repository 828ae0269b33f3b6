// A controller's configuration into a file, new or there.
#include <optional>
#include <string>

#include "Commands.h"
#include "UploadRun.h"
#include "link/TransferWords.h"
#include "platform/Files.h"
#include "platform/Folders.h"

namespace qrv {

namespace {

/// The file that is there, if one is. Ends the command where it may not be uploaded into.
std::optional<FileIdentity> targetOf(const TransferOptions& options) {
    checkOutput(options.file, Overwrite::Allow);
    const std::optional<FileIdentity> target = identityOf(options.file);
    if (!target) return target;
    if (!options.force) {
        throw CommandFailure(ExitCode::Refused,
                             options.file + " exists already; --force uploads into it and keeps what isn't uploaded.");
    }
    if (isReadOnly(options.file)) throw CommandFailure(ExitCode::File, options.file + " is read-only.");
    return target;
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
    const std::optional<FileIdentity> before = targetOf(options);
    const bool wasThere = before.has_value();
    TransferSession session(terminal, options.line, report);
    openTarget(session, report, options, wasThere);
    UploadRun run(session, report, logFolders(systemEnvironment));
    const Clock& clock = session.bench().platform.clock;
    const auto start = clock.now();
    run.run(sections, wasThere ? options.file + " is as it was." : "No file was made.");
    session.file().saveAs(options.file, before);
    const TransferProgress& progress = run.progress();
    const int failed = run.failedReads();
    std::string sentence = options.file + (wasThere ? " has" : " made with") +
                           " what the controller holds: " + countsText(progress, clock.now() - start);
    if (failed > 0) sentence += " " + run.failedReadsText();
    const std::vector<std::int16_t> foreign = run.foreignBlocks();
    if (!foreign.empty()) sentence += " " + run.foreignText();
    const std::vector<RepeatedString> repeated = run.findings().repeatedStrings;
    if (!repeated.empty()) sentence += " " + run.repeatedText();
    const bool isWhole = failed == 0 && foreign.empty() && repeated.empty();
    return {.code = isWhole ? ExitCode::Done : ExitCode::Findings,
            .sentence = sentence,
            .facts = Json::object({{"file", options.file},
                                   {"line", session.link().lineName()},
                                   {"bytes", progress.bytes()},
                                   {"retries", progress.retries()},
                                   {"failedReads", failed},
                                   {"foreignBlocks", Json::array(foreign, [](std::int16_t block) { return block; })},
                                   {"repeatedStrings", jsonOf(repeated)},
                                   {"log", run.logFile()}})};
}

}  // namespace

void upload(Terminal& terminal, const TransferOptions& options) {
    TransferReport report = reportOn(terminal, options);
    report.run("upload", [&] { return upload(terminal, options, report); });
}

}  // namespace qrv
