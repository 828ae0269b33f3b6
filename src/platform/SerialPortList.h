// The serial ports that a user can choose from, by the names that the tool calls them on every system.
#pragma once

#include <string>
#include <vector>

namespace qrv {

struct SerialPortName {
    std::string name;     ///< "COM" and the port's number
    std::string toolTip;  ///< maker, serial number, device, as far as known; UTF-8
};

class SerialPortList {
 public:
    virtual ~SerialPortList() = default;

    /// The ports that are there, in no promised order.
    [[nodiscard]] virtual std::vector<SerialPortName> names() = 0;
};

}  // namespace qrv
