#include "tools/ConfigurationSummary.h"

#include <algorithm>

#include "blocks/MemoryUse.h"
#include "platform/CodePage.h"
#include "platform/Numerals.h"
#include "store/ControllerLimits.h"
#include "store/DefaultRows.h"
#include "store/KnownFunctions.h"

namespace qrv {

namespace {

// What a controller takes, besides what a download tests.
constexpr std::int32_t kMostAlarms = 80;
constexpr std::int32_t kRegisters = 128;

/// The rows of one table, with their fields by name.
class Rows {
 public:
    Rows(const ConfigurationContent& content, std::string_view table) : content_(content.of(table)) {}

    [[nodiscard]] std::int32_t count() const { return toInt32(content_.rows.size()); }
    [[nodiscard]] const std::vector<TableRow>& all() const { return content_.rows; }

    [[nodiscard]] const Value& field(const TableRow& row, std::string_view column) const {
        return row[static_cast<std::size_t>(content_.table->columnIndex(column))];
    }
    /// 0 for a null.
    [[nodiscard]] std::int32_t number(const TableRow& row, std::string_view column) const {
        const auto* number = std::get_if<std::int32_t>(&field(row, column));
        return number == nullptr ? 0 : *number;
    }
    /// "" for a null.
    [[nodiscard]] std::string text(const TableRow& row, std::string_view column) const {
        const auto* text = std::get_if<std::string>(&field(row, column));
        return text == nullptr ? std::string{} : *text;
    }
    template <typename Claim>
    [[nodiscard]] Usage usageWhere(Claim claim) const {
        return {.used = toInt32(std::ranges::count_if(content_.rows, claim)), .most = count()};
    }
    [[nodiscard]] Usage usageWithText(std::string_view column) const {
        return usageWhere([&](const TableRow& row) { return !trimmed(text(row, column)).empty(); });
    }

 private:
    const TableContent& content_;
};

void addComments(const ConfigurationContent& content, ConfigurationSummary& summary) {
    const Rows comments(content, "Comments");
    for (const TableRow& row : comments.all()) {
        summary.title = comments.text(row, "Title");
        summary.configLine = comments.text(row, "Config");
    }
}

void addVersion(const ConfigurationContent& content, ConfigurationSummary& summary) {
    const Rows version(content, "Version");
    for (const TableRow& row : version.all()) {
        if (const auto* level = std::get_if<float>(&version.field(row, "RevLevel"))) {
            // A float's own digits: 5.01 and not its neighbour in double precision.
            summary.layoutRevision = formatNumber(static_cast<double>(*level), 2);
        }
        summary.version =
            std::to_string(version.number(row, "Major")) + "." + std::to_string(version.number(row, "Minor"));
    }
}

void addBlocks(const ConfigurationContent& content, db1& catalogue, ConfigurationSummary& summary) {
    const Rows blocks(content, "Block List");
    summary.blocks =
        blocks.usageWhere([&](const TableRow& row) { return blocks.number(row, "FunctionNumber") != kNop; });
    summary.retentiveBytes.most = kMostRetentiveBytes;
    catalogue.FuncSetIndex("FN");
    for (const TableRow& row : blocks.all()) {
        catalogue.FuncSeekI(blocks.number(row, "FunctionNumber"));
        if (catalogue.FuncNoMatch()) {
            ++summary.unknownFunctions;
        } else {
            summary.retentiveBytes.used += catalogue.FuncVolRam();
        }
    }
}

Usage changedUnits(const ConfigurationContent& content) {
    const std::vector<TableRow> usual = defaultRows(*content.of("EGUs").table);
    return Rows(content, "EGUs").usageWhere([&usual](const TableRow& row) {
        return std::ranges::find(usual, row) == usual.end();
    });
}

void addModbus(const ConfigurationContent& content, ConfigurationSummary& summary) {
    const Rows polls(content, "Poll List");
    summary.registers.most = summary.coils.most = kRegisters;
    for (const TableRow& row : polls.all()) {
        if (polls.number(row, "BlockNumber") == 0) continue;
        ++(polls.number(row, "Offset") <= kRegisters ? summary.registers : summary.coils).used;
    }
}

}  // namespace

ConfigurationSummary summaryOf(const ConfigurationContent& content, db1& catalogue) {
    ConfigurationSummary summary;
    addComments(content, summary);
    addVersion(content, summary);
    const Rows slots(content, "Slots");
    for (const TableRow& row : slots.all()) summary.boards.push_back(slots.text(row, "Description"));
    addBlocks(content, catalogue, summary);
    summary.constants = {.used = Rows(content, "Constants").count(), .most = kMostConstants};
    summary.strings = {.used = Rows(content, "ParmString").count(), .most = kMostStrings};
    summary.alarms = {.used = Rows(content, "Alarm List").count(), .most = kMostAlarms};
    summary.menus = Rows(content, "Menu List").usageWithText("MenuTitle");
    summary.screens = Rows(content, "Screen List").usageWithText("ScreenTitle");
    summary.charts = Rows(content, "Chart List").usageWithText("Description");
    summary.engineeringUnits = changedUnits(content);
    summary.blockEngineeringUnits = Rows(content, "Block EGUs").count();
    const Rows loops(content, "Loop List");
    summary.loopEntries = loops.usageWhere([&](const TableRow& row) { return loops.number(row, "LoopID") != 0; });
    addModbus(content, summary);
    return summary;
}

}  // namespace qrv
