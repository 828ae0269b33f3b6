// What of a configuration a controller holds and gives back, field by field: the measure of a comparison between a file
// and what was read out of a controller. Comments, for instance, never leave the tool.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "store/db1.h"
#include "tools/ContentDifference.h"

namespace qrv {

/// Points into the two contents, which outlive it.
struct HeldDifferences {
    std::vector<RowDifference> differing;  ///< in fields that a controller gives back
    std::size_t notHeld = 0;               ///< fields that differ and that no controller could give back
};

/// What differs in the sections that a controller holds.
/// @param file  the configuration as it was sent or is to be compared
/// @param found  a new configuration after an upload, or another one
/// @param sections  by the words of a command line; all where empty
/// Moves the catalogue's cursors.
[[nodiscard]] HeldDifferences heldDifferences(const ConfigurationContent& file, const ConfigurationContent& found,
                                              db1& catalogue, const std::vector<std::string>& sections = {});

}  // namespace qrv
