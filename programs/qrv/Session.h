// What most commands begin with: a workbench on the terminal's services, with the function catalogue open.
#pragma once

#include <string>

#include "TerminalPlatform.h"
#include "store/ConfigurationContent.h"
#include "store/Workbench.h"

namespace qrv {

class Session {
 public:
    /// Opens the catalogue. Ends the command where that fails: without it no block has a name.
    explicit Session(Terminal& terminal);
    /// Closes the open configuration, unsaved.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] Workbench& bench() { return bench_; }
    [[nodiscard]] TerminalPlatform& platform() { return platform_; }

    /// Opens a configuration in a work copy; the user's file is read and never written.
    void open(const std::string& path);
    /// Closes the open configuration. @param answer  Yes saves it
    void close(Answer answer);

    /// The rows of a file, which is closed again.
    [[nodiscard]] ConfigurationContent contentOf(const std::string& path);

 private:
    TerminalPlatform platform_;
    Workbench bench_;
    bool isOpen_ = false;
};

}  // namespace qrv
