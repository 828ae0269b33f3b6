// The block program out of a controller: the functions on the blocks, their constants, the strings, and the boards that
// follow from the functions of the I/O blocks.
#pragma once

#include <cstdint>

namespace qrv {

class frmComm;
struct Workbench;

/// The most that the blocks add to `bytes_received`: those of a full controller.
[[nodiscard]] std::int32_t mostUploadBytesOfBlocks();

/// Reads the blocks into the open configuration; opens the port for itself and closes it. A failure is shown and raises
/// `xfer_abort`. Every exchange goes to the upload's log.
/// `bytes_total` loses what a program that doesn't fill the controller saves, as soon as that is known.
void upLoadBlocks(Workbench& bench, frmComm& comm);

}  // namespace qrv
