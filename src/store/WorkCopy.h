// The private copy of a user's file that the engine opens: the file itself is read and never touched.
#pragma once

#include <string>

#include "platform/Files.h"

namespace qrv {

/// Clears the read-only attribute of a file for as long as it lives.
class WritableForNow {
 public:
    explicit WritableForNow(const std::string& path);
    ~WritableForNow();
    WritableForNow(const WritableForNow&) = delete;
    WritableForNow& operator=(const WritableForNow&) = delete;

 private:
    std::string path_;
    bool was_;
};

/// Copies a user's file over a work file, which takes its read-only attribute and is open to the user alone. A file
/// that another tool has put into write-ahead mode leaves that mode in the copy, for a read-only file could not be
/// opened in it. Fails where changes still wait in the log beside such a file: the copy would lack them.
[[nodiscard]] FileResult copyToWorkFile(const std::string& path, const std::string& workFile);

}  // namespace qrv
