#include "link/CommSettings.h"

#include "platform/Numerals.h"
#include "platform/Settings.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr const char* kSection = "Communication Settings";
constexpr const char* kCommPort = "CommPort";
constexpr const char* kBaudRate = "BaudRate";
constexpr const char* kParity = "Parity";

}  // namespace

void readCommSettings(Workbench& workbench) {
    const Settings& settings = workbench.platform.settings;
    workbench.comm_port = int16From(settings.get(kSection, kCommPort, "1"));
    workbench.baud_rate = settings.get(kSection, kBaudRate, "38400");
    workbench.parity = settings.get(kSection, kParity, "O");
}

void writeCommSettings(const Workbench& workbench) {
    Settings& settings = workbench.platform.settings;
    settings.save(kSection, kCommPort, joined(workbench.comm_port));
    settings.save(kSection, kBaudRate, workbench.baud_rate);
    settings.save(kSection, kParity, workbench.parity);
}

}  // namespace qrv
