// The command line as one text: what stands behind the program's name, and its first word.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace qrv {

/// The arguments joined by a blank, each that holds a blank in double quotes: argv has lost the quotes that were typed.
[[nodiscard]] std::string commandTail(std::span<const std::string> arguments);
/// The first word of a command line: up to the next blank, or, where it begins with a double quote, between that and
/// the next one; without a closing quote the whole rest. Blanks before it don't count.
[[nodiscard]] std::string FirstToken(std::string_view tail);

}  // namespace qrv
