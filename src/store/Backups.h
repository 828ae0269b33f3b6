// Copies of work that could not be saved to the user's file: kept in the per-user state folder, listed by `qrv
// backups`.
#pragma once

#include <string>
#include <vector>

namespace qrv {

struct Backup {
    std::string path;      ///< the copy, a configuration like any other
    std::string original;  ///< the file that could not be written; "" where the note of it is gone
    std::string time;      ///< when it was kept, "2026-11-21 14:03:09", UTC
};

/// Copies `workFile` to `folder`, with a note of `original` beside it. Gives the copy's path; "" where that failed.
std::string keepBackup(const std::string& folder, const std::string& workFile, const std::string& original);

/// The copies in `folder`, oldest first.
[[nodiscard]] std::vector<Backup> backupsIn(const std::string& folder);

}  // namespace qrv
