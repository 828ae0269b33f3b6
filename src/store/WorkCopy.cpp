#include "store/WorkCopy.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace qrv {

namespace {

// In the header of the engine's files: where the versions of writing and reading stand, and what they say.
constexpr std::streamoff kVersionsAt = 18;
constexpr std::array<char, 2> kWriteAhead{2, 2};
constexpr std::array<char, 2> kRollback{1, 1};

bool isInWriteAheadMode(const std::string& workFile) {
    std::array<char, 2> versions{};
    std::ifstream file(workFile, std::ios::binary);
    return file.seekg(kVersionsAt) && file.read(versions.data(), versions.size()) && versions == kWriteAhead;
}

bool leaveWriteAheadMode(const std::string& workFile) {
    const WritableForNow writable(workFile);
    std::fstream file(workFile, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(kVersionsAt);
    file.write(kRollback.data(), kRollback.size());
    file.close();
    return file.good();
}

/// The log stands beside the file itself, not beside a link to it.
std::string logOf(const std::string& path) {
    std::error_code fault;
    const std::filesystem::path meant = std::filesystem::canonical(path, fault);
    return (fault ? path : meant.string()) + "-wal";
}

bool holdsChanges(const std::string& log) {
    std::error_code fault;
    const auto byteCount = std::filesystem::file_size(log, fault);
    return !fault && byteCount > 0;
}

}  // namespace

WritableForNow::WritableForNow(const std::string& path) : path_(path), was_(isReadOnly(path)) {
    if (was_) static_cast<void>(setReadOnly(path_, false));
}

WritableForNow::~WritableForNow() {
    if (was_) static_cast<void>(setReadOnly(path_, true));
}

FileResult copyToWorkFile(const std::string& path, const std::string& workFile) {
    if (FileResult fault = copyFile(path, workFile, Permissions::OwnerOnly, Durability::Unflushed)) return fault;
    if (!isInWriteAheadMode(workFile)) return {};
    const std::string log = logOf(path);
    if (holdsChanges(log)) return FileFault{EBUSY, "changes that another program made still wait in " + log};
    if (leaveWriteAheadMode(workFile)) return {};
    return FileFault{EIO, "its copy could not be written"};
}

}  // namespace qrv
