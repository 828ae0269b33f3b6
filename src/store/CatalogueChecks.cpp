#include "store/CatalogueChecks.h"

#include <algorithm>

#include "platform/Numerals.h"
#include "store/CatalogueCodes.h"
#include "store/CatalogueSlots.h"
#include "store/KnownFunctions.h"
#include "store/Schema.h"

namespace qrv {

namespace {

constexpr std::string_view kLabels[] = {"Output", "Limits", "Start-up", "Bad source"};

bool isPrintable(char c) { return c >= ' ' && c <= '~'; }

bool isSoundText(std::string_view text) {
    return !text.empty() && text.front() != ' ' && text.back() != ' ' &&
           std::all_of(text.begin(), text.end(), isPrintable);
}

bool isLowerCase(char c) { return c >= 'a' && c <= 'z'; }

template <typename Row, typename... Members>
void addUnprintable(CataloguePlaces& places, const std::vector<Row>& rows, std::string_view file, Members... members) {
    for (const Row& row : rows) {
        for (const std::string* member : {&(row.*members)...}) {
            if (!isSoundText(*member)) places.push_back({file, row.line, *member});
        }
    }
}

template <typename Row>
void addStrays(CataloguePlaces& places, const CatalogueText& text, const std::vector<Row>& rows,
               std::string_view file) {
    for (const Row& row : rows) {
        if (text.function(row.fn) == nullptr) places.push_back({file, row.line, std::to_string(row.fn)});
    }
}

/// The first of the rows that is not numbered as its place says, or the row that is missing or too many.
template <typename Row>
void addMisnumbered(CataloguePlaces& places, const std::vector<const Row*>& rows, std::int32_t Row::*number,
                    std::int32_t count, std::string_view file, const FunctionRow& function) {
    const std::string label = std::to_string(function.fn) + " " + function.name;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto due = static_cast<std::int32_t>(i) + 1;
        if (rows[i]->*number == due && due <= count) continue;
        places.push_back({file, rows[i]->line, label + ", number " + std::to_string(rows[i]->*number)});
        return;
    }
    if (rows.size() < static_cast<std::size_t>(std::max(count, 0))) {
        places.push_back({file, 0, label + ", number " + std::to_string(rows.size() + 1)});
    }
}

}  // namespace

bool isOneOf(std::string_view word, std::span<const std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool isUpperCaseWord(std::string_view word, std::size_t longest) {
    return !word.empty() && word.size() <= longest && isInCapitals(word) && word.find(' ') == std::string_view::npos;
}

bool isInCapitals(std::string_view text) {
    return isSoundText(text) && std::none_of(text.begin(), text.end(), isLowerCase);
}

bool isAuxShort(std::string_view text) {
    return isSoundText(text) && text.size() <= kLongestAuxShort && !isNumeric(text) && text != "MAIN" &&
           text != kNoSuchOutput;
}

bool isStringFunction(std::int32_t fn) { return isAmong(kStringFunctions, fn); }

bool hasGroup(const CatalogueText& text, std::string_view key) {
    return std::any_of(text.groups.begin(), text.groups.end(), [key](const GroupRow& row) { return row.key == key; });
}

bool isHidden(const CatalogueText& text, const ParamRow& row) {
    const FunctionRow* function = text.function(row.fn);
    return function != nullptr && row.number > function->params;
}

bool countStandsBefore(const CatalogueText& text, const ParamRow& row) {
    const auto isCount = [&](std::int32_t number) {
        const ParamRow* param = text.param(row.fn, number);
        return param != nullptr && param->type == kDecimalCountParameter;
    };
    if (row.number % 2 == 1) return row.number >= 3 && isCount(row.number - 1);
    return row.number >= 4 && isCount(row.number - 2) && !isCount(row.number - 1);
}

std::string_view shownDescription(std::string_view description) {
    const std::size_t cut = description.find(" INPUT");
    if (cut == 0 || cut == std::string_view::npos) return description;
    return description.substr(0, cut);
}

std::string functionLabel(const CatalogueText& text, std::int32_t fn) {
    const FunctionRow* function = text.function(fn);
    return std::to_string(fn) + (function == nullptr ? "" : " " + function->name);
}

CataloguePlaces textsNotPrintable(const CatalogueText& text) {
    CataloguePlaces places;
    addUnprintable(places, text.functions, kFunctionsFile, &FunctionRow::name, &FunctionRow::title);
    addUnprintable(places, text.inputs, kInputsFile, &InputRow::description, &InputRow::shortName);
    addUnprintable(places, text.params, kParamsFile, &ParamRow::description);
    addUnprintable(places, text.auxOutputs, kAuxOutputsFile, &AuxOutputRow::description, &AuxOutputRow::shortText);
    return places;
}

CataloguePlaces namesTwice(const CatalogueText& text) {
    CataloguePlaces places;
    for (auto row = text.functions.begin(); row != text.functions.end(); ++row) {
        const bool isTaken = std::any_of(text.functions.begin(), row,
                                         [&](const FunctionRow& earlier) { return sameName(earlier.name, row->name); });
        if (isTaken) places.push_back({kFunctionsFile, row->line, row->name});
    }
    return places;
}

CataloguePlaces rowsOfNoFunction(const CatalogueText& text) {
    CataloguePlaces places;
    addStrays(places, text, text.inputs, kInputsFile);
    addStrays(places, text, text.params, kParamsFile);
    addStrays(places, text, text.auxOutputs, kAuxOutputsFile);
    return places;
}

CataloguePlaces inputsMisnumbered(const CatalogueText& text) {
    CataloguePlaces places;
    for (const FunctionRow& row : text.functions) {
        addMisnumbered(places, text.inputsOf(row.fn), &InputRow::number, row.inputs, kInputsFile, row);
    }
    return places;
}

CataloguePlaces paramsMisnumbered(const CatalogueText& text) {
    CataloguePlaces places;
    for (const FunctionRow& row : text.functions) {
        addMisnumbered(places, text.paramsOf(row.fn), &ParamRow::number, row.params + row.hidden, kParamsFile, row);
    }
    return places;
}

CataloguePlaces auxOutputsMisnumbered(const CatalogueText& text) {
    CataloguePlaces places;
    for (const FunctionRow& row : text.functions) {
        addMisnumbered(places, text.auxOutputsOf(row.fn, "A"), &AuxOutputRow::ordinal, row.auxAnalogs, kAuxOutputsFile,
                       row);
        addMisnumbered(places, text.auxOutputsOf(row.fn, "D"), &AuxOutputRow::ordinal, row.auxDiscretes,
                       kAuxOutputsFile, row);
    }
    return places;
}

CataloguePlaces auxTextsTwice(const CatalogueText& text) {
    CataloguePlaces places;
    for (auto row = text.auxOutputs.begin(); row != text.auxOutputs.end(); ++row) {
        const bool isTaken = std::any_of(text.auxOutputs.begin(), row, [&](const AuxOutputRow& earlier) {
            return earlier.fn == row->fn && earlier.kind == row->kind &&
                   (earlier.shortText == row->shortText || earlier.description == row->description);
        });
        if (isTaken) places.push_back({kAuxOutputsFile, row->line, functionLabel(text, row->fn)});
    }
    return places;
}

CataloguePlaces definitionsMissing(const CatalogueText& text) {
    CataloguePlaces places;
    for (const FunctionRow& row : text.functions) {
        const Definition* definition = text.definition(row.fn);
        const bool isThere = definition != nullptr && definition->name == row.name &&
                             definition->file == "definitions/" + row.group + ".txt";
        if (!isThere) places.push_back({kFunctionsFile, row.line, functionLabel(text, row.fn)});
    }
    for (const Definition& definition : text.definitions) {
        const bool isTheOne = text.function(definition.fn) != nullptr && text.definition(definition.fn) == &definition;
        if (!isTheOne) places.push_back({definition.file, definition.line, definition.name});
    }
    return places;
}

bool isComplete(const Definition& definition) {
    return std::equal(definition.paragraphs.begin(), definition.paragraphs.end(), std::begin(kLabels),
                      std::end(kLabels), [](const Paragraph& paragraph, std::string_view label) {
                          return paragraph.label == label && !paragraph.text.empty();
                      });
}

bool namesEverySlot(const CatalogueText& text, const Definition& definition) {
    const FunctionRow* function = text.function(definition.fn);
    if (function == nullptr) return true;
    const std::set<NamedSlot> named = slotsNamedIn(definition);
    const std::set<NamedSlot> due = slotsOf(*function);
    return std::includes(named.begin(), named.end(), due.begin(), due.end());
}

bool namesNothingElse(const CatalogueText& text, const Definition& definition) {
    const FunctionRow* function = text.function(definition.fn);
    if (function == nullptr) return true;
    const std::set<NamedSlot> named = slotsNamedIn(definition);
    const std::set<NamedSlot> due = slotsOf(*function);
    return std::includes(due.begin(), due.end(), named.begin(), named.end());
}

}  // namespace qrv
