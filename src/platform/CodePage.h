// Code page 1252, the tool's own text: one byte a character. Everything of the configuration and of grid cells is in
// it; captions, boxes, paths and the file's columns are UTF-8. The mapping is one to one for all 256 bytes: the five
// codes that the page leaves undefined stand for the control characters of the same number.
#pragma once

#include <string>
#include <string_view>

namespace qrv {

[[nodiscard]] std::string toUtf8(std::string_view cp1252);
/// A character that the code page lacks becomes "?", and so does each byte that is not part of well-formed UTF-8.
[[nodiscard]] std::string fromUtf8(std::string_view utf8);
[[nodiscard]] bool isWellFormedUtf8(std::string_view bytes);
/// True if `utf8` is well formed and every character has its place in the code page: the round trip loses nothing.
[[nodiscard]] bool fitsCodePage(std::string_view utf8);

/// Capitals and small letters of the whole code page; a letter whose partner the page lacks stays.
[[nodiscard]] std::string upperCase(std::string_view cp1252);
[[nodiscard]] std::string lowerCase(std::string_view cp1252);
/// Equal but for capitals and small letters.
[[nodiscard]] bool equalIgnoringCase(std::string_view a, std::string_view b);

/// With a blank for each control character, which would do things to a line or to the user's terminal.
[[nodiscard]] std::string inOneLine(std::string cp1252);

/// Without the blanks at both ends; other white space stays.
[[nodiscard]] std::string trimmed(std::string_view text);

}  // namespace qrv
