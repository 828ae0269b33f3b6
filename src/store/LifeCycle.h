// The life of a configuration: the user's file is copied to a work file, all editing happens in the copy, and the
// user's file changes at one moment only, when it is saved. Used by the shell and by the terminal program.
#pragma once

#include <string>

#include "platform/MessageBox.h"
#include "store/Workbench.h"

namespace qrv {

/// Makes an empty work file with a new name in the program's folder. Raises where that fails.
[[nodiscard]] std::string MakeWorkFileName(Workbench& bench);

/// Opens a configuration in a fresh work copy and makes it the open one. A file that can't be used raises a
/// RunTimeError with one sentence that names the file and the reason; no work copy is left then.
void OpenConfiguration(Workbench& bench, const std::string& path);

/// Closes the open configuration: board texts to the file, cursors closed; on Yes the work file replaces the user's
/// file, whole or not at all; the work file is deleted. Where the user's file could not be written, a
/// copy of the work stays in the folder for backups. True where the user's file was written.
bool CloseConfiguration(Workbench& bench, Answer answer);

/// Ends the session where nobody can be asked, as when the machine goes down: what the user's file doesn't hold stays
/// as a copy in the folder for backups. Gives that copy's path; "" where nothing was left to save. Half an upload is
/// thrown away, as by one that fails: it is a mixture of two programs.
std::string KeepUnsavedWork(Workbench& bench);

/// Reads the function of every block into FnOfBlock.
void LoadFnOfBlock(Workbench& bench);

/// Asks for a name and makes and opens a new configuration. False: cancelled.
bool newFileDialog(Workbench& bench);
/// Asks for a configuration and opens it. False: cancelled, or the file doesn't exist.
bool openFileDialog(Workbench& bench);
/// Opens a path that was given by name, by the rules of the open dialog. False: it doesn't exist.
bool openByName(Workbench& bench, const std::string& path);
/// Asks for the path of a configuration and opens nothing; "" after a cancel.
[[nodiscard]] std::string GetMDBName(Workbench& bench);

/// How a Save As ended: nothing happened, the chosen name is the open file's own (save it), or the new file is open.
enum class SaveAsResult { Nothing, SameName, Saved };
SaveAsResult saveConfigurationAs(Workbench& bench);

}  // namespace qrv
