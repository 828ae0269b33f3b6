#include "platform/CodePage.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace qrv {

namespace {

constexpr std::uint8_t kFirstOfTable = 0x80;
/// The characters of the bytes 80 to 9F; all other bytes stand for the character of their own number.
constexpr std::array<char16_t, 32> kTable{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

/// (small, capital) letters whose distance is not 0x20.
struct LetterPair {
    char small;
    char capital;
};
constexpr std::array kOddPairs{
    LetterPair{'\x9A', '\x8A'},
    LetterPair{'\x9C', '\x8C'},
    LetterPair{'\x9E', '\x8E'},
    LetterPair{'\xFF', '\x9F'},
};

std::uint8_t byteOf(char c) { return static_cast<std::uint8_t>(c); }

char32_t characterOf(std::uint8_t byte) {
    if (byte >= kFirstOfTable && byte < kFirstOfTable + kTable.size()) return kTable[byte - kFirstOfTable];
    return byte;
}

std::optional<char> byteFor(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<char>(character);
    const auto found = std::find(kTable.begin(), kTable.end(), character);
    if (found == kTable.end()) return std::nullopt;
    return static_cast<char>(kFirstOfTable + (found - kTable.begin()));
}

/// One character of UTF-8 text, or nothing where the bytes at the front are not well formed.
struct Decoded {
    std::optional<char32_t> character;
    std::size_t byteCount = 1;
};

Decoded firstCharacter(std::string_view text) {
    struct Lead {
        std::uint8_t mask, value;
        char32_t smallest;
    };
    constexpr std::array kLeads{Lead{0x80, 0x00, 0}, Lead{0xE0, 0xC0, 0x80}, Lead{0xF0, 0xE0, 0x800},
                                Lead{0xF8, 0xF0, 0x10000}};
    const std::uint8_t first = byteOf(text.front());
    for (std::size_t more = 0; more < kLeads.size(); ++more) {
        const Lead& lead = kLeads[more];
        if ((first & lead.mask) != lead.value) continue;
        if (text.size() <= more) return {};
        char32_t character = first & static_cast<std::uint8_t>(~lead.mask);
        for (std::size_t i = 1; i <= more; ++i) {
            const std::uint8_t next = byteOf(text[i]);
            if ((next & 0xC0) != 0x80) return {};
            character = (character << 6) | (next & 0x3FU);
        }
        const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
        if (character < lead.smallest || character > 0x10FFFF || isSurrogate) return {};
        return {character, more + 1};
    }
    return {};
}

void append(std::string& utf8, char32_t character) {
    if (character < 0x80) {
        utf8 += static_cast<char>(character);
    } else if (character < 0x800) {
        utf8 += static_cast<char>(0xC0 | (character >> 6));
        utf8 += static_cast<char>(0x80 | (character & 0x3F));
    } else {
        utf8 += static_cast<char>(0xE0 | (character >> 12));
        utf8 += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
        utf8 += static_cast<char>(0x80 | (character & 0x3F));
    }
}

bool isBetween(char c, std::uint8_t first, std::uint8_t last) { return byteOf(c) >= first && byteOf(c) <= last; }

char upperCase(char c) {
    for (const LetterPair& pair : kOddPairs) {
        if (c == pair.small) return pair.capital;
    }
    const bool isSmall = isBetween(c, 'a', 'z') || (isBetween(c, 0xE0, 0xFE) && byteOf(c) != 0xF7);
    return isSmall ? static_cast<char>(byteOf(c) - 0x20) : c;
}

char lowerCase(char c) {
    for (const LetterPair& pair : kOddPairs) {
        if (c == pair.capital) return pair.small;
    }
    const bool isCapital = isBetween(c, 'A', 'Z') || (isBetween(c, 0xC0, 0xDE) && byteOf(c) != 0xD7);
    return isCapital ? static_cast<char>(byteOf(c) + 0x20) : c;
}

}  // namespace

std::string toUtf8(std::string_view cp1252) {
    std::string result;
    result.reserve(cp1252.size());
    for (const char c : cp1252) append(result, characterOf(byteOf(c)));
    return result;
}

std::string fromUtf8(std::string_view utf8) {
    std::string result;
    result.reserve(utf8.size());
    while (!utf8.empty()) {
        const Decoded next = firstCharacter(utf8);
        result += next.character ? byteFor(*next.character).value_or('?') : '?';
        utf8.remove_prefix(next.byteCount);
    }
    return result;
}

bool isWellFormedUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const Decoded next = firstCharacter(bytes);
        if (!next.character) return false;
        bytes.remove_prefix(next.byteCount);
    }
    return true;
}

bool fitsCodePage(std::string_view utf8) {
    while (!utf8.empty()) {
        const Decoded next = firstCharacter(utf8);
        if (!next.character || !byteFor(*next.character)) return false;
        utf8.remove_prefix(next.byteCount);
    }
    return true;
}

std::string upperCase(std::string_view cp1252) {
    std::string result(cp1252);
    for (char& c : result) c = upperCase(c);
    return result;
}

std::string lowerCase(std::string_view cp1252) {
    std::string result(cp1252);
    for (char& c : result) c = lowerCase(c);
    return result;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return upperCase(x) == upperCase(y); });
}

std::string inOneLine(std::string cp1252) {
    for (char& character : cp1252) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x20 || code == 0x7F) character = ' ';
    }
    return cp1252;
}

std::string trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

}  // namespace qrv
