// Which database engine the program stands on, for the user to read.
#pragma once

#include <string>

namespace qrv {

[[nodiscard]] std::string engineVersion();

}  // namespace qrv
