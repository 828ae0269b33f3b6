// The serial settings as they are kept per user: read once at the start, written by the port settings form.
#pragma once

namespace qrv {

struct Workbench;

/// Sets `comm_port`, `baud_rate` and `parity` from the settings: 1, "38400" and "O" where there are none.
void readCommSettings(Workbench& workbench);
void writeCommSettings(const Workbench& workbench);

}  // namespace qrv
