// What the catalogue says of its functions, for people: a page of plain text for each function, as a terminal shows it,
// and the whole as one document. The build makes both from the catalogue's text.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/CatalogueText.h"

namespace qrv {

/// Lies beside QRVDATA.DAT: the pages of all functions, a form feed before each.
inline constexpr std::string_view kFunctionPagesFile = "FUNCTIONS.TXT";

/// The page of one function, at most 80 characters wide.
[[nodiscard]] std::string renderedPage(const CatalogueText& text, const FunctionRow& function);
/// All pages, in stored order, as kFunctionPagesFile has them.
[[nodiscard]] std::string renderedPages(const CatalogueText& text);

/// The page of a function by its number or, whatever the case, its name; absent where there is none.
/// @param pages  the content of kFunctionPagesFile
[[nodiscard]] std::optional<std::string> functionPage(std::string_view pages, std::string_view numberOrName);
/// The headings of all pages, number, name and title, in their order.
[[nodiscard]] std::vector<std::string> functionHeadings(std::string_view pages);

/// docs/functions.md: how the definitions are read, an index by purpose and one by number, an entry for each function.
[[nodiscard]] std::string functionsDocument(const CatalogueText& text);

/// Lowest, highest and first value as they are shown: "0.000 to 60.000, default 0.500".
[[nodiscard]] std::string limitsShown(const CatalogueText& text, const ParamRow& param);

/// Breaks a text at blanks into lines of at most `width` characters, `indent` included, with that many blanks before
/// each.
[[nodiscard]] std::string wrapped(std::string_view text, std::size_t width, std::size_t indent);

}  // namespace qrv
