// Where the lines of an upload's log go: a file in the tool, a list in a test.
#pragma once

#include <string>
#include <string_view>

namespace qrv {

class UploadLog {
 public:
    virtual ~UploadLog() = default;

    /// One line, without its end; code page 1252.
    virtual void print(std::string_view line) = 0;
    /// Where the lines can be read, UTF-8; "" where they are in no file.
    [[nodiscard]] virtual std::string path() const { return {}; }
};

}  // namespace qrv
