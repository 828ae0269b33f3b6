// An upload's log as a text file, written anew by each upload.
#pragma once

#include <fstream>
#include <string>

#include "link/UploadLog.h"

namespace qrv {

class UploadLogFile final : public UploadLog {
 public:
    /// @param folder  UTF-8. Raises "Path/File access error" where the file can't be written.
    explicit UploadLogFile(const std::string& folder);

    void print(std::string_view line) override;
    [[nodiscard]] std::string path() const override { return path_; }

 private:
    std::string path_;
    std::ofstream file_;
};

}  // namespace qrv
