// The commands of `qrv`, one file for each subject. A command ends a failure with CommandFailure; a RunTimeError that
// leaves it counts as one of the file.
#pragma once

#include <string>

#include "Options.h"

namespace qrv {

class Terminal;

void makeNew(Terminal& terminal, const FileOptions& options);
void showInfo(Terminal& terminal, const FileOptions& options);
void listBackups(Terminal& terminal);
void dump(Terminal& terminal, const FileOptions& options);
void load(Terminal& terminal, const FileOptions& options);

void compare(Terminal& terminal, const CompareOptions& options);

/// @param numberOrName  empty for the list of all functions
void showFunction(Terminal& terminal, const std::string& numberOrName);

void showPorts(Terminal& terminal, const PortsOptions& options);
void pollController(Terminal& terminal, const LineOptions& options);
void showVersion(Terminal& terminal, const LineOptions& options);
void readBlock(Terminal& terminal, const ReadBlockOptions& options);
void readSection(Terminal& terminal, const ReadOptions& options);

void watch(Terminal& terminal, const WatchOptions& options);

void download(Terminal& terminal, const TransferOptions& options);
void upload(Terminal& terminal, const TransferOptions& options);
void verify(Terminal& terminal, const TransferOptions& options);

}  // namespace qrv
