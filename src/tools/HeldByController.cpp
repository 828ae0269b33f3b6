#include "tools/HeldByController.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "store/CatalogueCodes.h"

namespace qrv {

namespace {

// They go into their slot as numbers.
constexpr std::array kNumberParameters{kPlainParameter, kDecimalCountParameter, kCountedParameter};

std::int32_t numberIn(const TableRow& row, std::size_t column) {
    const auto* number = std::get_if<std::int32_t>(&row[column]);
    return number == nullptr ? 0 : *number;
}

std::string textIn(const TableRow& row, std::size_t column) {
    const auto* text = std::get_if<std::string>(&row[column]);
    return text == nullptr ? std::string{} : *text;
}

std::size_t columnOf(const RowDifference& difference, std::string_view name) {
    return static_cast<std::size_t>(difference.table->columnIndex(name));
}

std::map<std::int32_t, std::int32_t> functionsOf(const ConfigurationContent& content) {
    const TableContent& blocks = content.of("Block List");
    const auto number = static_cast<std::size_t>(blocks.table->columnIndex("BlockNumber"));
    const auto function = static_cast<std::size_t>(blocks.table->columnIndex("FunctionNumber"));
    std::map<std::int32_t, std::int32_t> functions;
    for (const TableRow& row : blocks.rows) functions[numberIn(row, number)] = numberIn(row, function);
    return functions;
}

/// Says of the fields that differ whether a controller holds them.
class Holding {
 public:
    Holding(const ConfigurationContent& file, const ConfigurationContent& found, db1& catalogue)
        : catalogue_(catalogue), inFile_(functionsOf(file)), inFound_(functionsOf(found)) {}

    /// @param column  by ordinal
    [[nodiscard]] bool holdsBlockField(const RowDifference& difference, std::size_t column) {
        const std::string_view name = difference.table->columns[column].name;
        return name == "FunctionNumber" || name == "Constants";
    }

    [[nodiscard]] bool holdsConstant(const RowDifference& difference, std::size_t) {
        const TableRow& row = difference.eitherRow();
        const std::int32_t block = numberIn(row, columnOf(difference, "BlockNumber"));
        // Rows too many or too few, and those of another function, are what a reader wants to see.
        if (difference.inA == nullptr || difference.inB == nullptr || inFile_[block] != inFound_[block]) return true;
        catalogue_.FuncSetIndex("FN");
        catalogue_.FuncSeekI(inFile_[block]);
        if (catalogue_.FuncNoMatch()) return true;
        const std::int32_t number = numberIn(row, columnOf(difference, "Offset")) - catalogue_.FuncInputs() + 1;
        if (number < 1) return true;
        if (number > catalogue_.FuncParams()) return false;  // hidden
        catalogue_.ParamSeek(inFile_[block], number);
        return !catalogue_.ParamNoMatch() &&
               std::ranges::find(kNumberParameters, catalogue_.ParamType()) != kNumberParameters.end();
    }

    /// A text comes back as its printable characters.
    [[nodiscard]] bool holdsString(const RowDifference& difference, std::size_t) {
        const std::size_t column = columnOf(difference, "Pstring");
        const auto printable = [&](const TableRow* row) {
            std::string text = row == nullptr ? std::string{} : textIn(*row, column);
            std::erase_if(text, [](unsigned char c) { return c <= 31 || c >= 127; });
            return text;
        };
        return printable(difference.inA) != printable(difference.inB);
    }

 private:
    db1& catalogue_;
    std::map<std::int32_t, std::int32_t> inFile_;
    std::map<std::int32_t, std::int32_t> inFound_;
};

/// A table that a section brings back, as a whole or in part. Boards aren't among them: their texts follow from the
/// functions of their blocks.
struct HeldTable {
    std::string_view section;
    std::string_view table;
    bool (Holding::*holds)(const RowDifference& difference, std::size_t column);
};

constexpr std::array kHeldTables{
    HeldTable{.section = "blocks", .table = "Block List", .holds = &Holding::holdsBlockField},
    HeldTable{.section = "blocks", .table = "Constants", .holds = &Holding::holdsConstant},
    HeldTable{.section = "blocks", .table = "ParmString", .holds = &Holding::holdsString},
};

/// Null for a table of none of the sections.
const HeldTable* heldTable(std::string_view table, const std::vector<std::string>& sections) {
    const auto found = std::ranges::find(kHeldTables, table, &HeldTable::table);
    if (found == kHeldTables.end()) return nullptr;
    const bool isWanted = sections.empty() || std::ranges::find(sections, found->section) != sections.end();
    return isWanted ? &*found : nullptr;
}

}  // namespace

HeldDifferences heldDifferences(const ConfigurationContent& file, const ConfigurationContent& found, db1& catalogue,
                                const std::vector<std::string>& sections) {
    Holding holding(file, found, catalogue);
    HeldDifferences result;
    for (RowDifference& difference : differencesBetween(file, found)) {
        const HeldTable* table = heldTable(difference.table->name, sections);
        if (table == nullptr) continue;
        const auto isHeld = [&](std::size_t column) { return (holding.*table->holds)(difference, column); };
        if (difference.inA == nullptr || difference.inB == nullptr) {
            if (isHeld(0)) {
                result.differing.push_back(std::move(difference));
            } else {
                ++result.notHeld;
            }
            continue;
        }
        result.notHeld += std::erase_if(difference.columns, [&](std::size_t column) { return !isHeld(column); });
        if (!difference.columns.empty()) result.differing.push_back(std::move(difference));
    }
    return result;
}

}  // namespace qrv
