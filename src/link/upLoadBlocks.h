// The block program out of a controller: the functions on the blocks, their constants, the strings, and the boards that
// follow from the functions of the I/O blocks.
#pragma once

#include <cstdint>

namespace qrv {

class frmComm;
struct Workbench;

/// What the blocks add to `bytes_received` where the controller has the functions of the open configuration
/// (`FnOfBlock`). Moves the catalogue, in number order ("FN").
[[nodiscard]] std::int32_t uploadBytesOfBlocks(Workbench& bench);

/// Reads the blocks into the open configuration; opens the port for itself and closes it. A failure is shown and raises
/// `xfer_abort`. Every exchange goes to the upload's log.
/// `bytes_total` follows the functions as they come, and is exact behind the last of them.
void upLoadBlocks(Workbench& bench, frmComm& comm);

}  // namespace qrv
