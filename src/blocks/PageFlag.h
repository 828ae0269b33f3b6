// An alarm that pages: 128 is added to the code of its description's first character, which is never 0.
#pragma once

#include <string_view>

namespace qrv {

[[nodiscard]] constexpr bool isPage(std::string_view description) {
    return !description.empty() && static_cast<unsigned char>(description.front()) > 128;
}

}  // namespace qrv
