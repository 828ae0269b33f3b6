// The sections of a download in the order in which they go: the only table of them.
#pragma once

#include <array>
#include <string_view>

#include "link/DownloadBlocks.h"
#include "link/DownloadEstimate.h"
#include "link/frmSelect.h"
#include "store/Workbench.h"

namespace qrv {

class frmComm;

struct DownloadSection {
    using Routine = void (*)(Workbench& bench, frmComm& comm);

    std::string_view word;  ///< how a command line names it
    bool Workbench::*flag;
    Choice frmSelect::*box;
    std::string_view operation;
    std::int32_t (*estimate)(Workbench& bench);  ///< bytes that the section will count
    /// The same more closely, for the time that is left; null where the estimate has to do.
    std::int32_t (*closely)(Workbench& bench) = nullptr;
    Routine routine;          ///< null: this program can't send the section yet
    bool needsPager = false;  ///< sent only where a pager block is and the firmware knows pagers
    bool bringsUnits = false;

    [[nodiscard]] constexpr bool isAvailable() const { return routine != nullptr; }
};

// Units go behind charts and menus, which bring them along.
inline constexpr std::array kDownloadSections{
    DownloadSection{.word = "alarms",
                    .flag = &Workbench::dl_alarms,
                    .box = &frmSelect::Alarms,
                    .operation = "Downloading Alarms",
                    .estimate = &downloadestimate::alarms,
                    .routine = nullptr},
    DownloadSection{.word = "pager",
                    .flag = &Workbench::dl_pager,
                    .box = &frmSelect::Pager,
                    .operation = "Downloading Pager Info",
                    .estimate = &downloadestimate::pager,
                    .routine = nullptr,
                    .needsPager = true},
    DownloadSection{.word = "modbus",
                    .flag = &Workbench::dl_modbus,
                    .box = &frmSelect::Modbus,
                    .operation = "Downloading Modbus",
                    .estimate = &downloadestimate::modbus,
                    .routine = nullptr},
    DownloadSection{.word = "charts",
                    .flag = &Workbench::dl_charts,
                    .box = &frmSelect::Charts,
                    .operation = "Downloading Charts",
                    .estimate = &downloadestimate::charts,
                    .routine = nullptr,
                    .bringsUnits = true},
    DownloadSection{.word = "menus",
                    .flag = &Workbench::dl_menus,
                    .box = &frmSelect::Menus,
                    .operation = "Downloading Menus/Screens",
                    .estimate = &downloadestimate::menus,
                    .routine = nullptr,
                    .bringsUnits = true},
    DownloadSection{.word = "egus",
                    .flag = &Workbench::dl_egus,
                    .box = &frmSelect::Egus,
                    .operation = "Downloading EGU's",
                    .estimate = &downloadestimate::egus,
                    .routine = nullptr},
    DownloadSection{.word = "blocks",
                    .flag = &Workbench::dl_blocks,
                    .box = &frmSelect::Blocks,
                    .operation = "Downloading Blocks",
                    .estimate = &downloadestimate::blocks,
                    .closely = &countedBytesOfBlocks,
                    .routine = &DownloadBlocks},
};

}  // namespace qrv
