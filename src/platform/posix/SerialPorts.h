// Which device each port number stands for. The system names adapters in the order in which they are plugged in; here
// each gets a number that it keeps, held in the settings section "Serial Ports" as "COM3" = device path.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/SerialPortList.h"

namespace qrv {

class Settings;

/// One number and its device.
struct SerialPortEntry {
    std::int16_t number = 0;
    std::string path;          ///< as held in the settings
    std::string device;        ///< the device node behind the path; "" where there is none now
    std::string maker;         ///< maker and product, as far as the device tells
    std::string serialNumber;  ///< "" where the device has none

    [[nodiscard]] bool isPresent() const { return !device.empty(); }
    [[nodiscard]] std::string name() const { return "COM" + std::to_string(number); }
};

class SerialPorts final : public SerialPortList {
 public:
    static constexpr const char* kSection = "Serial Ports";
    /// Two digits: what the settings form can keep of a number.
    static constexpr std::int16_t kHighestNumber = 99;

    /// @param root  folder that holds "dev" and "sys"; another one for tests
    explicit SerialPorts(Settings& settings, std::filesystem::path root = "/");

    /// Looks for devices, gives the lowest free number to each that has none, and lists all numbers in their order,
    /// those too whose device isn't there now.
    std::vector<SerialPortEntry> entries();
    [[nodiscard]] std::vector<SerialPortName> names() override;

    /// The device path of a number, "" where it stands for none.
    [[nodiscard]] std::string pathOf(std::int16_t number);
    /// Any path can be given to a number, a pseudo-terminal's too. False: the number is none of 1..99, or no path.
    bool map(std::int16_t number, const std::string& path);
    /// False: the number stood for nothing.
    bool unmap(std::int16_t number);
    /// Nothing where all numbers are taken.
    [[nodiscard]] std::optional<std::int16_t> lowestFreeNumber() const;

    /// The number in a port's name: 7 for "COM7" and for "com7"; nothing where the text is no such name.
    [[nodiscard]] static std::optional<std::int16_t> numberOf(std::string_view name);

 private:
    struct Device;

    [[nodiscard]] std::vector<Device> devices() const;
    [[nodiscard]] std::string stableNameOf(const Device& device) const;
    void numberNewDevices(const std::vector<Device>& found);
    [[nodiscard]] std::vector<SerialPortEntry> mapped() const;

    Settings& settings_;
    std::filesystem::path root_;
};

}  // namespace qrv
