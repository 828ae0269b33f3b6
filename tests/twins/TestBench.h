// A whole machine for a test: every service a twin, a workbench on top, folders of its own.
#pragma once

#include <filesystem>
#include <string>

#include "platform/Platform.h"
#include "store/Workbench.h"
#include "twins/FalseClock.h"
#include "twins/MemorySettings.h"
#include "twins/NoPort.h"
#include "twins/ScriptedBox.h"
#include "twins/ScriptedFileDialog.h"
#include "twins/ScriptedHost.h"
#include "twins/TemporaryFolder.h"

namespace qrv {

struct TestBench {
    /// @param port  a port of the test's own, or null for a machine without one
    explicit TestBench(SerialPort* port = nullptr)
        : bench(
              Platform{boxes, dialogs, host, settings, clock, pump, port == nullptr ? noPort : *port},
              ProgramPlaces{.work = made("work"), .catalogue = QRV_CATALOGUE_FOLDER, .backups = folder.file("kept")}) {}

    /// Makes a folder under the test's own and gives its path.
    std::string made(const std::string& name) {
        std::filesystem::create_directories(folder.file(name));
        return folder.file(name);
    }
    /// A path in the test's own folder.
    [[nodiscard]] std::string path(const std::string& name) const { return folder.file(name); }

    TemporaryFolder folder;
    ScriptedBox boxes;
    ScriptedFileDialog dialogs;
    ScriptedHost host;
    MemorySettings settings;
    FalseClock clock;
    FalsePump pump{clock};
    NoPort noPort;
    Workbench bench;
};

}  // namespace qrv
