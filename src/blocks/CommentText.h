// Long texts between a form's box, whose line break is "\n", and the configuration, where it is a carriage return and a
// line feed.
#pragma once

#include <string>

namespace qrv {

[[nodiscard]] std::string withBoxBreaks(const std::string& stored);
[[nodiscard]] std::string withStoredBreaks(const std::string& shown);
/// Without empty lines: as long as two breaks stand in a row they become one.
[[nodiscard]] std::string withoutDoubledBreaks(const std::string& shown);

}  // namespace qrv
