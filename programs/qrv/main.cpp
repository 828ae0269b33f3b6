// `qrv`: the work on QRV configurations and controllers from a terminal.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <string>
#include <string_view>
#include <vector>

#include "Commands.h"
#include "Terminal.h"
#include "TransferReport.h"
#include "platform/Folders.h"
#include "platform/HelpTexts.h"
#include "platform/RunTimeError.h"
#include "store/Versions.h"

namespace {

using qrv::ExitCode;

constexpr const char* kDescription =
    "Makes, shows, checks and compares configurations of QRV process controllers, and exchanges them with controllers "
    "over a serial line.";

constexpr std::string_view kExitCodes =
    "Data goes to the standard output, words and progress to the standard error.\n"
    "\n"
    "Exit codes:\n"
    "  0  done\n"
    "  1  done, with findings or differences\n"
    "  2  the command line can't be understood\n"
    "  3  a file can't be read, written or understood\n"
    "  4  the controller can't be reached or gave a bad answer\n"
    "  5  refused: by the user, for want of --force or --yes, or because the controller can't take it\n"
    "  6  cancelled by Ctrl+C, or because the terminal went away\n";

std::string footer() {
    std::string text(kExitCodes);
    text.append("\nEnvironment:\n").append(qrv::help::kSettingsEnvironment).append(qrv::help::kStateEnvironment);
    text.append("\nFiles:\n").append(qrv::help::kSettingsFiles).append(qrv::help::kStateFiles);
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

ExitCode run(CLI::App& app, qrv::Terminal& terminal, int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return terminal.end();
    } catch (const CLI::ParseError& error) {
        const std::string transfer = error.get_exit_code() == 0 ? "" : transferWithJson(argc, argv);
        if (!transfer.empty()) {
            qrv::tellMisunderstood(terminal, transfer, error.what());
            terminal.endWith(ExitCode::Usage);
            return terminal.end();
        }
        const bool isAnswer = app.exit(error) == 0;  // help or version
        return isAnswer ? terminal.end() : ExitCode::Usage;
    } catch (const qrv::CommandFailure& failure) {
        terminal.say(std::string("qrv: ") + failure.what());
        return failure.code();
    } catch (const qrv::RunTimeError& error) {
        terminal.say("qrv: " + error.description());
        return qrv::exitCodeOf(error);
    }
}

}  // namespace

int main(int argc, char** argv) {
    qrv::provideTemp();
    // A reader that went away shows as output that can't be written, and the way out is the usual one.
    std::signal(SIGPIPE, SIG_IGN);
    qrv::Terminal terminal;
    CLI::App app{kDescription, "qrv"};
    app.footer(footer());
    app.require_subcommand(1);
    app.failure_message(failureMessage);
    app.set_version_flag(
        "--version", [] { return qrv::foundVersions("qrv"); },
        "Print the versions of the program, the function catalogue and the database engine");
    qrv::addFileCommands(app, terminal);
    qrv::addCompareCommand(app, terminal);
    qrv::addFunctionCommand(app, terminal);
    qrv::addLinkCommands(app, terminal);
    qrv::addWatchCommand(app, terminal);
    qrv::addDownloadCommand(app, terminal);
    qrv::addUploadCommand(app, terminal);
    qrv::addVerifyCommand(app, terminal);
    return static_cast<int>(run(app, terminal, argc, argv));
}
