// What the program is and stands on, for the user to read and to report: the window "About" and `--version` in a
// terminal say the same lines.
#pragma once

#include <string>

namespace qrv {

/// As "6.73".
[[nodiscard]] std::string programVersion();
[[nodiscard]] std::string catalogueLine(const std::string& catalogueVersion);
[[nodiscard]] std::string engineLine();
/// A line each: the program, the function catalogue, the database engine.
[[nodiscard]] std::string versionLines(const std::string& program, const std::string& catalogueVersion);
/// The same with the catalogue that a program of this folder finds, opened for that alone.
[[nodiscard]] std::string foundVersions(const std::string& program);

}  // namespace qrv
