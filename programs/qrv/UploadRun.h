// An upload into the open configuration: the form of the desktop, driven by a command.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TransferSession.h"
#include "link/frmUpload.h"

namespace qrv {

/// The words of the sections that can be uploaded.
[[nodiscard]] std::vector<std::string> uploadSections();

class UploadRun {
 public:
    UploadRun(TransferSession& session, TransferReport& report);

    /// Reads the sections. Ends the command where the upload fails, is refused or cancelled.
    /// @param unharmed  what is told then of the file
    void run(const std::vector<std::string>& sections, const std::string& unharmed);

    [[nodiscard]] const TransferProgress& progress() const { return form_.progress(); }
    [[nodiscard]] int failedReads() const { return form_.outcome().failedReads; }
    /// What they mean for the values, as a sentence.
    [[nodiscard]] std::string failedReadsText() const;
    /// Blocks whose function the catalogue lacks: they were left as they were.
    [[nodiscard]] const std::vector<std::int16_t>& foreignBlocks() const {
        return session_.link().comm().foreignBlocks;
    }
    /// Which they are and what that means, as a sentence.
    [[nodiscard]] std::string foreignText() const;
    /// Where the log of every exchange is.
    [[nodiscard]] std::string logFile() const;

 private:
    void prepare(const std::string& unharmed);

    TransferSession& session_;
    TransferReport& report_;
    std::string logFolder_;
    frmUpload form_;
};

}  // namespace qrv
