#include "store/FunctionPage.h"

#include <algorithm>

#include "platform/Numerals.h"
#include "store/CatalogueCodes.h"
#include "store/Schema.h"

namespace qrv {

namespace {

constexpr std::size_t kPageWidth = 80;
constexpr std::size_t kTextIndent = 2;
constexpr char kPageMark = '\f';

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

std::string counted(std::int32_t count, std::string_view one, std::string_view many) {
    return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

std::string outputKind(std::int32_t ftype) {
    if (ftype == kAnalog) return "analog";
    return ftype == kDiscrete ? "discrete" : "none";
}

std::string memoryLine(const FunctionRow& function) {
    return counted(function.icycle, "word", "words") + " temporary, " + counted(function.volRam, "byte", "bytes") +
           " retentive";
}

std::string slotsLine(const FunctionRow& function) {
    std::string line = std::to_string(function.slots());
    if (function.slots() == 0) return line;
    line +=
        " (" + counted(function.inputs, "input", "inputs") + ", " + counted(function.params, "parameter", "parameters");
    if (function.hidden > 0) line += ", " + std::to_string(function.hidden) + " hidden";
    return line + ")";
}

std::string headingOf(const FunctionRow& function) {
    return std::to_string(function.fn) + " " + function.name + "  " + function.title;
}

std::string purposeOf(const CatalogueText& text, const FunctionRow& function) {
    for (const GroupRow& group : text.groups) {
        if (group.key == function.group) return group.title;
    }
    return "";
}

void addInputs(std::string& page, const CatalogueText& text, std::int32_t fn) {
    const auto rows = text.inputsOf(fn);
    if (rows.empty()) return;
    page += "\nINPUTS\n";
    for (const InputRow* row : rows) {
        page += "  " + padded("I" + std::to_string(row->number), 5) + (row->type == kDiscrete ? "D  " : "A  ") +
                row->description + "\n";
    }
}

void addParams(std::string& page, const CatalogueText& text, const FunctionRow& function) {
    const auto rows = text.paramsOf(function.fn);
    if (rows.empty()) return;
    std::size_t width = 0;
    for (const ParamRow* row : rows) width = std::max(width, row->description.size());
    page += "\nPARAMETERS\n";
    for (const ParamRow* row : rows) {
        const bool isHidden = row->number > function.params;
        page += "  " + padded("P" + std::to_string(row->number), 5) + padded(row->description, width) + "  " +
                (isHidden ? "hidden" : limitsShown(text, *row)) + "\n";
    }
}

void addAuxOutputs(std::string& page, const CatalogueText& text, std::int32_t fn) {
    const auto analogs = text.auxOutputsOf(fn, "A");
    const auto discretes = text.auxOutputsOf(fn, "D");
    if (analogs.empty() && discretes.empty()) return;
    page += "\nAUXILIARY OUTPUTS\n";
    for (const auto& rows : {analogs, discretes}) {
        for (const AuxOutputRow* row : rows) {
            page += "  " + padded(row->kind + std::to_string(row->ordinal), 5) + padded(row->shortText, 9) +
                    row->description + "\n";
        }
    }
}

/// The part of `pages` between the page mark at `start` and the next one.
std::string_view pageAt(std::string_view pages, std::size_t start) {
    const std::string_view rest = pages.substr(start + 1);
    return rest.substr(0, rest.find(kPageMark));
}

template <typename Visit>
void eachPage(std::string_view pages, Visit visit) {
    for (std::size_t at = pages.find(kPageMark); at != std::string_view::npos; at = pages.find(kPageMark, at + 1)) {
        visit(pageAt(pages, at));
    }
}

std::string_view firstLineOf(std::string_view page) { return page.substr(0, page.find('\n')); }

}  // namespace

std::string wrapped(std::string_view text, std::size_t width, std::size_t indent) {
    const std::string margin(indent, ' ');
    std::string lines;
    std::string line = margin;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
        if (line.size() > indent && line.size() + 1 + word.size() > width) {
            lines += line + "\n";
            line = margin;
        }
        if (line.size() > indent) line += ' ';
        line += word;
    }
    return lines + line + "\n";
}

std::string limitsShown(const CatalogueText& text, const ParamRow& param) {
    if (param.type == kStringParameter) return "text, at most " + std::to_string(param.max) + " characters";
    int scale = param.decimal > 0 ? 3 : 0;
    int shown = param.decimal;
    if (param.type == kCountedParameter) {
        // The count stands just before, or one further off behind another value.
        const ParamRow* before = text.param(param.fn, param.number - 1);
        const bool isNext = before != nullptr && before->type == kDecimalCountParameter;
        const ParamRow* count = isNext ? before : text.param(param.fn, param.number - 2);
        scale = shown = count == nullptr ? 0 : count->initial;
    }
    return formatScaled(param.min, scale, shown) + " to " + formatScaled(param.max, scale, shown) + ", default " +
           formatScaled(param.initial, scale, shown);
}

std::string renderedPage(const CatalogueText& text, const FunctionRow& function) {
    std::string page = headingOf(function) + "\n" + purposeOf(text, function) + "\n\n";
    page += "Main output  " + outputKind(function.ftype) + "\n";
    page += "Slots        " + slotsLine(function) + "\n";
    page += "Memory       " + memoryLine(function) + "\n";
    addInputs(page, text, function.fn);
    addParams(page, text, function);
    addAuxOutputs(page, text, function.fn);
    const Definition* definition = text.definition(function.fn);
    if (definition == nullptr) return page;
    for (const Paragraph& paragraph : definition->paragraphs) {
        page += "\n" + paragraph.label + "\n" + wrapped(paragraph.text, kPageWidth, kTextIndent);
    }
    return page;
}

std::string renderedPages(const CatalogueText& text) {
    std::string pages;
    for (const FunctionRow& function : text.functions) pages += kPageMark + renderedPage(text, function);
    return pages;
}

std::optional<std::string> functionPage(std::string_view pages, std::string_view numberOrName) {
    std::optional<std::string> found;
    eachPage(pages, [&](std::string_view page) {
        const std::string_view heading = firstLineOf(page);
        const std::size_t blank = heading.find(' ');
        if (blank == std::string_view::npos || found) return;
        const std::string_view name = heading.substr(blank + 1, heading.find(' ', blank + 1) - blank - 1);
        if (numberOrName == heading.substr(0, blank) || sameName(numberOrName, name)) found = std::string(page);
    });
    return found;
}

std::vector<std::string> functionHeadings(std::string_view pages) {
    std::vector<std::string> headings;
    eachPage(pages, [&headings](std::string_view page) { headings.emplace_back(firstLineOf(page)); });
    return headings;
}

}  // namespace qrv
