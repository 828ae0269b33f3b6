// The words of the trade that people look for a function by, and that neither its name nor its sentence has. For the
// filter of the function list.
#pragma once

#include <span>
#include <string_view>

namespace qrv {

struct FunctionWords {
    std::string_view function;
    std::string_view words;
};

/// Every row there is, for tests.
[[nodiscard]] std::span<const FunctionWords> allFunctionWords();
/// Parted by blanks; "" for a function that has none.
[[nodiscard]] std::string_view wordsOfFunction(std::string_view name);

}  // namespace qrv
