// The committed memory of a simulated controller as a file: what survives between two runs of it.
#pragma once

#include <optional>
#include <string>

#include "link/sim/SimMemory.h"

namespace qrv {

struct SimMemoryFile {
    std::optional<SimMemory> memory;  ///< nothing where there is no file yet, or no good one
    std::string fault;                ///< why a file that is there could not be taken; "" otherwise
};

/// @param path  UTF-8
[[nodiscard]] SimMemoryFile loadSimMemory(const std::string& path);
/// Whole or not at all. Gives "" or what went wrong.
[[nodiscard]] std::string saveSimMemory(const std::string& path, const SimMemory& memory);

}  // namespace qrv
