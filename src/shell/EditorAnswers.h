// What the desktop tool answers in the terminal that it was started from, with no window and no display.
#pragma once

#include <optional>
#include <span>
#include <string>

namespace qrv {

/// The answer to a command line whose first word is "--help", "-h" or "--version"; none to any other. A file of such a
/// name is opened as "./--help".
/// @param toolkit  the line that names the toolkit and its version
[[nodiscard]] std::optional<std::string> answerInTerminal(std::span<const std::string> arguments,
                                                          const std::string& toolkit);

}  // namespace qrv
