#include "link/CommSettings.h"

#include <cstdint>
#include <string>

#include "platform/Numerals.h"
#include "platform/RunTimeError.h"
#include "platform/Settings.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr const char* kSection = "Communication Settings";
constexpr const char* kCommPort = "CommPort";
constexpr const char* kBaudRate = "BaudRate";
constexpr const char* kParity = "Parity";

/// Raises as any number that is none, and tells which setting it is and where: only a person can have written it.
std::int16_t portNumber(const Settings& settings) {
    const std::string text = settings.get(kSection, kCommPort, "1");
    try {
        return int16From(text);
    } catch (const RunTimeError& error) {
        throw RunTimeError(error.number(), error.description() + "\n\n" + kCommPort + "=" + text +
                                               "\nis no number of a port, in section \"" + kSection + "\" of\n" +
                                               settings.place());
    }
}

}  // namespace

void readCommSettings(Workbench& workbench) {
    const Settings& settings = workbench.platform.settings;
    workbench.comm_port = portNumber(settings);
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
