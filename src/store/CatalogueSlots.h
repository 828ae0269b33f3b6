// The slots that a definition names, as I1, P4 or D1..D8. Used by the rules that keep the definitions and the rows in
// step.
#pragma once

#include <cstdint>
#include <set>

#include "store/CatalogueText.h"

namespace qrv {

/// An input (I), parameter or hidden constant (P), auxiliary analog (A) or discrete (D) output, by its number.
struct NamedSlot {
    char letter = ' ';
    std::int32_t number = 0;

    [[nodiscard]] bool operator<(const NamedSlot& other) const {
        return letter != other.letter ? letter < other.letter : number < other.number;
    }
};

[[nodiscard]] std::set<NamedSlot> slotsNamedIn(const Definition& definition);
[[nodiscard]] std::set<NamedSlot> slotsOf(const FunctionRow& function);

}  // namespace qrv
