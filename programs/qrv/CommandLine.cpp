#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Commands.h"
#include "Terminal.h"
#include "TransferReport.h"
#include "UploadRun.h"
#include "link/CommSettings.h"
#include "link/Commands.h"
#include "link/DownloadSections.h"
#include "platform/HelpTexts.h"
#include "platform/RunTimeError.h"
#include "store/Versions.h"

namespace qrv {

namespace {

constexpr const char* kDescription =
    "Makes, shows, checks and compares configurations of QRV process controllers, and exchanges them with controllers "
    "over a serial line.";

constexpr std::string_view kExitCodes =
    "Data goes to the standard output, words and progress to the standard error.\n"
    "\n"
    "Exit codes:\n"
    "  0    done\n"
    "  1    done, with findings or differences\n"
    "  2    the command line can't be understood\n"
    "  3    a file can't be read, written or understood\n"
    "  4    the controller can't be reached or gave a bad answer\n"
    "  5    refused: by the user, for want of --force or --yes, or because the controller can't take it\n"
    "  6    cancelled by Ctrl+C, or because the terminal went away\n"
    "  141  in the place of 0 and 1: nobody reads the output any more\n";

std::string footer() {
    std::string text(kExitCodes);
    text.append("\nEnvironment:\n").append(help::kSettingsEnvironment).append(help::kStateEnvironment);
    text.append("\nFiles:\n").append(help::kSettingsFiles).append(help::kStateFiles);
    return text;
}

/// Says which word is no command, where there is one.
std::string failureMessage(const CLI::App* app, const CLI::Error& error) {
    const std::vector<std::string> words = app->remaining();
    const bool lacksCommand = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (!lacksCommand || words.empty()) return CLI::FailureMessage::simple(app, error);
    return "There is no command \"" + words.front() + "\". qrv --help lists them.\n";
}

/// The transfer that a command line asks for, if its result is to be JSON; "" otherwise. The command is the first word
/// that is no option; behind "--" there are no options.
std::string transferWithJson(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    const auto end = std::ranges::find(words, "--");
    const auto command = std::ranges::find_if(words, [](const std::string& word) { return !word.starts_with('-'); });
    if (command == words.end() || std::find(words.begin(), end, "--json") == end) return {};
    const bool isTransfer = *command == "download" || *command == "upload" || *command == "verify";
    return isTransfer ? *command : std::string{};
}

/// Adds FILE.
void addFile(CLI::App& command, std::string& file, const char* what) {
    command.add_option("FILE", file, what)->required();
}

void addForce(CLI::App& command, bool& force) { command.add_flag("--force", force, "Overwrite a file that exists"); }

/// Adds BLOCK: a number, or several of them.
template <typename Blocks>
void addBlock(CLI::App& command, Blocks& blocks, const char* what) {
    command.add_option("BLOCK", blocks, what)->required()->check(CLI::Range(0, int{kLastBlock}));
}

/// Adds --port, --baud, --parity and --trace.
void addLine(CLI::App& command, LineOptions& line) {
    command.add_option("--port", line.port, "Serial port, as COM7 or as a device path; else the one of the settings");
    std::vector<std::string> rates;
    rates.reserve(kBaudRates.size());
    for (const BaudRate& rate : kBaudRates) rates.emplace_back(rate.baud_rate);
    command.add_option("--baud", line.baud, "Bits a second")->check(CLI::IsMember(rates));
    command.add_option("--parity", line.parity, "O for odd, E for even, N for none")
        ->transform(CLI::IsMember({"O", "E", "N"}, CLI::ignore_case));
    command.add_option("--trace", line.trace, "Append every frame, both ways, to this file; - for standard error");
}

/// Adds FILE, --sections, --json and those of the line.
/// @param sections  the words of those that there are
void addTransfer(CLI::App& command, TransferOptions& options, const char* file,
                 const std::vector<std::string>& sections) {
    addFile(command, options.file, file);
    addLine(command, options.line);
    command.add_option("--sections", options.sections,
                       "Only these, with commas between: " + withCommas(sections) + "; else all of them");
    command.add_flag("--json", options.json, "Progress as lines of JSON, the result as one JSON object");
}

class CommandLine {
 public:
    explicit CommandLine(Terminal& terminal);
    ExitCode run(int argc, char** argv);

 private:
    /// A command, for the options that it takes.
    template <typename Options>
    struct Command {
        CLI::App& line;
        Options& options;
    };

    /// A command that does `work` with what its options were given.
    template <typename Options>
    Command<Options> add(const char* name, const char* what, void (*work)(Terminal&, const Options&)) {
        const auto options = std::make_shared<Options>();
        CLI::App* line = app_.add_subcommand(name, what);
        line->callback([this, options, work] { work(terminal_, *options); });
        return {*line, *options};
    }
    void addFileCommands();
    void addCompare();
    void addFunction();
    void addPorts();
    void addLinkCommands();
    void addWatch();
    void addTransfers();

    Terminal& terminal_;
    CLI::App app_{kDescription, "qrv"};
};

CommandLine::CommandLine(Terminal& terminal) : terminal_(terminal) {
    app_.footer(footer());
    app_.require_subcommand(1);
    app_.failure_message(failureMessage);
    app_.set_version_flag(
        "--version", [] { return foundVersions("qrv"); },
        "Print the versions of the program, the function catalogue and the database engine");
    addFileCommands();
    addCompare();
    addFunction();
    addPorts();
    addLinkCommands();
    addWatch();
    addTransfers();
}

void CommandLine::addFileCommands() {
    const auto [made, toMake] = add("new", "Make a new configuration, as the desktop's New does", makeNew);
    addFile(made, toMake.file, "The configuration to make");
    addForce(made, toMake.force);

    const auto [info, toTell] = add("info", "Tell what a configuration holds and how full it is", showInfo);
    addFile(info, toTell.file, "The configuration");
    info.add_flag("--json", toTell.json, "As one JSON object");

    app_.add_subcommand("backups", "List the copies of work that could not be saved")->callback([this] {
        listBackups(terminal_);
    });

    const auto [dumped, toDump] = add(
        "dump", "Write a configuration as text: a record a line, names beside numbers, fit for version control", dump);
    addFile(dumped, toDump.file, "The configuration");

    const auto [loaded, toLoad] =
        add("load", "Make a configuration from the text of a dump, whole or not at all", load);
    loaded.add_option("TEXT", toLoad.text, "The text; - for the standard input")->required();
    addFile(loaded, toLoad.file, "The configuration to make");
    addForce(loaded, toLoad.force);
}

void CommandLine::addCompare() {
    const auto [command, options] = add("compare", "Compare two configurations field by field", compare);
    command.add_option("A", options.pathA, "A configuration")->required();
    command.add_option("B", options.pathB, "Another one")->required();
    command.add_flag("--json", options.json, "As one JSON object");
    command.add_flag("--held", options.onlyHeld, "Only what a controller holds of it: not comments, for instance");
}

void CommandLine::addFunction() {
    const auto [command, wanted] =
        add("function", "Show what a function does, or without one the list of all", showFunction);
    command.add_option("FUNCTION", wanted, "Its name, in any case, or its number");
}

void CommandLine::addPorts() {
    const auto [command, options] =
        add("ports", "List the serial ports and the devices that they stand for", showPorts);
    command.add_flag("--json", options.json, "As JSON");
    command.add_option("--map", options.map, "Give a port number a device: COM7=/dev/pts/3");
    command.add_option("--unmap", options.unmap, "Take the device of a port number away: COM7");
}

void CommandLine::addLinkCommands() {
    const auto [polled, pollLine] = add("poll", "Ask whether a controller is there", pollController);
    addLine(polled, pollLine);

    const auto [version, versionLine] = add("version", "Read the version text of a controller's firmware", showVersion);
    addLine(version, versionLine);

    const auto [block, toShow] = add("read-block", "Read the output of a block from a controller", readBlock);
    addBlock(block, toShow.block, "Its number, 0 to 704");
    addLine(block, toShow.line);

    const auto [section, toRead] =
        add("read", "Read bytes of a controller's memory and show them in hexadecimal", readSection);
    section.add_option("SECTION", toRead.section, "Section number")->required()->check(CLI::Range(0, 255));
    section.add_option("OFFSET", toRead.offset, "Offset of the first byte")->required()->check(CLI::Range(0, 65535));
    section.add_option("COUNT", toRead.count, "Number of bytes, 1 to 255")
        ->required()
        ->check(CLI::Range(1, int{kMostData}));
    addLine(section, toRead.line);
}

void CommandLine::addWatch() {
    const auto [command, options] = add("watch", "Show the outputs of blocks as they change, row upon row", watch);
    addFile(command, options.file, "The configuration that the controller runs");
    addBlock(command, options.blocks, "Block numbers, 0 to 704");
    addLine(command, options.line);
    command.add_option("--csv", options.csv, "Write the rows to this file; else they go to the standard output");
    addForce(command, options.force);
    command.add_option("--interval", options.interval, "Milliseconds from row to row, 1000 unless given")
        ->check(CLI::Range(0, 86'400'000));
    command.add_option("--count", options.count, "End after so many rows; else Ctrl+C ends")
        ->check(CLI::Range(1, 1'000'000'000));
}

void CommandLine::addTransfers() {
    const auto [down, toWrite] = add("download", "Write a configuration into a controller", download);
    addTransfer(down, toWrite, "The configuration", availableWords(kDownloadSections));
    down.add_flag("--yes", toWrite.yes, "Go on behind the warning without asking");
    down.add_flag("--dry-run", toWrite.dryRun, "Write nothing: only list the sections that would go");

    const auto [up, toRead] = add("upload", "Read a controller's configuration into a file", upload);
    addTransfer(up, toRead, "The configuration, new or one that is there", uploadSections());
    up.add_flag("--force", toRead.force, "Upload into a file that exists; what isn't uploaded stays in it");
    up.add_flag("--yes", toRead.yes, "Overwrite what the file holds without asking");

    const auto [verified, toCompare] = add("verify", "Compare a configuration with what a controller holds", verify);
    addTransfer(verified, toCompare, "The configuration", uploadSections());
}

ExitCode CommandLine::run(int argc, char** argv) {
    try {
        app_.parse(argc, argv);
        return terminal_.end();
    } catch (const CLI::ParseError& error) {
        const std::string transfer = error.get_exit_code() == 0 ? "" : transferWithJson(argc, argv);
        if (!transfer.empty()) {
            tellMisunderstood(terminal_, transfer, error.what());
            terminal_.endWith(ExitCode::Usage);
            return terminal_.end();
        }
        const bool isAnswer = app_.exit(error) == 0;  // help or version
        return isAnswer ? terminal_.end() : ExitCode::Usage;
    } catch (const CommandFailure& failure) {
        terminal_.say(std::string("qrv: ") + failure.what());
        return failure.code();
    } catch (const RunTimeError& error) {
        terminal_.say("qrv: " + error.description());
        return exitCodeOf(error);
    }
}

}  // namespace

ExitCode runCommandLine(Terminal& terminal, int argc, char** argv) { return CommandLine(terminal).run(argc, argv); }

}  // namespace qrv
