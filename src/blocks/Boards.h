// The I/O boards: the only place of their part numbers, texts and functions. What a slot's description says is found by
// the part number in it.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace qrv {

struct Board {
    int code;                     ///< 1..6
    std::string_view partNumber;  ///< what a slot's description is searched for
    std::string_view text;        ///< the description as it is stored: other readers compare it whole
    std::string_view function;    ///< name of the function that its blocks get
    int blockCount;               ///< how many of the slot's 15 blocks it uses
    std::string_view tag;         ///< what the I/O map shows
};

/// In the order of the boards' list.
inline constexpr std::array kBoards{
    Board{.code = 1,
          .partNumber = "610012",
          .text = "DISCRETE INPUT   610012",
          .function = "DIN",
          .blockCount = 15,
          .tag = "DI"},
    Board{.code = 2,
          .partNumber = "610014",
          .text = "ANALOG INPUT      610014",
          .function = "AIN",
          .blockCount = 8,
          .tag = "AI"},
    Board{.code = 3,
          .partNumber = "610018",
          .text = "HOA ROUT              610018",
          .function = "ROUT",
          .blockCount = 5,
          .tag = "HO"},
    Board{.code = 4,
          .partNumber = "610021",
          .text = "AUTO MANUAL       610021",
          .function = "AOUT",
          .blockCount = 5,
          .tag = "AM"},
    Board{.code = 5,
          .partNumber = "610027",
          .text = "RELAY OUTPUT     610027",
          .function = "ROUT",
          .blockCount = 8,
          .tag = "RO"},
    Board{.code = 6,
          .partNumber = "610033",
          .text = "TRIAC OUTPUT      610033",
          .function = "TOUT",
          .blockCount = 4,
          .tag = "TO"},
};

/// The board that always sits in slot 0.
inline constexpr std::string_view kCpuBoardText = "CPU BOARD - 610050";
/// What the hardware grid shows for an empty slot.
inline constexpr std::string_view kNoBoard = "NONE";

/// The CPU's own inputs and output, blocks 600, 601 and 602.
struct CpuBlock {
    std::string_view function;
    std::string_view tag;
    std::string_view missing;  ///< the notice where the catalogue lacks the function
};
inline constexpr std::array kCpuBlocks{
    CpuBlock{.function = "AIN", .tag = "AI", .missing = "ERROR RECORD NOT FOUND"},
    CpuBlock{.function = "AIN", .tag = "AI", .missing = "ERROR RECORD NOT FOUND"},
    CpuBlock{.function = "ROUT", .tag = "RO", .missing = "ERROR RECORD ROUT NOT FOUND"},
};

/// The board whose part number stands in the text; null if there is none.
[[nodiscard]] const Board* boardIn(std::string_view description);
/// The texts of the hardware grid's list, "NONE" last.
[[nodiscard]] std::vector<std::string> boardChoices();

}  // namespace qrv
