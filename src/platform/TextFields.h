// Comma-separated lines as the tool's text files have them: texts in double quotes, numbers bare, CR LF at the end.
// Used by the exports and by what reads such files back.
#pragma once

#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Numerals.h"

namespace qrv {

/// One field as it stands in the file.
class WrittenField {
 public:
    // Implicit: a line is written as a plain list of texts and numbers.
    WrittenField(const char* text) : WrittenField(std::string_view(text)) {}
    WrittenField(const std::string& text) : WrittenField(std::string_view(text)) {}
    /// A quote within the text stands as it is.
    WrittenField(std::string_view text) : inFile_('"' + std::string(text) + '"') {}
    WrittenField(double number) : inFile_(joined(number)) {}
    template <std::integral Number>
    WrittenField(Number number) : inFile_(joined(number)) {}

    [[nodiscard]] const std::string& inFile() const { return inFile_; }

 private:
    std::string inFile_;
};

/// The whole line, with CR LF.
[[nodiscard]] std::string writtenLine(std::initializer_list<WrittenField> fields);

/// The fields of one line without its line break, quotes taken off. Blanks around a field are dropped, those within
/// quotes stay; a line with nothing in it has one empty field.
[[nodiscard]] std::vector<std::string> fieldsOf(std::string_view line);

}  // namespace qrv
