// "Comm Port Settings": what the form shows and stores.
#include <algorithm>
#include <array>
#include <charconv>

#include "link/CommSettings.h"
#include "link/frmComm.h"
#include "platform/CodePage.h"
#include "platform/SerialPort.h"
#include "platform/SerialPortList.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

struct ParityEntry {
    const char* entry;
    const char* parity;
};

/// What is neither odd nor even is shown as the last.
constexpr std::array kParities{ParityEntry{"ODD", "O"}, ParityEntry{"EVEN", "E"}, ParityEntry{"NONE", "N"}};

constexpr std::size_t kMostNames = 256;
constexpr int kNamesWithoutList = 32;
constexpr std::string_view kPortWord = "COM";

/// The whole number that the text begins with, 0 where it begins with none.
std::int16_t leadingNumber(std::string_view text) {
    std::int16_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::int16_t numberOf(const std::string& name) {
    return leadingNumber(std::string_view(name).substr(kPortWord.size()));
}

template <typename Row, std::size_t count>
bool isRowOf(const std::array<Row, count>&, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < count;
}

}  // namespace

void frmComm::load() {
    Combo1.items.clear();
    Combo1.listIndex = -1;
    for (const BaudRate& rate : kBaudRates) {
        if (rate.entry == nullptr) continue;
        Combo1.items.emplace_back(rate.entry);
        if (trimmed(workbench_.baud_rate) == rate.baud_rate) chooseBaudRate(static_cast<int>(Combo1.items.size()) - 1);
    }
    Combo3.items.clear();
    for (const ParityEntry& row : kParities) Combo3.items.emplace_back(row.entry);
    chooseParity(workbench_.parity == "O" ? 0 : workbench_.parity == "E" ? 1 : 2);
}

void frmComm::chooseBaudRate(int index) {
    if (!isRowOf(kBaudRates, index)) return;
    if (static_cast<std::size_t>(index) < Combo1.items.size()) Combo1.listIndex = index;
    workbench_.baud_rate = kBaudRates[static_cast<std::size_t>(index)].baud_rate;
}

void frmComm::chooseParity(int index) {
    if (!isRowOf(kParities, index)) return;
    Combo3.listIndex = index;
    workbench_.parity = kParities[static_cast<std::size_t>(index)].parity;
}

/// The ports that are there, sorted as upper-case text, so that COM10 precedes COM2; without any, COM1 to COM32 as they
/// count.
std::vector<SerialPortName> frmComm::portNames() const {
    std::vector<SerialPortName> names;
    if (ports_ != nullptr) {
        for (SerialPortName& port : ports_->names()) {
            const auto start = port.name.find(kPortWord);
            if (start == std::string::npos || names.size() == kMostNames) continue;
            names.push_back({.name = port.name.substr(start), .toolTip = std::move(port.toolTip)});
        }
    }
    if (names.empty()) {
        for (int number = 1; number <= kNamesWithoutList; ++number) {
            names.push_back({.name = std::string(kPortWord) + std::to_string(number), .toolTip = {}});
        }
        return names;
    }
    std::ranges::stable_sort(names, {}, [](const SerialPortName& port) { return upperCase(port.name); });
    return names;
}

/// A port is free if it can be opened now.
bool frmComm::isAvailable(std::int16_t number) {
    SerialPort& port = workbench_.platform.serialPort;
    if (port.isOpen() || !port.open(number, portSettings())) return false;
    port.close();
    return true;
}

void frmComm::activate() {
    Combo2 = ListBox{.enabled = false};
    for (const SerialPortName& port : portNames()) {
        const std::int16_t number = numberOf(port.name);
        Combo2.items.push_back(port.name + (isAvailable(number) ? "   (Available)" : "   (In Use)"));
        Combo2.toolTips.push_back(port.toolTip);
        if (number == workbench_.comm_port) Combo2.listIndex = static_cast<int>(Combo2.items.size()) - 1;
        workbench_.platform.formHost.refresh(*this);
    }
    if (Combo2.listIndex < 0) Combo2.listIndex = 0;
    Combo2.enabled = true;
}

void frmComm::storeSettings() {
    // Without an entry the form was loaded for a transfer and never shown: the port stays.
    if (const std::string chosen = Combo2.text(); chosen.size() > kPortWord.size()) {
        // Two digits and no more: of COM123 the number 12 is kept.
        workbench_.comm_port = leadingNumber(std::string_view(chosen).substr(kPortWord.size(), 2));
    }
    writeCommSettings(workbench_);
}

void frmComm::mnuExit() {
    storeSettings();
    workbench_.platform.formHost.hide(*this);
}

}  // namespace qrv
