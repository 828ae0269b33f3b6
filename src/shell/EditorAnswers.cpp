#include "shell/EditorAnswers.h"

#include "platform/HelpTexts.h"
#include "store/Versions.h"

namespace qrv {

namespace {

std::string helpText() {
    std::string text =
        "The engineering tool for QRV process controllers: writes their configurations, exchanges them with "
        "controllers\n"
        "over a serial line, and shows block outputs live.\n"
        "Usage: qrv_edit [OPTIONS] [FILE]\n"
        "\n"
        "Positionals:\n"
        "  FILE                        Configuration to open\n"
        "\n"
        "Options:\n"
        "  -h,--help                   Print this help message and exit\n"
        "  --version                   Print the versions of the program, the function catalogue, the database engine\n"
        "                              and the toolkit\n"
        "\n"
        "Options of the toolkit, such as -platform and -style, are taken, too. Without a display qrv does the same\n"
        "work.\n"
        "\n"
        "Exit codes:\n"
        "  0      ended by the user\n"
        "  1      an error that ends the program: it is told, and the work file stays\n"
        "  2      there is no display, or it can't be reached\n"
        "  128+n  ended by signal n; what was not saved is kept as a copy\n"
        "\n"
        "Environment:\n"
        "  QRV_EDIT_CLASSIC=1  the editor without our additions: tool bar, status bar with meters, panels, filter,\n"
        "                      tool tips, sentences of live and transfer windows, the menus Tools and Help,\n"
        "                      the title of the dialog for a new file\n";
    text.append(help::kSettingsEnvironment).append(help::kStateEnvironment);
    text.append("\nFiles:\n").append(help::kSettingsFiles).append(help::kStateFiles);
    return text;
}

}  // namespace

std::optional<std::string> answerInTerminal(std::span<const std::string> arguments, const std::string& toolkit) {
    if (arguments.empty()) return std::nullopt;
    const std::string& word = arguments.front();
    if (word == "--help" || word == "-h") return helpText();
    if (word == "--version") return foundVersions("qrv_edit") + "\n" + toolkit + "\n";
    return std::nullopt;
}

}  // namespace qrv
