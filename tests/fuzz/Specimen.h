// What the fuzz targets of files share: the file that a fuzzer's bytes stand for, and a look at all that it holds.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace qrv {

class db1;

/// The file's bytes. Bytes that begin with '~' are changes to a sound file, each of them
///   three bytes  where, low byte first, modulo the file's length
///   one byte     how many bytes follow that replace the file's own; 255: the file ends here
/// so that a few bytes reach the depth of a large file. All others are the file itself.
[[nodiscard]] std::string specimenOf(std::span<const std::uint8_t> bytes, const std::string& sound);

/// Writes a file of the target's own, over what stands there.
void putFile(const std::string& path, const std::string& bytes);

/// Reads every field of the rows that the cursors stand on, and of a few that follow. What has no row or is null
/// raises, and is passed over.
void readAround(db1& db);

}  // namespace qrv
