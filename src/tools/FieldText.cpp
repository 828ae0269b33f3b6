#include "tools/FieldText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "platform/CodePage.h"
#include "platform/HexText.h"

namespace qrv {

namespace {

constexpr std::string_view kTrue = "true";
constexpr std::string_view kFalse = "false";
constexpr std::string_view kNull = "null";

bool isText(const Column& column) { return column.type == ColumnType::Text || column.type == ColumnType::Memo; }

// The five codes that the code page leaves undefined stand for control characters as well.
bool isControl(unsigned char code) {
    return code < 0x20 || code == 0x7F || code == 0x81 || code == 0x8D || code == 0x8F || code == 0x90 || code == 0x9D;
}

std::string floatText(float number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

std::string escaped(char c) {
    const auto code = static_cast<unsigned char>(c);
    switch (c) {
        case '"': return "\\\"";
        case '\\': return "\\\\";
        case '\n': return "\\n";
        case '\r': return "\\r";
        case '\t': return "\\t";
        default: break;
    }
    if (!isControl(code)) return toUtf8(std::string_view(&c, 1));
    return {'\\', 'x', kHexDigits[code >> 4U], kHexDigits[code & 15U]};
}

ParsedField refused(std::string reason) { return {.value = {}, .refusal = std::move(reason)}; }

ParsedField parseFlag(std::string_view written) {
    if (written == kTrue) return {.value = -1, .refusal = {}};
    if (written == kFalse) return {.value = 0, .refusal = {}};
    return refused("must be true or false");
}

template <typename Number>
std::optional<Number> parsedNumber(std::string_view written) {
    Number number{};
    const auto [end, error] = std::from_chars(written.data(), written.data() + written.size(), number);
    if (error != std::errc{} || end != written.data() + written.size()) return std::nullopt;
    return number;
}

ParsedField parseInteger(const Column& column, std::string_view written) {
    const auto [least, greatest] = rangeOf(column.type);
    const auto number = parsedNumber<std::int64_t>(written);
    if (!number || *number < least || *number > greatest) {
        return refused("must be a whole number from " + std::to_string(least) + " to " + std::to_string(greatest));
    }
    return {.value = static_cast<std::int32_t>(*number), .refusal = {}};
}

ParsedField parseFloat(std::string_view written) {
    const auto number = parsedNumber<float>(written);
    if (!number || !std::isfinite(*number)) return refused("must be a number that a 32-bit float can hold");
    return {.value = *number, .refusal = {}};
}

int hexValue(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    return -1;
}

/// Takes one escape off the front of `rest`, which starts behind its backslash. Absent: there is no such escape.
std::optional<char> takeEscape(std::string_view& rest) {
    if (rest.empty()) return std::nullopt;
    const char letter = rest.front();
    rest.remove_prefix(1);
    switch (letter) {
        case '"':
        case '\\': return letter;
        case 'n': return '\n';
        case 'r': return '\r';
        case 't': return '\t';
        default: break;
    }
    if (letter != 'x' || rest.size() < 2 || hexValue(rest[0]) < 0 || hexValue(rest[1]) < 0) return std::nullopt;
    const int code = hexValue(rest[0]) * 16 + hexValue(rest[1]);
    rest.remove_prefix(2);
    return static_cast<char>(code);
}

ParsedField parseText(const Column& column, std::string_view written) {
    if (written.size() < 2 || written.front() != '"' || written.back() != '"') {
        return refused("must be a text in double quotes");
    }
    std::string_view rest = written.substr(1, written.size() - 2);
    if (!fitsCodePage(rest)) return refused("has a character that a controller can't show");
    std::string text;
    while (!rest.empty()) {
        const std::size_t plain = std::min(rest.find('\\'), rest.size());
        text += fromUtf8(rest.substr(0, plain));
        rest.remove_prefix(plain);
        if (rest.empty()) break;
        rest.remove_prefix(1);
        const std::optional<char> code = takeEscape(rest);
        if (!code) return refused(R"(has a backslash that no ", \, n, r, t or x with two hexadecimal digits follows)");
        text += *code;
    }
    if (text.empty() && !column.emptyAllowed) return refused("must not be empty");
    if (countsAsEmpty(text) && !column.emptyAllowed) return refused(R"(must not begin with \x00)");
    if (column.size > 0 && text.size() > static_cast<std::size_t>(column.size)) {
        return refused("must have at most " + std::to_string(column.size) + " characters");
    }
    return {.value = std::move(text), .refusal = {}};
}

}  // namespace

std::string quotedText(std::string_view cp1252) {
    std::string text = "\"";
    for (const char c : cp1252) text += escaped(c);
    return text + '"';
}

bool isNull(const Value& value) { return std::holds_alternative<std::monostate>(value); }

std::string fieldText(const Column& column, const Value& value) {
    if (isNull(value)) return std::string(kNull);
    if (const auto* text = std::get_if<std::string>(&value)) return quotedText(*text);
    if (const auto* number = std::get_if<float>(&value)) return floatText(*number);
    const std::int32_t number = std::get<std::int32_t>(value);
    if (column.type == ColumnType::Boolean) return std::string(number != 0 ? kTrue : kFalse);
    return std::to_string(number);
}

std::string namedFieldText(const Column& column, const Value& value) {
    return std::string(column.name) + "=" + fieldText(column, value);
}

std::string keyText(const Table& table, const std::vector<Value>& row) {
    std::string text;
    for (const std::size_t column : identityOf(table)) {
        if (!text.empty()) text += ' ';
        text += namedFieldText(table.columns[column], row[column]);
    }
    return text;
}

ParsedField parseField(const Column& column, std::string_view written) {
    if (written == kNull) return {.value = {}, .refusal = {}};
    if (isText(column)) return parseText(column, written);
    if (column.type == ColumnType::Boolean) return parseFlag(written);
    return column.type == ColumnType::Single ? parseFloat(written) : parseInteger(column, written);
}

}  // namespace qrv
