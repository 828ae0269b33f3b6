// An upload's log as a text file, written anew by each upload.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "link/UploadLog.h"

namespace qrv {

class UploadLogFile final : public UploadLog {
 public:
    /// Takes the first folder that lets the file be written; a link or another user's file of that name doesn't.
    /// @param folders  UTF-8, at least one; those behind the first are made where they are missing. Raises "Path/File
    /// access error" where none does.
    explicit UploadLogFile(const std::vector<std::string>& folders);

    void print(std::string_view line) override;
    [[nodiscard]] std::string path() const override { return path_; }
    /// Hands over what was printed so far. False: the file didn't take all of it.
    [[nodiscard]] bool isWhole() { return static_cast<bool>(file_.flush()); }

 private:
    std::string path_;
    std::ofstream file_;
};

}  // namespace qrv
