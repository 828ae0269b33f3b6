#include "TransferSession.h"

#include <algorithm>
#include <sstream>

#include "platform/EventPump.h"
#include "platform/Numerals.h"

namespace qrv {

std::string withCommas(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
    return text;
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

TransferReport reportOn(Terminal& terminal, const TransferOptions& options) {
    return {terminal, options.json ? TransferReport::Style::Json : TransferReport::Style::Words,
            options.yes ? Consent::Given : Consent::Asked};
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
