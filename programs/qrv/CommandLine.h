// The command line of `qrv`: what its commands and options are called, what --help tells of them, and which command a
// line runs. The manual page and the completion are made from that help.
#pragma once

namespace qrv {

class Terminal;
enum class ExitCode : int;

/// Runs the command that the line names, and tells why where that fails.
[[nodiscard]] ExitCode runCommandLine(Terminal& terminal, int argc, char** argv);

}  // namespace qrv
