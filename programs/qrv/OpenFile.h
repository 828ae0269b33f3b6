// The configuration that a command works on: the function catalogue, and a user's file in a work copy.
#pragma once

#include <optional>
#include <string>

#include "Terminal.h"
#include "platform/Files.h"
#include "platform/MessageBox.h"
#include "store/ConfigurationContent.h"

namespace qrv {

struct Workbench;

class OpenFile {
 public:
    /// Opens the catalogue. Ends the command where that fails: without it no block has a name.
    explicit OpenFile(Workbench& bench);
    /// Closes the open configuration, unsaved.
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// Opens a configuration in a work copy; the user's file is read and never written.
    void open(const std::string& path);
    /// Opens a new configuration that has no file yet.
    void openNew();
    /// Closes the open configuration. What was not saved is gone.
    void close();
    /// Goes without deleting the work file.
    void abandon();

    /// The rows of the open configuration, which can only be closed or saved from then on.
    [[nodiscard]] ConfigurationContent content();
    /// The rows of a file, which is closed again.
    [[nodiscard]] ConfigurationContent contentOf(const std::string& path);

    /// Puts the work in the place of the file at `path`, whole or not at all, and closes the configuration. Ends the
    /// command where the file can't be written, or where it is no longer what was there before; a copy of the work is
    /// kept then.
    /// @param before  what was there when the command began; absent: nothing
    void saveAs(const std::string& path, const std::optional<FileIdentity>& before);

 private:
    /// Closes the configuration, if one is open, come what may.
    void leave();
    /// Closes the configuration and ends the command: why, and where the work is.
    [[noreturn]] void keepWork(ExitCode code, const std::string& path, const std::string& why);

    Workbench& bench_;
    std::string newFile_;  ///< stands in for the file of a configuration that has none
    bool isOpen_ = false;
};

}  // namespace qrv
