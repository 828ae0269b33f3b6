#include "platform/Folders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/Files.h"
#include "platform/Paths.h"

namespace qrv {

namespace {

constexpr const char* kProgramName = "QRV_Edit";

/// A folder of the user's that a variable may move; a relative path in it does not count.
std::string userFolder(const Environment& environment, const char* variable, const char* belowHome) {
    const std::string moved = environment(variable);
    if (moved.starts_with('/')) return withoutEndSeparator(moved);
    return joinedPath(homeFolder(environment), belowHome);
}

bool canBeWritten(const std::string& folder) { return ::access(folder.c_str(), W_OK | X_OK) == 0; }

}  // namespace

std::string systemEnvironment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? "" : value;
}

std::string executableFolder() {
    std::error_code fault;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", fault);
    return fault ? std::filesystem::current_path(fault).string() : program.parent_path().string();
}

std::string homeFolder(const Environment& environment) {
    const std::string home = environment("HOME");
    if (home.starts_with('/')) return withoutEndSeparator(home);
    const passwd* user = ::getpwuid(::getuid());
    return user == nullptr ? "/" : user->pw_dir;
}

std::string stateFolder(const Environment& environment) {
    return joinedPath(userFolder(environment, "XDG_STATE_HOME", ".local/state"), kProgramName);
}

std::string backupsFolder(const Environment& environment) { return joinedPath(stateFolder(environment), "backups"); }

std::string workFolder(const std::string& programFolder, const Environment& environment) {
    return canBeWritten(programFolder) ? programFolder : stateFolder(environment);
}

std::string sharedFolder(const std::string& programFolder, const std::string& fileName) {
    if (exists(joinedPath(programFolder, fileName))) return programFolder;
    const std::string installed =
        std::filesystem::path(joinedPath(programFolder, "../share/qrv_edit")).lexically_normal().string();
    return exists(joinedPath(installed, fileName)) ? installed : programFolder;
}

std::string settingsFile(const Environment& environment) {
    const std::string moved = environment("QRV_SETTINGS");
    if (!moved.empty()) return absolutePath(moved);
    const std::string folder = joinedPath(userFolder(environment, "XDG_CONFIG_HOME", ".config"), kProgramName);
    return joinedPath(folder, "settings.ini");
}

std::string temporaryFolder(const Environment& environment) {
    for (const char* variable : {"TEMP", "TMPDIR"}) {
        const std::string folder = environment(variable);
        if (!folder.empty()) return withoutEndSeparator(folder);
    }
    return "/tmp";
}

std::vector<std::string> logFolders(const Environment& environment) {
    return {temporaryFolder(environment), stateFolder(environment)};
}

void provideTemp() {
    constexpr int kKeepsAValue = 0;
    if (systemEnvironment("TEMP").empty()) ::unsetenv("TEMP");
    ::setenv("TEMP", temporaryFolder(systemEnvironment).c_str(), kKeepsAValue);
}

bool makeFolder(const std::string& folder) {
    if (::mkdir(folder.c_str(), S_IRWXU) == 0) return true;
    if (errno == ENOENT) {
        const std::string above = std::filesystem::path(folder).parent_path().string();
        return !above.empty() && above != folder && makeFolder(above) && ::mkdir(folder.c_str(), S_IRWXU) == 0;
    }
    std::error_code fault;
    return std::filesystem::is_directory(folder, fault);
}

}  // namespace qrv
