// What the commands begin with that move configurations in and out of controllers: a line, a configuration, and the
// hardware form, whose rules belong to opening a file and to an upload.
#pragma once

#include <string>
#include <vector>

#include "LinkSession.h"
#include "OpenFile.h"
#include "Options.h"
#include "TransferReport.h"
#include "blocks/frmGeneral.h"
#include "link/TransferWindow.h"

namespace qrv {

/// What these commands tell by.
[[nodiscard]] TransferReport reportOn(Terminal& terminal, const TransferOptions& options);

/// The words of sections, for a user to read.
[[nodiscard]] std::string withCommas(const std::vector<std::string>& words);

/// The sections that an option names; all that are known where it names none. Ends the command at an unknown word.
[[nodiscard]] std::vector<std::string> sectionsNamed(const std::string& option, const std::vector<std::string>& known);

/// The words of a table's sections that this program can transfer.
template <typename Sections>
[[nodiscard]] std::vector<std::string> availableWords(const Sections& sections) {
    std::vector<std::string> words;
    for (const auto& section : sections) {
        if (section.isAvailable()) words.emplace_back(section.word);
    }
    return words;
}

class TransferSession {
 public:
    TransferSession(Terminal& terminal, const LineOptions& options, TransferReport& report);

    [[nodiscard]] LinkSession& link() { return link_; }
    [[nodiscard]] OpenFile& file() { return file_; }
    [[nodiscard]] Workbench& bench() { return link_.bench(); }
    [[nodiscard]] const TransferWindow& window() const { return window_; }
    /// An upload leaves the CPU's blocks as they came, for one that only looks.
    void leaveHardwareAsRead() {
        window_.showGeneral = [] {};
    }
    /// Ends the command if Ctrl+C was pressed. @param consequence  "Nothing was sent."
    void failIfCancelled(const std::string& consequence);

 private:
    LinkSession link_;
    frmGeneral general_;
    OpenFile file_;
    TransferWindow window_;
};

}  // namespace qrv
