// The one module of globals: the open configuration and all that the forms share, under the names that documents and
// users know, together with the machine's services. Built once in main (or by a test) and passed by reference.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "store/KnownFunctions.h"
#include "store/ProgramPlaces.h"
#include "store/db1.h"

namespace qrv {

inline constexpr std::int16_t kBlockCount = 705;
inline constexpr std::int16_t kLastBlock = kBlockCount - 1;
inline constexpr std::int16_t kFirstIoBlock = 600;
inline constexpr std::int16_t kSlotCount = 7;
inline constexpr std::int16_t kBlocksPerSlot = 15;
/// Outputs of one kind that a picker lists, the main output among them.
inline constexpr std::size_t kMostListedOutputs = 100;
/// A frame's greatest length, bytes.
inline constexpr std::size_t kFrameCapacity = 301;

/// What the life cycle of a file asks of the windows. A terminal program leaves these as they are.
struct WindowHooks {
    /// The title of the dialog for a new file; "" for the platform's own.
    std::string newFileTitle{};
    /// A file was opened: read its board texts into the hardware grid. Errors are ignored by the caller.
    std::function<void()> loadBoardTexts = [] {};
    /// The file is about to be closed: write the hardware grid's board texts to it.
    std::function<void()> storeBoardTexts = [] {};
    std::function<void(const std::string& path)> addRecentFile = [](const std::string&) {};
    /// A file is open: show the title line, hide the splash, show the main window.
    std::function<void()> showOpened = [] {};
    /// Another window takes the main window's place, or gives it back.
    std::function<void()> hideMain = [] {};
    std::function<void()> showMain = [] {};
};

struct Workbench {
    Workbench(const Platform& services, ProgramPlaces programPlaces);

    /// Sees to it that every change so far is in the work file. The desktop calls it after each event of the user's.
    void settle() { db.settle(); }

    Platform platform;
    ProgramPlaces places;
    WindowHooks windows;

    db1 db;

    // --- the open file ---
    std::string CurrentFileName;  ///< full path of the user's file; "" while none was opened
    std::string WorkFileName;     ///< full path of the work copy; "" before the first open
    std::string TitleText = "QRV Edit";
    bool FileIsOpen = false;
    bool AlreadyActive = false;
    bool DialogResultOpen = false;
    bool IsReadOnlyFile = false;

    // --- the block program ---
    std::array<std::int16_t, kBlockCount> FnOfBlock{};  ///< function of each block
    std::int16_t CurBlock = 0;                          ///< the block whose data is shown
    std::int16_t CurFn = 0;                             ///< its function
    std::int16_t CurInputs = 0;                         ///< its number of inputs
    std::int16_t SeekBlock = 0;                         ///< the block that the seek calls use
    std::array<std::string, kSlotCount> BoardText{};    ///< the hardware grid's texts
    std::int16_t WantedFunction = 0;                    ///< which function frmBlock asks a block of
    std::int16_t ChosenBlock = 0;                       ///< its answer; who asks sets 0 first, for a cancel

    // --- the item pickers ---
    std::int16_t PickedOutput = 0;  ///< place picked in a list of outputs; 0 is the main output
    bool PickedAnalog = true;       ///< it is a place in the list of analog outputs
    /// Short names of the listed outputs, by place.
    std::array<std::string, kMostListedOutputs> AuxAnalogShort{};
    std::array<std::string, kMostListedOutputs> AuxDiscreteShort{};

    // --- the serial line ---
    std::int16_t comm_port = 1;
    std::string baud_rate = "38400";
    std::string parity = "O";

    // --- a transfer ---
    std::vector<std::uint8_t> xmit_bfr = std::vector<std::uint8_t>(kFrameCapacity);
    std::vector<std::uint8_t> rcv_bfr;
    bool xfer_ok = false;
    bool xfer_abort = false;
    std::string xfer_abort_reason;
    bool in_download = false;
    bool in_upload = false;
    bool isHalfUploaded = false;  ///< the open work copy is a mixture of the file's program and the controller's
    std::int32_t bytes_sent = 0;
    std::int32_t bytes_received = 0;
    std::int32_t bytes_total = 0;
    std::int32_t section_checksum = 0;
    float rom_version = 0;
    bool has_pager_block = false;
    bool pager_supported = false;
    bool dl_menus = false;
    bool dl_alarms = false;
    bool dl_blocks = false;
    bool dl_pager = false;
    bool dl_egus = false;
    bool dl_modbus = false;
    bool dl_charts = false;
};

}  // namespace qrv
