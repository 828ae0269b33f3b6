// Configuration files: made, described, turned into text and made from text.
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

#include "Commands.h"
#include "Session.h"
#include "Terminal.h"
#include "json/Json.h"
#include "platform/CodePage.h"
#include "platform/Files.h"
#include "platform/RunTimeError.h"
#include "platform/posix/HeldSignals.h"
#include "store/Backups.h"
#include "tools/ConfigurationSummary.h"
#include "tools/ContentNotes.h"
#include "tools/TextForm.h"

namespace qrv {

namespace {

constexpr std::size_t kMostTextBytes = std::size_t{64} * 1024 * 1024;
constexpr const char* kStandardInput = "-";

/// Makes the file, and says so. No signal ends the program half way, for that would leave half a file beside it.
void make(Terminal& terminal, const std::string& path, const ConfigurationContent& content, Overwrite overwrite) {
    try {
        const HeldSignals held;
        makeConfigurationFile(path, content, overwrite);
    } catch (const RunTimeError& error) {
        // Somebody was quicker.
        if (error.number() == ErrorNumber::FileAlreadyExists) refuseToOverwrite(path);
        throw;
    }
    terminal.say(path + " made.");
}

// --- info ---

/// A line of the overview: what is counted, under which name in JSON.
struct CountRow {
    const char* label;
    const char* key;
    Usage ConfigurationSummary::*usage;
};
constexpr std::array kCounts{
    CountRow{"Blocks used", "blocks", &ConfigurationSummary::blocks},
    CountRow{"Constants", "constants", &ConfigurationSummary::constants},
    CountRow{"Retentive bytes", "retentiveBytes", &ConfigurationSummary::retentiveBytes},
    CountRow{"Strings", "strings", &ConfigurationSummary::strings},
    CountRow{"Alarms and events", "alarms", &ConfigurationSummary::alarms},
    CountRow{"Menus", "menus", &ConfigurationSummary::menus},
    CountRow{"Screens", "screens", &ConfigurationSummary::screens},
    CountRow{"Loop list entries", "loopEntries", &ConfigurationSummary::loopEntries},
    CountRow{"Charts", "charts", &ConfigurationSummary::charts},
    CountRow{"Global units changed", "engineeringUnits", &ConfigurationSummary::engineeringUnits},
    CountRow{"Modbus registers", "registers", &ConfigurationSummary::registers},
    CountRow{"Modbus coils", "coils", &ConfigurationSummary::coils},
};

std::string shownLine(const std::string& cp1252) { return toUtf8(inOneLine(cp1252)); }

std::string labelled(const std::string& label, const std::string& value) {
    constexpr std::size_t kWidth = 24;
    return value.empty() ? label + '\n' : label + std::string(kWidth - label.size(), ' ') + value + '\n';
}

struct InfoSubject {
    std::string path;
    bool isReadOnly = false;
    std::string catalogueVersion;
    ConfigurationSummary summary;
};

std::string infoText(const InfoSubject& subject) {
    const ConfigurationSummary& summary = subject.summary;
    std::string text = labelled("File", subject.path);
    text += labelled("Title", shownLine(summary.title));
    text += labelled("Configuration", shownLine(summary.configLine));
    text += labelled("Read-only", subject.isReadOnly ? "yes" : "no");
    text += labelled("File layout", summary.layoutRevision);
    text += labelled("File version", summary.version);
    text += labelled("Function catalogue", shownLine(subject.catalogueVersion));
    for (std::size_t i = 0; i < summary.boards.size(); ++i) {
        text += labelled("Board " + std::to_string(i), shownLine(summary.boards[i]));
    }
    for (const auto& [label, key, usage] : kCounts) {
        text += labelled(label, std::to_string((summary.*usage).used) + " of " + std::to_string((summary.*usage).most));
    }
    text += labelled("Units of blocks", std::to_string(summary.blockEngineeringUnits));
    if (summary.unknownFunctions > 0) {
        text += labelled("Unknown functions", std::to_string(summary.unknownFunctions));
    }
    return text;
}

std::string infoJson(const InfoSubject& subject) {
    const ConfigurationSummary& summary = subject.summary;
    Json json = Json::object({{"file", subject.path},
                              {"title", toUtf8(summary.title)},
                              {"configuration", toUtf8(summary.configLine)},
                              {"readOnly", subject.isReadOnly},
                              {"layoutRevision", summary.layoutRevision},
                              {"version", summary.version},
                              {"catalogue", toUtf8(subject.catalogueVersion)},
                              {"boards", Json::array(summary.boards, toUtf8)}});
    for (const auto& [label, key, usage] : kCounts) {
        json.add(key, Json::object({{"used", (summary.*usage).used}, {"most", (summary.*usage).most}}));
    }
    json.add("blockEngineeringUnits", summary.blockEngineeringUnits);
    json.add("unknownFunctions", summary.unknownFunctions);
    return json.text();
}

// --- text ---

std::string readStandardInput() {
    std::string text;
    std::array<char, 65536> buffer{};
    while (true) {
        const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throw CommandFailure(ExitCode::File, "The standard input can't be read.");
        if (count == 0) return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
        if (text.size() > kMostTextBytes) throw CommandFailure(ExitCode::File, "The standard input is too long.");
    }
}

std::string readText(const std::string& path) {
    if (path == kStandardInput) return readStandardInput();
    FileContent content = readWhole(path, kMostTextBytes);
    if (content.fault) throw CommandFailure(ExitCode::File, content.fault->text + ".");
    return std::move(content.bytes);
}

}  // namespace

void makeNew(Terminal& terminal, const FileOptions& options) {
    checkOutput(options.file, options.overwrite());
    make(terminal, options.file, contentOfNewFile(), options.overwrite());
}

void showInfo(Terminal& terminal, const FileOptions& options) {
    Session session(terminal);
    InfoSubject subject{.path = options.file, .isReadOnly = false, .catalogueVersion = {}, .summary = {}};
    const ConfigurationContent content = session.file().contentOf(options.file);
    subject.isReadOnly = session.bench().IsReadOnlyFile;
    subject.catalogueVersion = session.bench().db.Version();
    subject.summary = summaryOf(content, session.bench().db);
    terminal.write(options.json ? infoJson(subject) : infoText(subject));
}

void listBackups(Terminal& terminal) {
    const std::vector<Backup> backups = backupsIn(findProgramPlaces().backups);
    for (const Backup& backup : backups) {
        const std::string origin = backup.original.empty() ? "an unknown file" : backup.original;
        terminal.write(backup.time + "  " + backup.path + "  of " + origin + "\n");
    }
    if (backups.empty()) terminal.say("No copies of unsaved work are kept.");
}

void dump(Terminal& terminal, const FileOptions& options) {
    Session session(terminal);
    const ConfigurationContent content = session.file().contentOf(options.file);
    ContentNotes notes(content, session.bench().db);
    terminal.write(textFormOf(content, notes));
}

void load(Terminal& terminal, const FileOptions& options) {
    checkOutput(options.file, options.overwrite());
    const TextFormResult result =
        readTextForm(readText(options.text), options.text == kStandardInput ? "standard input" : options.text);
    if (!result.content) throw CommandFailure(ExitCode::File, result.refusal);
    make(terminal, options.file, *result.content, options.overwrite());
}

}  // namespace qrv
