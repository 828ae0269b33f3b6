// An upload into the open configuration: the form of the desktop, driven by a command.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TransferSession.h"
#include "json/Json.h"
#include "link/frmUpload.h"

namespace qrv {

/// The words of the sections that can be uploaded.
[[nodiscard]] std::vector<std::string> uploadSections();
/// An array of objects.
[[nodiscard]] Json jsonOf(const std::vector<RepeatedString>& strings);

class UploadRun {
 public:
    /// @param logFolders  for the log of every exchange, best first; where there is none no log is kept
    UploadRun(TransferSession& session, TransferReport& report, const std::vector<std::string>& logFolders);

    /// Reads the sections. Ends the command where the upload fails, is refused or cancelled.
    /// @param unharmed  what is told then of the file
    void run(const std::vector<std::string>& sections, const std::string& unharmed);

    [[nodiscard]] const TransferProgress& progress() const { return form_.progress(); }
    [[nodiscard]] int failedReads() const { return form_.outcome().failedReads; }
    /// What they mean for the values, as a sentence.
    [[nodiscard]] std::string failedReadsText() const;
    [[nodiscard]] const UploadFindings& findings() const { return session_.link().comm().uploadFindings; }
    /// Blocks whose function the catalogue lacks: they were left as they were.
    [[nodiscard]] const std::vector<std::int16_t>& foreignBlocks() const { return findings().foreignBlocks; }
    /// Which they are and what that means, as a sentence.
    [[nodiscard]] std::string foreignText() const;
    /// Texts for a parameter that had one already, as a sentence.
    [[nodiscard]] std::string repeatedText() const;
    /// Where the log of every exchange is; "" where none is kept.
    [[nodiscard]] const std::string& logFile() const { return form_.logPath(); }

 private:
    void prepare(const std::string& unharmed);
    [[noreturn]] void fail(const std::string& unharmed);

    TransferSession& session_;
    TransferReport& report_;
    frmUpload form_;
};

}  // namespace qrv
