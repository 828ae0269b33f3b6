// What a program wrote, as a test reads it: JSON, and texts that a pattern describes. Both libraries are slow to
// compile, and so they stand behind these few names.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace qrv {

/// A value of JSON. Two are equal whatever the order of their members and their blanks.
class ReadJson {
 public:
    ReadJson(bool flag) : text_(flag ? "true" : "false") {}
    ReadJson(int number) : text_(std::to_string(number)) {}
    ReadJson(const char* text);
    ReadJson(const std::string& text) : ReadJson(text.c_str()) {}

    /// Throws where the text is no JSON.
    [[nodiscard]] static ReadJson of(const std::string& text);
    /// A value for each line.
    [[nodiscard]] static std::vector<ReadJson> linesOf(const std::string& text);

    /// Of an object or an array. Throws where there is no such member.
    ReadJson operator[](const char* name) const;
    ReadJson operator[](int index) const;
    [[nodiscard]] std::vector<ReadJson> elements() const;
    [[nodiscard]] std::size_t size() const { return elements().size(); }
    [[nodiscard]] bool isNull() const { return text_ == "null"; }
    /// Of a text, or of a whole number. Throws where it is none.
    [[nodiscard]] std::string text() const;
    [[nodiscard]] int number() const;

    friend bool operator==(const ReadJson&, const ReadJson&) = default;
    friend std::ostream& operator<<(std::ostream& out, const ReadJson& json) { return out << json.text_; }

 private:
    ReadJson() = default;

    std::string text_;  ///< without blanks, members sorted
};

/// Whether a pattern describes the whole text.
[[nodiscard]] bool matches(const std::string& text, const std::string& pattern);
/// What the pattern's group takes wherever in the text it fits; all that it takes where it has no group.
[[nodiscard]] std::vector<std::string> captured(const std::string& text, const std::string& pattern);

}  // namespace qrv
