// Which fields may be null without ending whoever reads them. Derived from db1's table of accessors.
#pragma once

#include "store/Schema.h"

namespace qrv {

/// True where the accessor of the column gives something for a null, and where the column has none; elsewhere a getter
/// raises 94, which ends the desktop's program.
[[nodiscard]] bool isReadIfNull(const Table& table, const Column& column);

}  // namespace qrv
