#include "store/CatalogueSlots.h"

#include <cctype>
#include <charconv>
#include <string_view>

namespace qrv {

namespace {

constexpr std::string_view kLetters = "IPAD";
constexpr std::int32_t kMostSlots = 255;

bool isWordCharacter(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; }

/// Takes digits off the front; -1 where there are none.
std::int32_t takeNumber(std::string_view& text) {
    std::int32_t number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number < 0) return -1;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// Takes "..D8" or "..8" off the front; -1 where the text goes on otherwise.
std::int32_t takeRangeEnd(std::string_view& text, char letter) {
    if (!text.starts_with("..")) return -1;
    std::string_view rest = text.substr(2);
    if (rest.starts_with(letter)) rest.remove_prefix(1);
    const std::int32_t number = takeNumber(rest);
    if (number >= 0) text = rest;
    return number;
}

void addSlotsOf(std::string_view text, std::set<NamedSlot>& slots) {
    char before = ' ';
    while (!text.empty()) {
        const char letter = text.front();
        const bool begins = !isWordCharacter(before) && kLetters.find(letter) != std::string_view::npos;
        text.remove_prefix(1);
        before = letter;
        if (!begins) continue;
        std::string_view rest = text;
        const std::int32_t first = takeNumber(rest);
        if (first < 0) continue;
        std::int32_t last = takeRangeEnd(rest, letter);
        if (last < 0) last = first;
        if (!rest.empty() && isWordCharacter(rest.front())) continue;
        for (std::int32_t number = first; number <= last && number <= kMostSlots; ++number)
            slots.insert({letter, number});
        text = rest;
        before = '0';
    }
}

}  // namespace

std::set<NamedSlot> slotsNamedIn(const Definition& definition) {
    std::set<NamedSlot> slots;
    for (const Paragraph& paragraph : definition.paragraphs) addSlotsOf(paragraph.text, slots);
    return slots;
}

std::set<NamedSlot> slotsOf(const FunctionRow& function) {
    std::set<NamedSlot> slots;
    const auto add = [&slots](char letter, std::int32_t count) {
        for (std::int32_t number = 1; number <= count; ++number) slots.insert({letter, number});
    };
    add('I', function.inputs);
    add('P', function.params + function.hidden);
    add('A', function.auxAnalogs);
    add('D', function.auxDiscretes);
    return slots;
}

}  // namespace qrv
