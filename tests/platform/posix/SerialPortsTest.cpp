#include "platform/posix/SerialPorts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "platform/Settings.h"
#include "twins/MemorySettings.h"
#include "twins/TemporaryFolder.h"

namespace fs = std::filesystem;

namespace qrv::test {
namespace {

/// A machine of files: its devices, and what the system tells of them.
class Machine {
 public:
    Machine() {
        fs::create_directories(root_ / "dev/serial/by-id");
        fs::create_directories(root_ / "dev/serial/by-path");
        fs::create_directories(root_ / "sys/class/tty");
    }

    [[nodiscard]] const fs::path& root() const { return root_; }
    [[nodiscard]] std::string at(const std::string& path) const { return (root_ / path).string(); }

    void addNode(const std::string& name) const { write(root_ / "dev" / name, ""); }
    /// A USB adapter; an empty serial number leaves the adapter without one.
    void addAdapter(const std::string& name, const std::string& serialNumber, const std::string& socket) const {
        addNode(name);
        const fs::path device = root_ / "sys/devices/usb1" / socket;
        const fs::path interface = device / (socket + ":1.0") / name;
        fs::create_directories(interface);
        write(device / "idVendor", "0403\n");
        write(device / "manufacturer", "Adapters Inc.\n");
        write(device / "product", "USB Serial\n");
        if (!serialNumber.empty()) write(device / "serial", serialNumber + "\n");
        fs::create_directories(root_ / "sys/class/tty" / name);
        fs::create_directory_symlink(interface, root_ / "sys/class/tty" / name / "device");
        relink("by-id", "usb-Adapters_Inc._USB_Serial" + (serialNumber.empty() ? "" : "_" + serialNumber), name);
        relink("by-path", "pci-usb-" + socket, name);
    }
    void removeAdapter(const std::string& name, const std::string& serialNumber, const std::string& socket) const {
        fs::remove(root_ / "dev" / name);
        fs::remove_all(root_ / "sys/devices/usb1" / socket);
        fs::remove_all(root_ / "sys/class/tty" / name);
        fs::remove(root_ / "dev/serial/by-id" / ("usb-Adapters_Inc._USB_Serial_" + serialNumber));
        fs::remove(root_ / "dev/serial/by-path" / ("pci-usb-" + socket));
    }
    void addBuiltIn(const std::string& name, const std::string& type) const {
        addNode(name);
        const fs::path description = root_ / "sys/class/tty" / name;
        fs::create_directories(description / "device");
        write(description / "type", type + "\n");
    }

 private:
    static void write(const fs::path& file, const std::string& text) { std::ofstream(file) << text; }
    void relink(const std::string& folder, const std::string& link, const std::string& name) const {
        const fs::path path = root_ / "dev/serial" / folder / link;
        fs::remove(path);
        fs::create_symlink("../../" + name, path);
    }

    TemporaryFolder folder_;
    fs::path root_ = folder_.path();
};

struct PortsRig {
    Machine machine;
    MemorySettings settings;
    SerialPorts ports{settings, machine.root()};

    std::map<int, std::string> paths() {
        std::map<int, std::string> found;
        for (const SerialPortEntry& entry : ports.entries()) found[entry.number] = entry.path;
        return found;
    }
};

using Paths = std::map<int, std::string>;

TEST(SerialPorts, AMachineWithoutPortsHasNoNames) {
    PortsRig rig;
    EXPECT_TRUE(rig.ports.entries().empty());
    EXPECT_TRUE(rig.ports.names().empty());
    EXPECT_EQ(rig.ports.pathOf(1), "");
}

TEST(SerialPorts, AnAdapterIsKnownByItsSerialNumber) {
    PortsRig rig;
    rig.machine.addAdapter("ttyUSB0", "A1", "1-1");
    EXPECT_EQ(rig.paths(), (Paths{{1, rig.machine.at("dev/serial/by-id/usb-Adapters_Inc._USB_Serial_A1")}}));
    EXPECT_EQ(rig.settings.get("Serial Ports", "COM1", ""),
              rig.machine.at("dev/serial/by-id/usb-Adapters_Inc._USB_Serial_A1"));
}

TEST(SerialPorts, AdaptersWithoutSerialNumberAreKnownByTheirSockets) {
    PortsRig rig;
    rig.machine.addAdapter("ttyUSB0", "", "1-1");
    rig.machine.addAdapter("ttyUSB1", "", "1-2");
    EXPECT_EQ(rig.paths(), (Paths{{1, rig.machine.at("dev/serial/by-path/pci-usb-1-1")},
                                  {2, rig.machine.at("dev/serial/by-path/pci-usb-1-2")}}));
}

TEST(SerialPorts, ABuiltInPortIsKnownByItsNodeAndAPhantomNotAtAll) {
    PortsRig rig;
    rig.machine.addBuiltIn("ttyS0", "4");
    rig.machine.addBuiltIn("ttyS1", "0");
    rig.machine.addNode("tty0");
    rig.machine.addNode("null");
    EXPECT_EQ(rig.paths(), (Paths{{1, rig.machine.at("dev/ttyS0")}}));
}

TEST(SerialPorts, AnAdapterKeepsItsNumberWhateverTheSystemCallsIt) {
    PortsRig rig;
    rig.machine.addAdapter("ttyUSB0", "A1", "1-1");
    rig.machine.addAdapter("ttyUSB1", "B2", "1-2");
    const Paths first = rig.paths();
    rig.machine.removeAdapter("ttyUSB0", "A1", "1-1");
    rig.machine.removeAdapter("ttyUSB1", "B2", "1-2");
    rig.machine.addAdapter("ttyUSB0", "B2", "1-3");
    rig.machine.addAdapter("ttyUSB1", "A1", "1-4");
    EXPECT_EQ(rig.paths(), first);
}

TEST(SerialPorts, AnAbsentAdapterKeepsItsNumberAndANewOneTakesTheLowestFree) {
    PortsRig rig;
    rig.machine.addAdapter("ttyUSB0", "A1", "1-1");
    EXPECT_EQ(rig.paths().size(), 1U);
    EXPECT_TRUE(rig.ports.map(3, "/somewhere"));
    rig.machine.removeAdapter("ttyUSB0", "A1", "1-1");
    rig.machine.addAdapter("ttyUSB0", "B2", "1-1");
    rig.machine.addAdapter("ttyUSB1", "C3", "1-2");
    const Paths paths = rig.paths();
    EXPECT_EQ(paths.at(1), rig.machine.at("dev/serial/by-id/usb-Adapters_Inc._USB_Serial_A1"));
    EXPECT_EQ(paths.at(2), rig.machine.at("dev/serial/by-id/usb-Adapters_Inc._USB_Serial_B2"));
    EXPECT_EQ(paths.at(4), rig.machine.at("dev/serial/by-id/usb-Adapters_Inc._USB_Serial_C3"));
}

TEST(SerialPorts, OnlyPortsThatAreThereAreOffered) {
    PortsRig rig;
    rig.machine.addNode("pts7");
    EXPECT_TRUE(rig.ports.map(9, "/not/there"));
    EXPECT_TRUE(rig.ports.map(7, rig.machine.at("dev/pts7")));
    const auto names = rig.ports.names();
    ASSERT_EQ(names.size(), 1U);
    EXPECT_EQ(names[0].name, "COM7");
    EXPECT_EQ(names[0].toolTip, rig.machine.at("dev/pts7"));
    EXPECT_EQ(rig.ports.entries().size(), 2U);
}

TEST(SerialPorts, AToolTipTellsMakerSerialNumberAndDevice) {
    PortsRig rig;
    rig.machine.addAdapter("ttyUSB0", "A1", "1-1");
    rig.machine.addAdapter("ttyUSB1", "", "1-2");
    const auto names = rig.ports.names();
    ASSERT_EQ(names.size(), 2U);
    EXPECT_EQ(names[0].toolTip, "Adapters Inc. USB Serial, serial number A1, " + rig.machine.at("dev/ttyUSB0"));
    EXPECT_EQ(names[1].toolTip, "Adapters Inc. USB Serial, " + rig.machine.at("dev/ttyUSB1"));
}

TEST(SerialPorts, ADeviceMappedByHandGetsNoSecondNumber) {
    PortsRig rig;
    rig.machine.addAdapter("ttyUSB0", "A1", "1-1");
    EXPECT_TRUE(rig.ports.map(5, rig.machine.at("dev/ttyUSB0")));
    EXPECT_EQ(rig.paths(), (Paths{{5, rig.machine.at("dev/ttyUSB0")}}));
}

TEST(SerialPorts, AskingForAPathNumbersANewAdapterFirst) {
    PortsRig rig;
    rig.machine.addAdapter("ttyACM0", "A1", "1-1");
    EXPECT_EQ(rig.ports.pathOf(1), rig.machine.at("dev/serial/by-id/usb-Adapters_Inc._USB_Serial_A1"));
}

TEST(SerialPorts, UnmappingFreesTheNumber) {
    PortsRig rig;
    EXPECT_TRUE(rig.ports.map(1, "/a"));
    EXPECT_EQ(rig.ports.lowestFreeNumber(), 2);
    EXPECT_TRUE(rig.ports.unmap(1));
    EXPECT_FALSE(rig.ports.unmap(1));
    EXPECT_EQ(rig.ports.lowestFreeNumber(), 1);
}

TEST(SerialPorts, ANumberHasTwoDigits) {
    PortsRig rig;
    EXPECT_FALSE(rig.ports.map(0, "/a"));
    EXPECT_FALSE(rig.ports.map(100, "/a"));
    EXPECT_FALSE(rig.ports.map(1, ""));
    EXPECT_TRUE(rig.ports.map(99, "/a"));
    for (std::int16_t number = 1; number < 99; ++number) ASSERT_TRUE(rig.ports.map(number, "/b"));
    EXPECT_EQ(rig.ports.lowestFreeNumber(), std::nullopt);
}

TEST(SerialPorts, ReadsTheNumberInAName) {
    EXPECT_EQ(SerialPorts::numberOf("COM7"), 7);
    EXPECT_EQ(SerialPorts::numberOf("com12"), 12);
    for (const char* name : {"", "COM", "COM0", "COM-1", "COM7x", "LPT1", "COM99999"}) {
        EXPECT_EQ(SerialPorts::numberOf(name), std::nullopt) << name;
    }
}

}  // namespace
}  // namespace qrv::test
