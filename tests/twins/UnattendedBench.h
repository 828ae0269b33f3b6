// A workbench of a program that runs a session by itself: every question is answered Yes, every file name is known
// beforehand. For probes that are killed or starved from outside, and so without the test library.
#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "platform/FileDialog.h"
#include "platform/MessageBox.h"
#include "platform/Platform.h"
#include "platform/Unattended.h"
#include "store/Workbench.h"
#include "twins/FalseClock.h"
#include "twins/MemorySettings.h"
#include "twins/NoPort.h"

namespace qrv {

class AgreeingBox final : public MessageBox {
 public:
    Answer ask(const Notice& notice) override {
        return isAmong(Answer::Yes, notice.buttons) ? Answer::Yes : Answer::Ok;
    }
};

class KnownFile final : public FileDialog {
 public:
    std::string ask(const FileQuestion&) override { return name; }
    std::string name;
};

struct UnattendedBench {
    /// @param folder  takes the work files ("work") and the copies of unsaved work ("kept")
    explicit UnattendedBench(const std::string& folder)
        : bench(Platform{box, dialog, host, settings, clock, pump, port},
                ProgramPlaces{.work = folder + "/work", .catalogue = folder, .backups = folder + "/kept"}) {
        std::filesystem::create_directories(bench.places.work);
    }

    AgreeingBox box;
    KnownFile dialog;
    NoFormHost host;
    MemorySettings settings;
    FalseClock clock;
    FalsePump pump{clock};
    NoPort port;
    Workbench bench;
};

}  // namespace qrv
