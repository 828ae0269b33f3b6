// The tests behind the catalogue's rules, those that need more than a line. Used by CatalogueRules alone.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/CatalogueCodes.h"
#include "store/CatalogueRules.h"
#include "store/CatalogueText.h"

namespace qrv {

inline constexpr std::size_t kLongestName = 8;
inline constexpr std::size_t kLongestAuxShort = 8;
/// A longer description makes its row of the grid two lines high.
inline constexpr std::size_t kOneLineDescription = 28;
inline constexpr std::int32_t kMostInputs = 74;
inline constexpr std::int32_t kMostParams = 255;
inline constexpr std::int32_t kMostAuxOutputs = 31;
inline constexpr std::int32_t kMostIcycle = 46;

/// What the tool's grids show where no function's name stands.
inline constexpr std::array<std::string_view, 4> kToolsWords{".", kNoSuchOutput, "MAIN", "????"};

[[nodiscard]] constexpr bool isWithin(std::int32_t value, std::int32_t least, std::int32_t greatest) {
    return least <= value && value <= greatest;
}
[[nodiscard]] bool isOneOf(std::string_view word, std::span<const std::string_view> words);
[[nodiscard]] bool isUpperCaseWord(std::string_view word, std::size_t longest);
[[nodiscard]] bool isInCapitals(std::string_view text);
[[nodiscard]] bool isAuxShort(std::string_view text);
[[nodiscard]] bool isStringFunction(std::int32_t fn);
[[nodiscard]] bool hasGroup(const CatalogueText& text, std::string_view key);
[[nodiscard]] bool isHidden(const CatalogueText& text, const ParamRow& row);
/// The place of a parameter of type 4 serves both who shows and who checks it.
[[nodiscard]] bool countStandsBefore(const CatalogueText& text, const ParamRow& row);
/// As the input grid shows it: cut at " INPUT" from the second character on.
[[nodiscard]] std::string_view shownDescription(std::string_view description);
/// "43 PID", or the bare number of a function that is not there.
[[nodiscard]] std::string functionLabel(const CatalogueText& text, std::int32_t fn);

// --- the whole: each gives the places that are not sound ---

using CataloguePlaces = std::vector<CataloguePlace>;

[[nodiscard]] CataloguePlaces textsNotPrintable(const CatalogueText& text);
[[nodiscard]] CataloguePlaces namesTwice(const CatalogueText& text);
[[nodiscard]] CataloguePlaces namedFunctionsMissing(const CatalogueText& text);
[[nodiscard]] CataloguePlaces rowsOfNoFunction(const CatalogueText& text);
[[nodiscard]] CataloguePlaces inputsMisnumbered(const CatalogueText& text);
[[nodiscard]] CataloguePlaces paramsMisnumbered(const CatalogueText& text);
[[nodiscard]] CataloguePlaces auxOutputsMisnumbered(const CatalogueText& text);
[[nodiscard]] CataloguePlaces nopFaults(const CatalogueText& text);
[[nodiscard]] CataloguePlaces firstBlockFaults(const CatalogueText& text);
[[nodiscard]] CataloguePlaces defaultSourceFaults(const CatalogueText& text);
[[nodiscard]] CataloguePlaces boardNumberFaults(const CatalogueText& text);
[[nodiscard]] CataloguePlaces boardSlotFaults(const CatalogueText& text);
[[nodiscard]] CataloguePlaces knownNumbersMissing(const CatalogueText& text);
[[nodiscard]] CataloguePlaces knownNumbersNotPlaced(const CatalogueText& text);
[[nodiscard]] CataloguePlaces curveFaults(const CatalogueText& text);
[[nodiscard]] CataloguePlaces limitGroupFaults(const CatalogueText& text);
[[nodiscard]] CataloguePlaces auxReaderFaults(const CatalogueText& text);
[[nodiscard]] CataloguePlaces oddDecimals(const CatalogueText& text);
[[nodiscard]] CataloguePlaces auxTextsTwice(const CatalogueText& text);
[[nodiscard]] CataloguePlaces auxMixesMissing(const CatalogueText& text);
[[nodiscard]] CataloguePlaces slotMixesMissing(const CatalogueText& text);
[[nodiscard]] CataloguePlaces scalesMissing(const CatalogueText& text);
[[nodiscard]] CataloguePlaces retentiveGaps(const CatalogueText& text);
[[nodiscard]] CataloguePlaces slotGaps(const CatalogueText& text);
[[nodiscard]] CataloguePlaces definitionsMissing(const CatalogueText& text);

// --- definitions ---

[[nodiscard]] bool isComplete(const Definition& definition);
[[nodiscard]] bool namesEverySlot(const CatalogueText& text, const Definition& definition);
[[nodiscard]] bool namesNothingElse(const CatalogueText& text, const Definition& definition);

/// A rule that some row is wanted: a place in `file` where none passes `test`.
template <typename Rows, typename Test>
[[nodiscard]] CataloguePlaces missingUnlessAny(const Rows& rows, std::string_view file, std::string_view wanted,
                                               Test test) {
    for (const auto& row : rows) {
        if (test(row)) return {};
    }
    return {{file, 0, std::string(wanted)}};
}
template <typename Test>
[[nodiscard]] CataloguePlaces anyParam(const CatalogueText& text, Test test) {
    return missingUnlessAny(text.params, kParamsFile, "none is there", test);
}
template <typename Test>
[[nodiscard]] CataloguePlaces anyInput(const CatalogueText& text, Test test) {
    return missingUnlessAny(text.inputs, kInputsFile, "none is there", test);
}

}  // namespace qrv
