// What a new configuration holds: the only description of its rows. The creation of a file, its upgrades and the check
// of a file's fixed tables come from here.
#pragma once

#include <cstdint>
#include <vector>

#include "store/Recordset.h"
#include "store/Schema.h"

namespace qrv {

/// The rows of a table in a new file, in the order in which they are added; empty where a new file's table is.
[[nodiscard]] std::vector<std::vector<Value>> defaultRows(const Table& table);

/// The function of a block in a new file.
[[nodiscard]] std::int16_t defaultFunction(std::int32_t block);

}  // namespace qrv
