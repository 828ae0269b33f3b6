#include "tools/ContentNotes.h"

#include <algorithm>
#include <optional>

#include "blocks/BlockRef.h"
#include "blocks/PageFlag.h"
#include "platform/CodePage.h"
#include "store/CatalogueCodes.h"

namespace qrv {

namespace {

constexpr std::int32_t kNoFunction = -1;

/// The field that names an output; 0 there says that none is named, but in the alarm list.
struct ReferenceColumn {
    std::string_view table;
    std::string_view column;
};
constexpr std::array kReferenceColumns{
    ReferenceColumn{"Alarm List", "BlockNumber"}, ReferenceColumn{"Pens", "Block"},
    ReferenceColumn{"Menu Items", "Block"},       ReferenceColumn{"Screen Items", "Block"},
    ReferenceColumn{"Block EGUs", "Block"},       ReferenceColumn{"Loop List", "LoopBlock"},
    ReferenceColumn{"Poll List", "LogicalAddr"},
};

std::optional<std::int32_t> numberIn(const Table& table, const TableRow& row, std::string_view column) {
    const int ordinal = table.columnIndex(column);
    if (ordinal < 0) return std::nullopt;
    const auto* number = std::get_if<std::int32_t>(&row[static_cast<std::size_t>(ordinal)]);
    return number == nullptr ? std::nullopt : std::optional(*number);
}

bool pages(const Table& table, const TableRow& row) {
    const auto* text = std::get_if<std::string>(&row[static_cast<std::size_t>(table.columnIndex("Description"))]);
    return text != nullptr && isPage(*text);
}

}  // namespace

ContentNotes::ContentNotes(const ConfigurationContent& content, db1& catalogue) : catalogue_(catalogue) {
    functions_.fill(kNoFunction);
    const TableContent& blocks = content.of("Block List");
    for (const TableRow& row : blocks.rows) {
        const auto block = numberIn(*blocks.table, row, "BlockNumber").value_or(-1);
        if (block < 0 || block > kLastBlock) continue;
        functions_[static_cast<std::size_t>(block)] =
            numberIn(*blocks.table, row, "FunctionNumber").value_or(kNoFunction);
    }
}

bool ContentNotes::seekFunctionOf(std::int32_t block) {
    if (block < 0 || block > kLastBlock) return false;
    catalogue_.FuncSetIndex("FN");
    catalogue_.FuncSeekI(functions_[static_cast<std::size_t>(block)]);
    return !catalogue_.FuncNoMatch();
}

std::string ContentNotes::functionName(std::int32_t block) {
    if (seekFunctionOf(block)) return trimmed(catalogue_.FuncName());
    return "no function of the catalogue";
}

std::string ContentNotes::referenceName(std::int32_t word) {
    if (word >= 0 && word <= kLastBlock) return std::to_string(word) + " " + functionName(word);
    const std::string dangling(kNoSuchOutput);
    const bool isWord = word >= INT16_MIN && word <= INT16_MAX;
    const BlockRef ref = BlockRef::ofWord(word);
    if (!isWord || !seekFunctionOf(ref.block)) return dangling;
    const std::string name = std::to_string(ref.block) + " " + trimmed(catalogue_.FuncName());
    catalogue_.AuxSeek(catalogue_.FuncFN(), ref.kind == BlockRef::Kind::Discrete ? "D" : "A", ref.ordinal);
    return name + " " + (catalogue_.AuxNoMatch() ? dangling : trimmed(catalogue_.AuxShort()));
}

std::string ContentNotes::slotNote(std::int32_t block, std::int32_t slot) {
    if (!seekFunctionOf(block) || slot < 0) return {};
    const std::int32_t function = catalogue_.FuncFN();
    const std::int32_t inputs = catalogue_.FuncInputs();
    const std::int32_t params = catalogue_.FuncParams();
    if (slot < inputs) {
        catalogue_.InputSeek(function, slot + 1);
        return "input " + std::to_string(slot + 1) + " " + trimmed(catalogue_.InputDescription());
    }
    const std::int32_t number = slot - inputs + 1;
    catalogue_.ParamSeek(function, number);
    if (catalogue_.ParamNoMatch()) return {};
    const std::string name = trimmed(catalogue_.ParamDescription());
    if (number > params) return "hidden " + std::to_string(number - params) + " " + name;
    return "parameter " + std::to_string(number) + " " + name;
}

std::string ContentNotes::constantNote(std::int32_t block, std::int32_t slot, std::int32_t value) {
    const std::string note = slotNote(block, slot);
    if (!seekFunctionOf(block) || slot >= catalogue_.FuncInputs()) return note;
    return note + " <- " + referenceName(value);
}

std::string ContentNotes::rawNote(const Table& table, const TableRow& row) {
    const auto number = [&](std::string_view column) { return numberIn(table, row, column); };
    if (table.name == "Block List") return functionName(number("BlockNumber").value_or(-1));
    if (table.name == "ParmString") return slotNote(number("BlockNumber").value_or(-1), number("Offset").value_or(-1));
    if (table.name == "Constants") {
        const auto value = number("ConstantValue");
        if (!value) return {};
        return constantNote(number("BlockNumber").value_or(-1), number("Offset").value_or(-1), *value);
    }
    for (const auto& [name, column] : kReferenceColumns) {
        if (table.name != name) continue;
        const auto word = number(column);
        const bool namesNone = !word || (*word == 0 && !isKeyPart(table, column));
        if (namesNone) return {};
        return referenceName(*word) + (table.name == "Alarm List" && pages(table, row) ? ", pages" : "");
    }
    return {};
}

std::string ContentNotes::noteOf(const Table& table, const TableRow& row) {
    return toUtf8(trimmed(inOneLine(rawNote(table, row))));
}

}  // namespace qrv
