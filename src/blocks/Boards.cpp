#include "blocks/Boards.h"

#include <algorithm>

namespace qrv {

namespace {

constexpr bool textsHoldTheirPartNumbers() {
    return std::ranges::all_of(kBoards, [](const Board& board) {
        return board.text.find(board.partNumber) != std::string_view::npos &&
               std::ranges::count_if(kBoards, [&](const Board& other) {
                   return board.text.find(other.partNumber) != std::string_view::npos;
               }) == 1;
    });
}
static_assert(textsHoldTheirPartNumbers());

}  // namespace

const Board* boardIn(std::string_view description) {
    const auto* found = std::ranges::find_if(
        kBoards, [&](const Board& board) { return description.find(board.partNumber) != std::string_view::npos; });
    return found == kBoards.end() ? nullptr : found;
}

std::vector<std::string> boardChoices() {
    std::vector<std::string> choices;
    choices.reserve(kBoards.size() + 1);
    for (const Board& board : kBoards) choices.emplace_back(board.text);
    choices.emplace_back(kNoBoard);
    return choices;
}

}  // namespace qrv
