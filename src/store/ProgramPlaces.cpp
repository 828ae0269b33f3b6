#include "store/ProgramPlaces.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/Files.h"
#include "platform/Paths.h"

namespace qrv {

namespace {

namespace fs = std::filesystem;

constexpr const char* kApplication = "QRV_Edit";
constexpr const char* kCatalogueFile = "QRVDATA.DAT";

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string{} : std::string(value);
}

std::string executableFolder() {
    std::error_code failed;
    const fs::path executable = fs::read_symlink("/proc/self/exe", failed);
    return failed ? fs::current_path(failed).string() : executable.parent_path().string();
}

/// Makes the folder and those above it; what can't be made is told by whoever writes there.
std::string made(const std::string& folder) {
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    return folder;
}

std::string catalogueFolder(const std::string& executable) {
    if (exists(joinedPath(executable, kCatalogueFile))) return executable;
    const std::string shared = joinedPath(fs::path(executable).parent_path().string(), "share/qrv_edit");
    return exists(joinedPath(shared, kCatalogueFile)) ? shared : executable;
}

}  // namespace

std::string stateFolder() {
    const std::string state = environment("XDG_STATE_HOME");
    // By the rule of that variable a relative path counts as none.
    if (state.starts_with('/')) return joinedPath(state, kApplication);
    return joinedPath(joinedPath(environment("HOME"), ".local/state"), kApplication);
}

ProgramPlaces findProgramPlaces() {
    const std::string executable = executableFolder();
    const bool mayWrite = access(executable.c_str(), W_OK) == 0;
    return {.work = mayWrite ? executable : made(stateFolder()),
            .catalogue = catalogueFolder(executable),
            .backups = joinedPath(stateFolder(), "backups")};
}

}  // namespace qrv
