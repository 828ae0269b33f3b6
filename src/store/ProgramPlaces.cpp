#include "store/ProgramPlaces.h"

#include "platform/Folders.h"

namespace qrv {

namespace {

constexpr const char* kCatalogueFile = "QRVDATA.DAT";

/// What can't be made is told by whoever writes there.
std::string made(std::string folder) {
    static_cast<void>(makeFolder(folder));
    return folder;
}

}  // namespace

ProgramPlaces findProgramPlaces() {
    const std::string program = executableFolder();
    const std::string catalogue = sharedFolder(program, kCatalogueFile);
    const bool isInstalled = catalogue != program;
    // Installed, the program's folder is the system's, and not even root's work belongs there.
    const std::string work = isInstalled ? stateFolder(systemEnvironment) : workFolder(program, systemEnvironment);
    return {.work = made(work), .catalogue = catalogue, .backups = backupsFolder(systemEnvironment)};
}

}  // namespace qrv
