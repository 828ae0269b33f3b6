// How many bytes each section of a download will count, as the progress picture's total adds them up. Estimates: what
// the sections really send comes near them.
#pragma once

#include <cstdint>

namespace qrv {

struct Workbench;

/// Each may move the cursors of the tables that it looks at.
namespace downloadestimate {
[[nodiscard]] std::int32_t alarms(Workbench& bench);
[[nodiscard]] std::int32_t pager(Workbench& bench);
[[nodiscard]] std::int32_t modbus(Workbench& bench);
[[nodiscard]] std::int32_t charts(Workbench& bench);
[[nodiscard]] std::int32_t menus(Workbench& bench);
[[nodiscard]] std::int32_t egus(Workbench& bench);
[[nodiscard]] std::int32_t blocks(Workbench& bench);
}  // namespace downloadestimate

}  // namespace qrv
