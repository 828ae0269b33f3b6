// What a transfer asks of the windows around it: the main window's button, grid and title, the hardware grid. A program
// without windows leaves these as they are.
#pragma once

#include <functional>
#include <string>

namespace qrv {

struct TransferWindow {
    std::function<void(bool enabled)> enableCommand1 = [](bool) {};
    /// The main window shows its block grid again.
    std::function<void()> refreshGrid = [] {};
    /// The main window shows the open file again: grid, title, read-only state.
    std::function<void()> refreshAll = [] {};
    /// The hardware grid shows the boards of the open file's slots.
    std::function<void()> refreshSlots = [] {};
    /// Shows name, comments and boards of what came in, and comes back when the user is done with them.
    std::function<void()> showGeneral = [] {};
    /// How a transfer ended, for the user to read at leisure; "" takes the words of the last one away.
    std::function<void(const std::string& words)> tellEnd = [](const std::string&) {};
};

}  // namespace qrv
