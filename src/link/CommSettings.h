// The serial settings as they are kept per user: read once at the start, written by the port settings form.
#pragma once

#include <array>

namespace qrv {

struct Workbench;

struct BaudRate {
    const char* entry;  ///< as the form's list shows it; null where the list doesn't hold it
    const char* baud_rate;
};
/// In the list's order.
inline constexpr std::array kBaudRates{
    BaudRate{"38400", "38400"}, BaudRate{"19200", "19200"}, BaudRate{" 9600", "9600"}, BaudRate{" 4800", "4800"},
    BaudRate{" 2400", "2400"},  BaudRate{" 1200", "1200"},  BaudRate{nullptr, "300"},
};

/// Sets `comm_port`, `baud_rate` and `parity` from the settings: 1, "38400" and "O" where there are none.
void readCommSettings(Workbench& workbench);
void writeCommSettings(const Workbench& workbench);

}  // namespace qrv
