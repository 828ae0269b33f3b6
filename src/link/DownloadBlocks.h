// The block program into a controller: block table, constants, string parameters. The tool computes where each block's
// data lie in the controller's three memory areas, by adding up what the catalogue says of the functions.
#pragma once

#include <cstdint>

namespace qrv {

class frmComm;
struct Workbench;

/// Sends the open configuration's blocks through the open port. The result is the state of `xfer_ok` and `xfer_abort`;
/// what failed was shown, and strings that were left out are counted in `unsentStrings`. Moves the cursors of blocks,
/// constants, strings, functions and parameters.
void DownloadBlocks(Workbench& bench, frmComm& comm);

/// What that will add to `bytes_sent`: less where there is no string. Moves the strings' cursor.
[[nodiscard]] std::int32_t countedBytesOfBlocks(Workbench& bench);

}  // namespace qrv
