#include "TransferSession.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

#include "platform/EventPump.h"
#include "platform/Numerals.h"

namespace qrv {

namespace {

std::string withCommas(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
    return text;
}

}  // namespace

void addTransferOptions(CLI::App& command, TransferOptions& options, const char* file,
                        const std::vector<std::string>& known) {
    command.add_option("FILE", options.file, file)->required();
    addLineOptions(command, options.line);
    command.add_option("--sections", options.sections,
                       "Only these, with commas between: " + withCommas(known) + "; else all of them");
    command.add_flag("--json", options.json, "Progress as lines of JSON, the result as one JSON object");
}

std::vector<std::string> sectionsNamed(const std::string& option, const std::vector<std::string>& known) {
    if (option.empty()) return known;
    std::vector<std::string> named;
    std::istringstream words(option);
    for (std::string word; std::getline(words, word, ',');) {
        if (std::ranges::find(known, word) == known.end()) {
            throw CommandFailure(ExitCode::Usage,
                                 "There is no section \"" + word + "\"; there are: " + withCommas(known) + ".");
        }
        named.push_back(word);
    }
    return named;
}

TransferSession::TransferSession(Terminal& terminal, const LineOptions& options, TransferReport& report)
    : link_(terminal, options, &report), general_(link_.bench()), file_(link_.bench()) {
    WindowHooks& windows = bench().windows;
    windows.loadBoardTexts = [this] { general_.loadBoardTexts(); };
    windows.storeBoardTexts = [this] { general_.storeBoardTexts(); };
    window_.refreshSlots = [this] { general_.showBoardTexts(); };
    // Coming and going of the hardware form, at which nobody looks here, are part of an upload's result.
    window_.showGeneral = [this] {
        general_.loadBoardTexts();
        general_.mnuexit();
    };
}

void TransferSession::failIfCancelled(const std::string& consequence) {
    bench().platform.eventPump.pump();
    if (link_.isCancelled()) throw CommandFailure(ExitCode::Cancelled, "Cancelled. " + consequence);
}

}  // namespace qrv
