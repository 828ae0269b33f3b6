// What the life cycle of a configuration needs of the machine's files. A file is replaced whole or not at all: a
// private temporary beside it, every write checked to the last byte, flushed, renamed over, the folder flushed.
// Ordinary failures are results, never exceptions. Paths are UTF-8. Sources are plain files only: a folder, pipe or
// device is refused and never waited for.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qrv {

/// Why an operation on a file failed.
struct FileFault {
    int code = 0;      ///< the system's error number
    std::string text;  ///< operation, path and the system's words, UTF-8: "cannot open /a/b: Permission denied"
};
/// Empty where all went well.
using FileResult = std::optional<FileFault>;

// --- whole files ---

/// Whether what is at a path already may be written over.
enum class Overwrite { Refuse, Allow };

/// Whose permission bits a copy gets.
enum class Permissions {
    OfSource,   ///< the source's, on a target that was there as well: a copy keeps the read-only bit
    OwnerOnly,  ///< the source's bits for its owner, none for others: the work file
    OfTarget,   ///< the target's own; a new file gets the usual ones, without write where the source is read-only
};
/// Whether the copy must outlive a power cut. An unflushed one is still whole or not there.
enum class Durability { Flushed, Unflushed };

/// Replaces the content of `to` with that of `from`, overwriting. A symbolic link keeps pointing: what it points at is
/// replaced. Fails on a target whose owner-write bit is clear, whoever asks. After a failure the target is as it was
/// and nothing is left beside it; the one exception is a folder that could not be flushed, told after the file is in
/// place.
[[nodiscard]] FileResult copyFile(const std::string& from, const std::string& to, Permissions permissions,
                                  Durability durability = Durability::Flushed);
/// Who may read a file that was not there before: its user alone, or whom the user's files are usually open to.
enum class NewFile { Private, Usual };
/// The same, but fails with EEXIST where there is anything at `to`, even if it came at the last moment; what is there
/// stays.
[[nodiscard]] FileResult copyToNewFile(const std::string& from, const std::string& to,
                                       NewFile newFile = NewFile::Usual);
/// Like copyFile with bytes at hand. A target that is there keeps its permission bits.
[[nodiscard]] FileResult writeWholeAtOnce(const std::string& path, std::string_view bytes,
                                          NewFile newFile = NewFile::Private);
/// Like copyToNewFile with bytes at hand.
[[nodiscard]] FileResult writeNewFile(const std::string& path, std::string_view bytes,
                                      NewFile newFile = NewFile::Private);

/// Makes an empty plain file of the user's own, or empties the one that is there. A link, or a file that is another
/// user's or has a second name, is a fault and stays as it is: in a folder that is open to all it may be a trap.
[[nodiscard]] FileResult makeEmptyOwnFile(const std::string& path);

struct FileContent {
    std::string bytes;
    FileResult fault;
};
/// All bytes of a plain file of at most `limit` bytes; a longer one is refused.
[[nodiscard]] FileContent readWhole(const std::string& path, std::size_t limit);

// --- one file's properties ---

/// Follows links: a link to nothing does not exist.
[[nodiscard]] bool exists(const std::string& path);
/// True if it is there and its owner-write bit is clear. Whether this user could write does not count.
[[nodiscard]] bool isReadOnly(const std::string& path);
/// What tells a file from another that stood or stands at its path, and from itself with another content. Nothing
/// where there is none.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::int64_t byteCount = 0;
    std::chrono::nanoseconds lastWrite{0};
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};
[[nodiscard]] std::optional<FileIdentity> identityOf(const std::string& path);
/// Clears the write bits of all, or sets the owner's.
[[nodiscard]] FileResult setReadOnly(const std::string& path, bool readOnly);
/// Deletes a file (of a link: the link). One that isn't there is a fault.
[[nodiscard]] FileResult removeFile(const std::string& path);

using FileTime = std::chrono::system_clock::time_point;
[[nodiscard]] std::optional<FileTime> lastWriteTime(const std::string& path);
/// Sets the time of last access and of last write.
[[nodiscard]] FileResult setFileTimes(const std::string& path, FileTime time);

/// Makes an empty file that only its user may read and write, named `prefix`, four hexadecimal digits and ".TMP", and
/// gives its path. Never follows or opens what is there already. Raises "Path/File access error" where it can't be
/// made.
/// @param unlike  the name used last, path or bare, which is not given again; may be ""
[[nodiscard]] std::string makeTemporaryName(const std::string& folder, std::string_view prefix,
                                            const std::string& unlike);

}  // namespace qrv
