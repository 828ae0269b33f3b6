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
    return {.work = made(workFolder(program, systemEnvironment)),
            .catalogue = sharedFolder(program, kCatalogueFile),
            .backups = backupsFolder(systemEnvironment)};
}

}  // namespace qrv
