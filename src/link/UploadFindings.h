// What an upload saw in the controller that stands in no table of the configuration, for those who tell how it went.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "link/BlockTable.h"
#include "platform/RunTimeError.h"

namespace qrv {

/// A string record for a parameter that had a text already. The first one is kept.
struct RepeatedString {
    std::int16_t block = 0;
    std::int16_t offset = 0;  ///< the parameter's place among the block's constants, from 0
};

struct UploadFindings {
    /// Blocks whose function the catalogue lacks: they were left as they were.
    std::vector<std::int16_t> foreignBlocks;
    std::vector<RepeatedString> repeatedStrings;
    std::vector<BlockRecord> blockTable;  ///< a record for each block
    std::optional<RunTimeError> error;    ///< what ended a section, and was told as "Runtime Error" only
};

}  // namespace qrv
