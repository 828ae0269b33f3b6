#include "store/Backups.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>

#include "platform/Files.h"
#include "platform/UtcText.h"

namespace qrv {

namespace {

namespace fs = std::filesystem;

constexpr const char* kNoteSuffix = ".from";  // beside each copy: the path of the file that it could not be saved to
constexpr int kMostTries = 1000;

/// The n-th name, from 1, for a copy of `original` that is made now.
std::string nameOfCopy(const fs::path& original, std::chrono::system_clock::time_point now, int n) {
    // A copy's name never begins like that of an unfinished one.
    const std::string stem = original.stem().string();
    return (stem.starts_with('.') ? "_" : "") + stem + " " + utcText(now, "%Y-%m-%d %H-%M-%S") +
           (n > 1 ? " (" + std::to_string(n) + ")" : "") + original.extension().string();
}

/// A note stands beside a copy and has none of its own; a copy may be of a file that is named like a note.
bool isNote(const fs::path& path) { return path.extension() == kNoteSuffix && !exists(path.string() + kNoteSuffix); }

/// What a program that was killed while it copied has left: never a whole copy.
bool isUnfinished(const fs::path& path) { return path.filename().string().starts_with('.'); }

std::string noteOf(const std::string& copy) {
    std::ifstream note(copy + kNoteSuffix, std::ios::binary);
    std::string original;
    std::getline(note, original, '\0');
    return original;
}

std::string timeOf(const fs::path& copy) {
    std::error_code ignored;
    const auto written = fs::last_write_time(copy, ignored);
    if (ignored) return {};
    const auto systemTime = std::chrono::file_clock::to_sys(written);
    return utcText(std::chrono::time_point_cast<std::chrono::system_clock::duration>(systemTime), "%Y-%m-%d %H:%M:%S");
}

}  // namespace

std::string keepBackup(const std::string& folder, const std::string& workFile, const std::string& original) {
    std::error_code failed;
    fs::create_directories(folder, failed);
    if (failed) return {};
    fs::permissions(folder, fs::perms::owner_all, failed);
    const auto now = std::chrono::system_clock::now();
    for (int n = 1; n <= kMostTries; ++n) {
        const std::string copy = (fs::path(folder) / nameOfCopy(original, now, n)).string();
        // Its note's name may be another copy's.
        if (exists(copy) || exists(copy + kNoteSuffix)) continue;
        // Another program may take the name meanwhile: whoever comes second takes the next one.
        const FileResult fault = copyToNewFile(workFile, copy, NewFile::Private);
        if (fault && fault->code == EEXIST) continue;
        if (fault) return {};
        // Without its note the copy is still whole, and listed.
        static_cast<void>(writeNewFile(copy + kNoteSuffix, original));
        return copy;
    }
    return {};
}

std::vector<Backup> backupsIn(const std::string& folder) {
    std::vector<Backup> found;
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
        const std::string path = entry.path().string();
        if (isNote(entry.path()) || isUnfinished(entry.path()) || !entry.is_regular_file(ignored)) continue;
        found.push_back({path, noteOf(path), timeOf(entry.path())});
    }
    std::sort(found.begin(), found.end(),
              [](const Backup& a, const Backup& b) { return a.time != b.time ? a.time < b.time : a.path < b.path; });
    return found;
}

}  // namespace qrv
