#include "link/DownloadEstimate.h"

#include "store/Workbench.h"

namespace qrv {

namespace {

// Bytes.
constexpr std::int32_t kPagerBytes = 355;
constexpr std::int32_t kAlarmBytes = 3040;
constexpr std::int32_t kBlockBytes = 8475 + 24750 + 3015;
constexpr std::int32_t kModbusBytes = 845;
constexpr std::int32_t kChartBytes = 180;
constexpr std::int32_t kChartsBytes = 290;
constexpr std::int32_t kMenuBytes = 380;
constexpr std::int32_t kScreenBytes = 2200;
constexpr std::int32_t kUnitsBytes = 2750 + 35;
constexpr std::int32_t kBlockUnitBytes = 30;

std::int32_t titledMenus(db1& db) {
    std::int32_t count = 0;
    for (db.MenuMoveFirst(); !db.MenuEOF(); db.MenuMoveNext()) count += db.MenuTitle().empty() ? 0 : 1;
    return count;
}

std::int32_t titledScreens(db1& db) {
    std::int32_t count = 0;
    for (db.ScreenMoveFirst(); !db.ScreenEOF(); db.ScreenMoveNext()) count += db.ScreenTitle().empty() ? 0 : 1;
    return count;
}

std::int32_t titledCharts(db1& db) {
    std::int32_t count = 0;
    for (db.ChartMoveFirst(); !db.ChartEOF(); db.ChartMoveNext()) count += db.ChartDescription().empty() ? 0 : 1;
    return count;
}

}  // namespace

namespace downloadestimate {

std::int32_t alarms(Workbench&) { return kAlarmBytes; }
std::int32_t pager(Workbench&) { return kPagerBytes; }
std::int32_t modbus(Workbench&) { return kModbusBytes; }
std::int32_t blocks(Workbench&) { return kBlockBytes; }

std::int32_t charts(Workbench& bench) { return titledCharts(bench.db) * kChartBytes + kChartsBytes; }

std::int32_t menus(Workbench& bench) {
    return titledMenus(bench.db) * kMenuBytes + titledScreens(bench.db) * kScreenBytes;
}

std::int32_t egus(Workbench& bench) { return kUnitsBytes + bench.db.BEGUHowMany() * kBlockUnitBytes; }

}  // namespace downloadestimate

}  // namespace qrv
