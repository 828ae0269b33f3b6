// The block program out of a controller: the functions on the blocks, their constants, the strings, and the boards that
// follow from the functions of the I/O blocks.
#pragma once

namespace qrv {

class frmComm;
struct Workbench;

/// Reads the blocks into the open configuration; opens the port for itself and closes it. A failure is shown and raises
/// `xfer_abort`. Every exchange goes to the upload's log.
void upLoadBlocks(Workbench& bench, frmComm& comm);

}  // namespace qrv
