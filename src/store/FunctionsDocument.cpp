// The document of all functions, in Markdown.
#include <algorithm>
#include <string>
#include <vector>

#include "store/CatalogueCodes.h"
#include "store/FunctionPage.h"

namespace qrv {

namespace {

constexpr std::size_t kLineWidth = 120;

constexpr const char* kHead =
    "# The functions of the controller\n"
    "\n"
    "A QRV runs a program of up to 705 numbered blocks, each with one function of this list. This page is made from "
    "the\n"
    "text in `catalogue/`, from which the build makes the tool's data file too: change the text, then build the "
    "target\n"
    "`docs_functions`. `qrv function NAME` and `qrv function NUMBER` show an entry in the terminal.\n"
    "\n";

std::string anchorOf(const FunctionRow& function) { return "f" + std::to_string(function.fn); }

std::string linkTo(const FunctionRow& function, const std::string& words) {
    return "[" + words + "](#" + anchorOf(function) + ")";
}

const char* kindOf(const FunctionRow& function) {
    if (function.ftype == kAnalog) return "analog";
    return function.ftype == kDiscrete ? "discrete" : "none";
}

/// A formula's asterisks and the like are no marks of emphasis.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '*' || c == '_' || c == '<' || c == '|') result += '\\';
        result += c;
    }
    return result;
}

/// A labelled paragraph. A line that begins with a formula's sign is no item of a list.
std::string paragraphOf(const Paragraph& paragraph) {
    std::string lines = wrapped("**" + paragraph.label + ".** " + escaped(paragraph.text), kLineWidth, 0);
    for (const char* sign : {"\n- ", "\n+ "}) {
        for (std::size_t at = lines.find(sign); at != std::string::npos; at = lines.find(sign, at)) {
            lines.insert(at + 1, 1, '\\');
        }
    }
    return lines + "\n";
}

void addReading(std::string& document, const CatalogueText& text) {
    document += "## How the definitions are read\n\n";
    for (const Paragraph& paragraph : text.common) {
        document += paragraphOf(paragraph);
    }
}

void addPurposeIndex(std::string& document, const CatalogueText& text) {
    document += "## By purpose\n\n";
    for (const GroupRow& group : text.groups) {
        document += "### " + group.title + "\n\n| Name | Number | What it is |\n|---|---|---|\n";
        for (const FunctionRow& function : text.functions) {
            if (function.group != group.key) continue;
            document += "| " + linkTo(function, function.name) + " | " + std::to_string(function.fn) + " | " +
                        escaped(function.title) + " |\n";
        }
        document += "\n";
    }
}

void addNumberIndex(std::string& document, const CatalogueText& text) {
    std::vector<const FunctionRow*> rows;
    for (const FunctionRow& function : text.functions) rows.push_back(&function);
    std::sort(rows.begin(), rows.end(), [](const auto* a, const auto* b) { return a->fn < b->fn; });
    document +=
        "## By number\n\n"
        "Icycle is in words of temporary memory, VolRam in retentive bytes; slots are constants of the block.\n\n"
        "| Number | Name | Output | Inputs | Parameters | Hidden | Slots | Aux analog | Aux discrete | Icycle | VolRam "
        "|\n"
        "|---|---|---|---|---|---|---|---|---|---|---|\n";
    for (const FunctionRow* row : rows) {
        document += "| " + std::to_string(row->fn) + " | " + linkTo(*row, row->name) + " | " + kindOf(*row);
        for (const std::int32_t number : {row->inputs, row->params, row->hidden, row->slots(), row->auxAnalogs,
                                          row->auxDiscretes, row->icycle, row->volRam}) {
            document += " | " + std::to_string(number);
        }
        document += " |\n";
    }
    document += "\n";
}

void addSlots(std::string& document, const CatalogueText& text, const FunctionRow& function) {
    if (function.slots() == 0) return;
    document += "| Slot | | Description | Values |\n|---|---|---|---|\n";
    for (const InputRow* row : text.inputsOf(function.fn)) {
        document += "| " + std::to_string(row->number - 1) + " | I" + std::to_string(row->number) + " | " +
                    escaped(row->description) + " | " + (row->type == kDiscrete ? "discrete" : "analog") + " |\n";
    }
    for (const ParamRow* row : text.paramsOf(function.fn)) {
        const bool isHidden = row->number > function.params;
        document += "| " + std::to_string(row->offset) + " | P" + std::to_string(row->number) + " | " +
                    escaped(row->description) + " | " + (isHidden ? "hidden" : limitsShown(text, *row)) + " |\n";
    }
    document += "\n";
}

void addAuxOutputs(std::string& document, const CatalogueText& text, const FunctionRow& function) {
    if (function.auxAnalogs + function.auxDiscretes == 0) return;
    document += "| Aux output | Short | Description |\n|---|---|---|\n";
    for (const char* kind : {"A", "D"}) {
        for (const AuxOutputRow* row : text.auxOutputsOf(function.fn, kind)) {
            document += "| " + row->kind + std::to_string(row->ordinal) + " | " + escaped(row->shortText) + " | " +
                        escaped(row->description) + " |\n";
        }
    }
    document += "\n";
}

void addEntry(std::string& document, const CatalogueText& text, const FunctionRow& function) {
    document += "<a id=\"" + anchorOf(function) + "\"></a>\n### " + std::to_string(function.fn) + " " + function.name +
                "\n\n" + escaped(function.title) + ". Main output: " + kindOf(function) +
                ". Memory: " + std::to_string(function.icycle) + " words, " + std::to_string(function.volRam) +
                " retentive bytes.\n\n";
    addSlots(document, text, function);
    addAuxOutputs(document, text, function);
    const Definition* definition = text.definition(function.fn);
    if (definition == nullptr) return;
    for (const Paragraph& paragraph : definition->paragraphs) {
        document += paragraphOf(paragraph);
    }
}

}  // namespace

std::string functionsDocument(const CatalogueText& text) {
    std::string document = kHead;
    addReading(document, text);
    addPurposeIndex(document, text);
    addNumberIndex(document, text);
    document += "## The functions\n\n";
    for (const FunctionRow& function : text.functions) addEntry(document, text, function);
    while (document.ends_with("\n\n")) document.pop_back();
    return document;
}

}  // namespace qrv
