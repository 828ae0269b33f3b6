#include "platform/Files.h"

#include <sys/stat.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <memory>

#include "platform/Paths.h"
#include "platform/RunTimeError.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/Replacement.h"

namespace qrv {

namespace {

constexpr std::size_t kBufferBytes = 256 * 1024;
constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;
constexpr mode_t kPrivate = S_IRUSR | S_IWUSR;
constexpr unsigned kTemporaryNames = 0x10000;

/// A plain file opened to be read.
struct Source {
    Descriptor descriptor;
    mode_t mode = 0;
    FileResult fault;
};

FileResult faultOfKind(mode_t mode, const std::string& path) {
    if (S_ISREG(mode)) return {};
    return faultOf(S_ISDIR(mode) ? EISDIR : EINVAL, "read", path);
}

Source openSource(const std::string& path) {
    Source source;
    struct stat state {};
    // Looked at before it is opened: opening alone moves some devices.
    if (::stat(path.c_str(), &state) < 0) {
        source.fault = lastFault("open", path);
        return source;
    }
    source.fault = faultOfKind(state.st_mode, path);
    if (source.fault) return source;
    constexpr int kFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    source.descriptor = Descriptor(uninterrupted([&] { return ::open(path.c_str(), kFlags); }));
    if (!source.descriptor.isOpen() || ::fstat(source.descriptor.number(), &state) < 0) {
        source.fault = lastFault("open", path);
        return source;
    }
    source.fault = faultOfKind(state.st_mode, path);
    source.mode = state.st_mode & kPermissionBits;
    return source;
}

/// Hands the file to `take`, piece by piece, until its end or the first fault.
template <typename Take>
FileResult readPieces(const Source& source, const std::string& path, Take take) {
    const auto buffer = std::make_unique<std::array<char, kBufferBytes>>();
    while (true) {
        const ssize_t count =
            uninterrupted([&] { return ::read(source.descriptor.number(), buffer->data(), buffer->size()); });
        if (count < 0) return lastFault("read", path);
        if (count == 0) return {};
        if (FileResult fault = take(std::string_view(buffer->data(), static_cast<std::size_t>(count)))) return fault;
    }
}

/// Begins the replacement and gives it the content of `from`.
FileResult copyInto(Replacement& replacement, const std::string& from, mode_t& sourceMode) {
    const Source source = openSource(from);
    if (source.fault) return source.fault;
    sourceMode = source.mode;
    if (FileResult fault = replacement.begin()) return fault;
    return readPieces(source, from, [&](std::string_view bytes) { return replacement.write(bytes); });
}

mode_t modeOfNewFile(mode_t sourceMode) {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    const mode_t usual = static_cast<mode_t>(0666) & ~mask;
    return (sourceMode & S_IWUSR) != 0 ? usual : usual & ~kWriteBits;
}

mode_t modeOf(NewFile newFile, mode_t sourceMode) {
    return newFile == NewFile::Private ? kPrivate : modeOfNewFile(sourceMode);
}

/// Begins the replacement and gives it these bytes.
FileResult writeInto(Replacement& replacement, std::string_view bytes) {
    if (FileResult fault = replacement.begin()) return fault;
    return replacement.write(bytes);
}

mode_t modeOfCopy(Permissions permissions, mode_t sourceMode, const std::optional<mode_t>& targetMode) {
    switch (permissions) {
        case Permissions::OfSource: return sourceMode;
        case Permissions::OwnerOnly: return sourceMode & S_IRWXU;
        case Permissions::OfTarget: break;
    }
    return targetMode ? *targetMode : modeOfNewFile(sourceMode);
}

std::string hexadecimal(unsigned number) {
    std::array<char, 8> digits{};
    std::snprintf(digits.data(), digits.size(), "%04X", number);
    return digits.data();
}

}  // namespace

FileResult copyFile(const std::string& from, const std::string& to, Permissions permissions, Durability durability) {
    Replacement replacement(to);
    mode_t sourceMode = 0;
    if (FileResult fault = copyInto(replacement, from, sourceMode)) return fault;
    return replacement.commit(modeOfCopy(permissions, sourceMode, replacement.targetMode()), durability);
}

FileResult copyToNewFile(const std::string& from, const std::string& to, NewFile newFile) {
    Replacement replacement(to);
    mode_t sourceMode = 0;
    if (FileResult fault = copyInto(replacement, from, sourceMode)) return fault;
    return replacement.commitAsNew(modeOf(newFile, sourceMode));
}

FileResult writeWholeAtOnce(const std::string& path, std::string_view bytes, NewFile newFile) {
    Replacement replacement(path);
    if (FileResult fault = writeInto(replacement, bytes)) return fault;
    return replacement.commit(replacement.targetMode().value_or(modeOf(newFile, kPrivate)), Durability::Flushed);
}

FileResult writeNewFile(const std::string& path, std::string_view bytes, NewFile newFile) {
    Replacement replacement(path);
    if (FileResult fault = writeInto(replacement, bytes)) return fault;
    return replacement.commitAsNew(modeOf(newFile, kPrivate));
}

FileResult makeEmptyOwnFile(const std::string& path) {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const Descriptor file(
        uninterrupted([&] { return ::open(path.c_str(), kFlags, S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH); }));
    struct stat state {};
    if (!file.isOpen() || ::fstat(file.number(), &state) < 0) return lastFault("write", path);
    if (!S_ISREG(state.st_mode) || state.st_nlink != 1) return faultOf(EINVAL, "write", path);
    if (state.st_uid != ::geteuid()) return faultOf(EPERM, "write", path);
    return uninterrupted([&] { return ::ftruncate(file.number(), 0); }) == 0 ? FileResult{} : lastFault("write", path);
}

FileContent readWhole(const std::string& path, std::size_t limit) {
    FileContent content;
    const Source source = openSource(path);
    content.fault = source.fault;
    if (content.fault) return content;
    content.fault = readPieces(source, path, [&](std::string_view bytes) -> FileResult {
        if (bytes.size() > limit - content.bytes.size()) return faultOf(EFBIG, "read", path);
        content.bytes += bytes;
        return {};
    });
    if (content.fault) content.bytes.clear();
    return content;
}

bool exists(const std::string& path) {
    struct stat state {};
    return ::stat(path.c_str(), &state) == 0;
}

bool isReadOnly(const std::string& path) {
    struct stat state {};
    return ::stat(path.c_str(), &state) == 0 && (state.st_mode & S_IWUSR) == 0;
}

std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat state {};
    if (::stat(path.c_str(), &state) < 0) return std::nullopt;
    return FileIdentity{
        .device = state.st_dev,
        .number = state.st_ino,
        .byteCount = state.st_size,
        .lastWrite = std::chrono::seconds(state.st_mtim.tv_sec) + std::chrono::nanoseconds(state.st_mtim.tv_nsec)};
}

FileResult setReadOnly(const std::string& path, bool readOnly) {
    struct stat state {};
    if (::stat(path.c_str(), &state) < 0) return lastFault("look at", path);
    const mode_t mode = state.st_mode & kPermissionBits;
    const mode_t wanted = readOnly ? mode & ~kWriteBits : mode | S_IWUSR;
    return ::chmod(path.c_str(), wanted) == 0 ? FileResult{} : lastFault("set the permissions of", path);
}

FileResult removeFile(const std::string& path) {
    return ::unlink(path.c_str()) == 0 ? FileResult{} : lastFault("delete", path);
}

std::optional<FileTime> lastWriteTime(const std::string& path) {
    struct stat state {};
    if (::stat(path.c_str(), &state) < 0) return std::nullopt;
    const auto sinceEpoch =
        std::chrono::seconds(state.st_mtim.tv_sec) + std::chrono::nanoseconds(state.st_mtim.tv_nsec);
    return FileTime(std::chrono::duration_cast<FileTime::duration>(sinceEpoch));
}

FileResult setFileTimes(const std::string& path, FileTime time) {
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    timespec stamp{};
    stamp.tv_sec = whole.time_since_epoch().count();
    stamp.tv_nsec = std::chrono::duration_cast<std::chrono::nanoseconds>(time - whole).count();
    const std::array stamps{stamp, stamp};
    const bool isSet = ::utimensat(AT_FDCWD, path.c_str(), stamps.data(), 0) == 0;
    return isSet ? FileResult{} : lastFault("set the times of", path);
}

std::string makeTemporaryName(const std::string& folder, std::string_view prefix, const std::string& unlike) {
    const std::string lastName = fileNameOf(unlike);
    const unsigned start = randomNumber();
    for (unsigned i = 0; i < kTemporaryNames; ++i) {
        const std::string name = std::string(prefix) + hexadecimal((start + i) % kTemporaryNames) + ".TMP";
        if (name == lastName) continue;
        const std::string path = joinedPath(folder, name);
        constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        const Descriptor made(uninterrupted([&] { return ::open(path.c_str(), kFlags, kPrivate); }));
        if (made.isOpen()) return path;
        if (errno != EEXIST) break;
    }
    throw RunTimeError(ErrorNumber::PathAccessError);
}

}  // namespace qrv
