// Texts of paths. Where a path is split for the user or taken from a list, both "\" and "/" part its folders; what the
// system itself is asked keeps its names as they are.
#pragma once

#include <string>
#include <string_view>

namespace qrv {

/// Where the last folder mark stands, or npos.
[[nodiscard]] std::size_t lastSeparator(std::string_view path);
/// What stands before the last folder mark; "" where there is none.
[[nodiscard]] std::string folderOf(std::string_view path);
/// What stands behind the last folder mark.
[[nodiscard]] std::string fileNameOf(std::string_view path);
/// The same path with "/" throughout, no mark doubled and none at the end.
[[nodiscard]] std::string withCleanSeparators(std::string_view path);
/// The same path without folder marks at its end; "/" stays.
[[nodiscard]] std::string withoutEndSeparator(std::string_view path);
[[nodiscard]] std::string joinedPath(std::string_view folder, std::string_view name);
/// Counted from the present folder where it isn't absolute, without "." and, where the system can tell what that
/// leaves, without ".."; "" stays "". Names the file that the system finds under `path`, and the same one when it isn't
/// there yet. The names of links stay as they are.
[[nodiscard]] std::string absolutePath(const std::string& path);

}  // namespace qrv
