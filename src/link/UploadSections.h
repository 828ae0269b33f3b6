// The sections of an upload in the order in which they come: the only table of them.
#pragma once

#include <array>

#include "link/FirmwareVersion.h"
#include "link/frmUpload.h"
#include "link/upLoadBlocks.h"

namespace qrv {

inline constexpr std::array kUploadSections{
    UploadSection{.word = "blocks",
                  .box = &frmUpload::Blocks,
                  .shown = "Blocks",
                  .routine = &upLoadBlocks,
                  .bytes = &uploadBytesOfBlocks},
    UploadSection{.word = "modbus", .box = &frmUpload::Modbus, .shown = "Modbus", .routine = nullptr, .bytes = nullptr},
    UploadSection{.word = "alarms", .box = &frmUpload::Alarms, .shown = "Alarms", .routine = nullptr, .bytes = nullptr},
    UploadSection{.word = "pager",
                  .box = &frmUpload::Pager,
                  .shown = "Pager",
                  .routine = nullptr,
                  .bytes = nullptr,
                  .leastFirmware = kPagerFirmware},
    UploadSection{.word = "egus", .box = &frmUpload::Egus, .shown = "EGUs", .routine = nullptr, .bytes = nullptr},
    UploadSection{.word = "charts", .box = &frmUpload::Charts, .shown = "Charts", .routine = nullptr, .bytes = nullptr},
    UploadSection{.word = "menus", .box = &frmUpload::Menus, .shown = "Menus", .routine = nullptr, .bytes = nullptr},
    UploadSection{
        .word = "screens", .box = &frmUpload::Menus, .shown = "Screens", .routine = nullptr, .bytes = nullptr},
};

}  // namespace qrv
