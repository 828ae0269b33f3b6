// The fixed lines of an upload's log. Each stands as it is read by those who get such a log: some are one hyphen longer
// or shorter than their neighbours.
#pragma once

#include <string_view>

namespace qrv::uploadlog {

inline constexpr std::string_view kFileName = "QRVUploadLog.txt";
inline constexpr std::string_view kRule =
    "-----------------------------------------------------------------------------------------";
inline constexpr std::string_view kBlocks =
    "--------------------------------------BLOCKS---------------------------------------------";
inline constexpr std::string_view kConstants =
    "--------------------------------------CONSTANTS------------------------------------------";
inline constexpr std::string_view kStringParams =
    "--------------------------------------STRING PARAMS--------------------------------------";
inline constexpr std::string_view kCancel = "----------CANCEL--------------";
/// Behind each exchange.
inline constexpr std::string_view kEmpty = " ";

}  // namespace qrv::uploadlog
