// One field of a configuration as the text form and the comparison show it, UTF-8: whole numbers and floats bare, flags
// as true and false, texts in double quotes with escapes for what could not stand in a line.
#pragma once

#include <string>
#include <string_view>

#include "store/Recordset.h"
#include "store/Schema.h"

namespace qrv {

[[nodiscard]] bool isNull(const Value& value);
/// A null is the bare word "null".
[[nodiscard]] std::string fieldText(const Column& column, const Value& value);
/// "Name=value"
[[nodiscard]] std::string namedFieldText(const Column& column, const Value& value);
/// The named fields that tell the row from the others of its table, with a blank between; "" for a table of one row.
[[nodiscard]] std::string keyText(const Table& table, const std::vector<Value>& row);

/// A text in double quotes, from code page 1252.
[[nodiscard]] std::string quotedText(std::string_view cp1252);

struct ParsedField {
    Value value;
    std::string refusal;  ///< why it is no value of the column, as a sentence without its end; "" if it is one
};
/// The value of a field as it is written: quotes and escapes included.
[[nodiscard]] ParsedField parseField(const Column& column, std::string_view written);

}  // namespace qrv
