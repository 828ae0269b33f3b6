// The commands of `qrv`, one file for each subject. Each adds its subcommands to the command line, with what they do as
// their callback. A callback ends a failure with CommandFailure; a RunTimeError that leaves it counts as one of the
// file.
#pragma once

namespace CLI {
class App;
}

namespace qrv {

class Terminal;

/// new, info, backups, dump, load
void addFileCommands(CLI::App& app, Terminal& terminal);
/// compare
void addCompareCommand(CLI::App& app, Terminal& terminal);
/// function
void addFunctionCommand(CLI::App& app, Terminal& terminal);
/// ports, poll, version, read-block, read
void addLinkCommands(CLI::App& app, Terminal& terminal);

/// watch
void addWatchCommand(CLI::App& app, Terminal& terminal);

/// download
void addDownloadCommand(CLI::App& app, Terminal& terminal);
/// upload
void addUploadCommand(CLI::App& app, Terminal& terminal);
/// verify
void addVerifyCommand(CLI::App& app, Terminal& terminal);

}  // namespace qrv
