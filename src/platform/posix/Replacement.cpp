#include "platform/posix/Replacement.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace qrv {

namespace {

constexpr int kMostLinks = 40;
constexpr int kMostNames = 100;

/// Where the chain of symbolic links that begins at `path` ends; the end need not exist.
std::string endOfLinks(const std::string& path) {
    std::filesystem::path end = path;
    for (int i = 0; i < kMostLinks; ++i) {
        std::error_code fault;
        if (!std::filesystem::is_symlink(end, fault)) break;
        const std::filesystem::path next = std::filesystem::read_symlink(end, fault);
        if (fault) break;
        end = next.is_absolute() ? next : end.parent_path() / next;
    }
    return end.string();
}

std::string systemFolderOf(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

/// Moves the file unless something is at `to`. False with errno set.
bool moveToFreePlace(const std::string& from, const std::string& to) {
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
#endif
    // A file system that doesn't know the flag. A second name can't be given where there is one either.
    if (::link(from.c_str(), to.c_str()) == 0) {
        ::unlink(from.c_str());
        return true;
    }
    // Nor does every one know second names; there a look is all that can be done.
    struct stat state {};
    if (errno == EEXIST || ::lstat(to.c_str(), &state) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace

std::uint32_t randomNumber() {
    std::uint32_t number = 0;
    if (::getentropy(&number, sizeof number) == 0) return number;
    // Names only need to differ: each is made exclusively.
    return static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}

FileResult faultOf(int code, const char* operation, const std::string& path) {
    const std::string words = std::generic_category().message(code);
    return FileFault{code, std::string("cannot ") + operation + " " + path + ": " + words};
}

FileResult lastFault(const char* operation, const std::string& path) { return faultOf(errno, operation, path); }

Replacement::Replacement(const std::string& path) : target_(endOfLinks(path)), folder_(systemFolderOf(target_)) {}

Replacement::~Replacement() {
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

FileResult Replacement::inspectTarget() {
    struct stat state {};
    if (uninterrupted([&] { return ::lstat(target_.c_str(), &state); }) < 0) {
        return errno == ENOENT ? FileResult{} : lastFault("look at", target_);
    }
    if (S_ISDIR(state.st_mode)) return faultOf(EISDIR, "replace", target_);
    if (S_ISLNK(state.st_mode)) return faultOf(ELOOP, "replace", target_);
    if (!S_ISREG(state.st_mode)) return faultOf(EINVAL, "replace", target_);
    if ((state.st_mode & S_IWUSR) == 0) return faultOf(EACCES, "replace", target_);
    targetMode_ = state.st_mode & kPermissionBits;
    targetOwner_ = state.st_uid;
    targetGroup_ = state.st_gid;
    return {};
}

FileResult Replacement::begin() {
    if (FileResult found = inspectTarget()) return found;
    for (int i = 0; i < kMostNames; ++i) {
        const std::string name = folder_ + "/.qrv" + std::to_string(randomNumber()) + ".tmp";
        constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        descriptor_ = Descriptor(uninterrupted([&] { return ::open(name.c_str(), kFlags, S_IRUSR | S_IWUSR); }));
        if (descriptor_.isOpen()) {
            temporary_ = name;
            return {};
        }
        if (errno != EEXIST) break;
    }
    return lastFault("make a file in", folder_);
}

FileResult Replacement::write(std::string_view bytes) {
    return writeAll(descriptor_.number(), bytes) ? FileResult{} : lastFault("write", target_);
}

FileResult Replacement::flushFolder() const {
    const Descriptor folder(uninterrupted([&] { return ::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!folder.isOpen()) return lastFault("open the folder", folder_);
    const bool isFlushed = uninterrupted([&] { return ::fsync(folder.number()); }) == 0;
    // Some file systems have no flush of a folder and say so by these two.
    if (isFlushed || errno == EINVAL || errno == ENOTSUP) return {};
    return lastFault("flush the folder", folder_);
}

void Replacement::keepOwner() {
    if (targetOwner_ == ::geteuid() && targetGroup_ == ::getegid()) return;
    const int number = descriptor_.number();
    // Only the superuser may give a file away, and others only among their own groups. Where that is refused the new
    // file is simply its writer's, which takes nothing from its content.
    if (::fchown(number, targetOwner_, targetGroup_) == 0) return;
    if (::fchown(number, static_cast<uid_t>(-1), targetGroup_) == 0) return;
}

FileResult Replacement::finish(mode_t mode, Durability durability) {
    const int number = descriptor_.number();
    if (targetMode_) keepOwner();
    if (uninterrupted([&] { return ::fchmod(number, mode & kPermissionBits); }) < 0) {
        return lastFault("set the permissions of", target_);
    }
    const bool isFlushed = durability == Durability::Flushed;
    if (isFlushed && uninterrupted([&] { return ::fsync(number); }) < 0) return lastFault("flush", target_);
    return descriptor_.closeChecked() ? FileResult{} : lastFault("close", target_);
}

FileResult Replacement::commitAsNew(mode_t mode) {
    if (FileResult fault = finish(mode, Durability::Flushed)) return fault;
    if (!moveToFreePlace(temporary_, target_)) return lastFault("put in place", target_);
    temporary_.clear();
    return flushFolder();
}

FileResult Replacement::commit(mode_t mode, Durability durability) {
    if (FileResult fault = finish(mode, durability)) return fault;
    if (uninterrupted([&] { return std::rename(temporary_.c_str(), target_.c_str()); }) < 0) {
        return lastFault("put in place", target_);
    }
    temporary_.clear();
    return durability == Durability::Flushed ? flushFolder() : FileResult{};
}

}  // namespace qrv
