// Writes the catalogue's text as the data file that the tool opens. Used by the build and by tests.
#pragma once

#include <string>

#include "store/CatalogueText.h"

namespace qrv {

/// The bytes of QRVDATA.DAT: the same text gives the same bytes. Functions stand in the order of the text. The text
/// keeps the rules; one that breaks a key or a column's range raises.
[[nodiscard]] std::string catalogueFile(const CatalogueText& text);

}  // namespace qrv
