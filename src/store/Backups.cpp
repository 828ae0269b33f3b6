#include "store/Backups.h"

#include <algorithm>
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

std::string freeName(const fs::path& folder, const std::string& original, std::chrono::system_clock::time_point now) {
    const fs::path name(original);
    // A copy's name never begins like that of an unfinished one.
    const std::string ownStem = name.stem().string();
    const std::string stem = (ownStem.starts_with('.') ? "_" : "") + ownStem + " " + utcText(now, "%Y-%m-%d %H-%M-%S");
    std::string tried = (folder / (stem + name.extension().string())).string();
    for (int i = 2; exists(tried) && i < kMostTries; ++i) {
        tried = (folder / (stem + " (" + std::to_string(i) + ")" + name.extension().string())).string();
    }
    return tried;
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
    const std::string copy = freeName(folder, original, std::chrono::system_clock::now());
    if (copyFile(workFile, copy, Permissions::OwnerOnly)) return {};
    // Without its note the copy is still whole, and listed.
    static_cast<void>(writeWholeAtOnce(copy + kNoteSuffix, original));
    return copy;
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
