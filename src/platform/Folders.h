// Where the program's own files lie on this machine. No path ends in a folder mark. Each rule reads the environment
// through a function, so that a test has its own.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace qrv {

/// The value of an environment variable; "" where it isn't set.
using Environment = std::function<std::string(const std::string& name)>;
[[nodiscard]] std::string systemEnvironment(const std::string& name);

/// The folder of the running program's executable.
[[nodiscard]] std::string executableFolder();
/// The user's home.
[[nodiscard]] std::string homeFolder(const Environment& environment);

/// Where the program keeps what it must remember of its own, by user: "$XDG_STATE_HOME/QRV_Edit".
[[nodiscard]] std::string stateFolder(const Environment& environment);
/// Copies of work that could not be saved to the user's file.
[[nodiscard]] std::string backupsFolder(const Environment& environment);
/// Where work files are made: `programFolder` if it can be written, else the state folder.
[[nodiscard]] std::string workFolder(const std::string& programFolder, const Environment& environment);
/// The folder that holds `fileName`: `programFolder` first, then "../share/qrv_edit" beside it. Where neither does, the
/// first, so that the message about the missing file names the place where it belongs.
[[nodiscard]] std::string sharedFolder(const std::string& programFolder, const std::string& fileName);
/// The file of the per-user settings: "$QRV_SETTINGS", else "$XDG_CONFIG_HOME/QRV_Edit/settings.ini".
[[nodiscard]] std::string settingsFile(const Environment& environment);

/// The folder for reports and logs: TEMP, else TMPDIR, else the system's.
[[nodiscard]] std::string temporaryFolder(const Environment& environment);
/// Where an upload's log goes, best first: the folder for logs, and where that holds another user's, the one for what
/// the program must remember.
[[nodiscard]] std::vector<std::string> logFolders(const Environment& environment);
/// Sets TEMP for this program where it isn't set. For main, before anything else runs.
void provideTemp();

/// Makes the folder and those above it that lack, each for this user alone. False where that failed.
[[nodiscard]] bool makeFolder(const std::string& folder);

}  // namespace qrv
