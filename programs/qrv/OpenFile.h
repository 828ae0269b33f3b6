// The configuration that a command works on: the function catalogue, and a user's file in a work copy.
#pragma once

#include <string>

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
    /// command where the file can't be written; a copy of the work is kept then.
    void saveAs(const std::string& path);

 private:
    Workbench& bench_;
    std::string newFile_;  ///< stands in for the file of a configuration that has none
    bool isOpen_ = false;
};

}  // namespace qrv
