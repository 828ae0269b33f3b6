// A configuration as text, for version control, review and writing by hand:
//
//   QRV configuration text, form 1
//
//   [Constants]
//   BlockNumber=4 Offset=0 ConstantValue=600  # input 1 PROCESS VARIABLE <- 600 AIN
//
// A section for each table, in the order of the schema; a row a line, sorted by key. Left out are rows that stand in
// every new file, and nulls; a null that the desktop could not read is written, `Field=null`, and never left out. A row
// of a new file that this one lacks is a line that begins with "-". What follows "#" is for the reader alone. The same
// content gives the same bytes, whatever the history of the file. UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "store/ConfigurationContent.h"

namespace qrv {

class ContentNotes;

/// The first line of every text. In files: a text of another form gets another number.
inline constexpr std::string_view kTextFormMark = "QRV configuration text, form 1";

[[nodiscard]] std::string textFormOf(const ConfigurationContent& content, ContentNotes& notes);

struct TextFormResult {
    std::optional<ConfigurationContent> content;
    std::string refusal;  ///< "file:line: reason" where there is no content
};
/// Reads a text, strictly: what it gives makes a file that opens. Lines may end in CR LF; sections, rows and fields may
/// stand in any order.
/// @param fileName  for the refusal
[[nodiscard]] TextFormResult readTextForm(std::string_view text, std::string_view fileName);

}  // namespace qrv
