#include "platform/posix/SerialPorts.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/Settings.h"

namespace fs = std::filesystem;

namespace qrv {

struct SerialPorts::Device {
    fs::path node;
    std::string maker;
    std::string serialNumber;
};

namespace {

/// Beginnings of the names that serial devices have.
constexpr std::array<std::string_view, 8> kDeviceNames{"ttyS",   "ttyUSB", "ttyACM", "ttyAMA",
                                                       "ttymxc", "ttyO",   "ttySC",  "rfcomm"};

bool hasSerialName(std::string_view name) {
    return std::ranges::any_of(kDeviceNames, [name](std::string_view beginning) {
        return name.starts_with(beginning) && name.size() > beginning.size() &&
               std::isdigit(static_cast<unsigned char>(name[beginning.size()])) != 0;
    });
}

std::string firstLineOf(const fs::path& file) {
    std::string line;
    std::ifstream in(file);
    std::getline(in, line);
    while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back())) != 0) line.pop_back();
    return line;
}

std::vector<fs::path> filesOf(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (auto it = fs::directory_iterator(folder, error); !error && it != fs::directory_iterator();
         it.increment(error)) {
        files.push_back(it->path());
    }
    std::ranges::sort(files);
    return files;
}

/// The path behind all links; empty where there is nothing.
fs::path resolved(const fs::path& path) {
    std::error_code error;
    fs::path found = fs::canonical(path, error);
    return error ? fs::path() : found;
}

/// The link in `folder` that leads to `node`; empty where none does.
fs::path linkTo(const fs::path& folder, const fs::path& node) {
    const fs::path target = resolved(node);
    for (const fs::path& link : filesOf(folder)) {
        if (resolved(link) == target) return link;
    }
    return {};
}

/// Some systems list built-in ports that the machine doesn't have: these have no type, or no device behind them.
bool isPhantom(const fs::path& description) {
    std::error_code error;
    if (!fs::exists(description, error)) return false;
    if (firstLineOf(description / "type") == "0") return true;
    return !fs::exists(description / "device", error);
}

/// The folder that describes the USB device to which an interface's folder belongs; empty for other devices.
fs::path usbFolderOf(fs::path folder) {
    std::error_code error;
    for (; folder.has_relative_path(); folder = folder.parent_path()) {
        if (fs::exists(folder / "idVendor", error)) return folder;
    }
    return {};
}

std::string joined(const std::string& first, const std::string& second) {
    return first.empty() || second.empty() ? first + second : first + " " + second;
}

std::string toolTipOf(const SerialPortEntry& entry) {
    std::string text = entry.maker;
    if (!entry.serialNumber.empty())
        text += (text.empty() ? "serial number " : ", serial number ") + entry.serialNumber;
    return text.empty() ? entry.device : text + ", " + entry.device;
}

}  // namespace

SerialPorts::SerialPorts(Settings& settings, fs::path root) : settings_(settings), root_(std::move(root)) {}

std::vector<SerialPorts::Device> SerialPorts::devices() const {
    std::vector<Device> found;
    for (const fs::path& node : filesOf(root_ / "dev")) {
        const std::string name = node.filename().string();
        const fs::path description = root_ / "sys/class/tty" / name;
        if (!hasSerialName(name) || isPhantom(description)) continue;
        Device device{.node = node, .maker = {}, .serialNumber = {}};
        if (const fs::path usb = usbFolderOf(resolved(description / "device")); !usb.empty()) {
            device.maker = joined(firstLineOf(usb / "manufacturer"), firstLineOf(usb / "product"));
            device.serialNumber = firstLineOf(usb / "serial");
        }
        found.push_back(std::move(device));
    }
    return found;
}

/// Without a serial number two adapters of one make would share the name by make: there the socket tells them apart.
std::string SerialPorts::stableNameOf(const Device& device) const {
    if (!device.serialNumber.empty()) {
        if (const fs::path link = linkTo(root_ / "dev/serial/by-id", device.node); !link.empty()) return link.string();
    }
    if (const fs::path link = linkTo(root_ / "dev/serial/by-path", device.node); !link.empty()) return link.string();
    return device.node.string();
}

std::vector<SerialPortEntry> SerialPorts::mapped() const {
    std::vector<SerialPortEntry> entries;
    for (const auto& [key, path] : settings_.all(kSection)) {
        const auto number = numberOf(key);
        if (!number || path.empty()) continue;
        SerialPortEntry entry;
        entry.number = *number;
        entry.path = path;
        entry.device = resolved(path).string();
        entries.push_back(std::move(entry));
    }
    std::ranges::sort(entries, {}, &SerialPortEntry::number);
    return entries;
}

void SerialPorts::numberNewDevices(const std::vector<Device>& found) {
    const auto known = mapped();
    for (const Device& device : found) {
        const std::string node = resolved(device.node).string();
        if (std::ranges::any_of(known, [&](const SerialPortEntry& entry) { return entry.device == node; })) continue;
        if (const auto number = lowestFreeNumber()) map(*number, stableNameOf(device));
    }
}

std::vector<SerialPortEntry> SerialPorts::entries() {
    const auto found = devices();
    numberNewDevices(found);
    auto all = mapped();
    for (SerialPortEntry& entry : all) {
        const auto device = std::ranges::find_if(
            found, [&](const Device& candidate) { return resolved(candidate.node).string() == entry.device; });
        if (device == found.end()) continue;
        entry.maker = device->maker;
        entry.serialNumber = device->serialNumber;
    }
    return all;
}

std::vector<SerialPortName> SerialPorts::names() {
    std::vector<SerialPortName> present;
    for (const SerialPortEntry& entry : entries()) {
        if (entry.isPresent()) present.push_back({.name = entry.name(), .toolTip = toolTipOf(entry)});
    }
    return present;
}

std::string SerialPorts::pathOf(std::int16_t number) {
    const std::string key = "COM" + std::to_string(number);
    const std::string path = settings_.get(kSection, key, "");
    if (!path.empty()) return path;
    numberNewDevices(devices());
    return settings_.get(kSection, key, "");
}

bool SerialPorts::map(std::int16_t number, const std::string& path) {
    if (number < 1 || number > kHighestNumber || path.empty()) return false;
    settings_.save(kSection, "COM" + std::to_string(number), path);
    return true;
}

bool SerialPorts::unmap(std::int16_t number) {
    const std::string key = "COM" + std::to_string(number);
    if (settings_.get(kSection, key, "").empty()) return false;
    settings_.remove(kSection, key);
    return true;
}

std::optional<std::int16_t> SerialPorts::lowestFreeNumber() const {
    for (std::int16_t number = 1; number <= kHighestNumber; ++number) {
        if (settings_.get(kSection, "COM" + std::to_string(number), "").empty()) return number;
    }
    return std::nullopt;
}

std::optional<std::int16_t> SerialPorts::numberOf(std::string_view name) {
    constexpr std::string_view kBeginning = "COM";
    const bool begins = name.size() > kBeginning.size() &&
                        std::equal(kBeginning.begin(), kBeginning.end(), name.begin(), [](char wanted, char given) {
                            return wanted == std::toupper(static_cast<unsigned char>(given));
                        });
    if (!begins) return std::nullopt;
    std::int16_t number = 0;
    const char* end = name.data() + name.size();
    const auto [rest, error] = std::from_chars(name.data() + kBeginning.size(), end, number);
    if (error != std::errc{} || rest != end || number < 1) return std::nullopt;
    return number;
}

}  // namespace qrv
