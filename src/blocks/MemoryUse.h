// How much of a controller's memory the open program takes: the numbers that a download tests before it begins. Used by
// the meters of the main window's status bar and by the download.
#pragma once

#include <cstdint>

namespace qrv {

struct Workbench;

struct MemoryUse {
    std::int32_t constants = 0;       ///< rows of the constants table
    std::int32_t retentiveBytes = 0;  ///< sum over all blocks of what a block of their function takes

    friend bool operator==(const MemoryUse&, const MemoryUse&) = default;

    /// Of the open configuration. Moves the cursors of constants, blocks and functions.
    [[nodiscard]] static MemoryUse of(Workbench& bench);
};

}  // namespace qrv
