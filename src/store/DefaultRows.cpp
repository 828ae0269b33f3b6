#include "store/DefaultRows.h"

#include <array>
#include <string>
#include <string_view>

#include "store/KnownFunctions.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

using Rows = std::vector<std::vector<Value>>;

constexpr std::int32_t kMenus = 25;
constexpr std::int32_t kItemsOfMenu = 10;
constexpr std::int32_t kScreens = 25;
constexpr std::int32_t kItemsOfScreen = 150;
constexpr std::int32_t kCharts = 35;
constexpr std::int32_t kPensOfChart = 4;
constexpr std::int32_t kEguCount = 50;
constexpr std::int32_t kLoops = 20;
constexpr std::int32_t kPolls = 256;
constexpr std::int32_t kPagerStrings = 5;
constexpr std::int32_t kUnusedScreenItem = 99;

const Value kNull{};

Value textValue(std::string_view words) { return std::string(words); }

Rows blockRows() {
    Rows rows;
    for (std::int32_t block = 0; block < kBlockCount; ++block) {
        rows.push_back({block, std::int32_t{defaultFunction(block)}, 0, 0, 0, textValue(""), textValue("")});
    }
    return rows;
}

Rows numberedRows(std::int32_t first, std::int32_t count, const std::vector<Value>& rest) {
    Rows rows;
    for (std::int32_t number = first; number < first + count; ++number) {
        std::vector<Value>& row = rows.emplace_back(1, Value{number});
        row.insert(row.end(), rest.begin(), rest.end());
    }
    return rows;
}

/// Rows keyed by two numbers: `count` owners from `first` on, each with `places` places from 1.
Rows placedRows(std::int32_t first, std::int32_t count, std::int32_t places, const std::vector<Value>& rest) {
    Rows rows;
    for (std::int32_t owner = first; owner < first + count; ++owner) {
        for (std::int32_t place = 1; place <= places; ++place) {
            std::vector<Value>& row = rows.emplace_back(std::vector<Value>{owner, place});
            row.insert(row.end(), rest.begin(), rest.end());
        }
    }
    return rows;
}

Rows menuRows() {
    Rows rows = numberedRows(0, kMenus, {textValue(""), 0});
    rows.front()[1] = textValue("MAIN MENU");
    return rows;
}

Rows penRows() {
    // Block, Descriptor, Units, Analog, Scale1, Scale12, ScaleDec, BottomTic, LowTic, HighTic, LowTag, HighTag,
    // ScaleMult, Zero, Span, Threshold, Interval, Decimal, GEGU
    return placedRows(1, kCharts, kPensOfChart,
                      {0, textValue(""), textValue(""), 0, 0.0F, 0.0F, 0, 0, 0, 0, textValue(""), textValue(""), 0, 0,
                       0, 2, 15, 0, 0});
}

Rows screenItemRows() {
    // X, Y, Large, Type, Editable, Width, Block, Text0..Text3, Parameter
    return placedRows(1, kScreens, kItemsOfScreen,
                      {kNull, kNull, kNull, kUnusedScreenItem, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull});
}

Rows eguRows() {
    // Name, Decimal, Zero, Span, Units, Comment
    Rows rows = numberedRows(1, kEguCount, {textValue("default"), 2, 0, 10000, textValue("%"), textValue(" ")});
    rows[0] = {1, textValue("THERMISTOR"), 0, -50, 300, textValue("DEG F"), textValue(" ")};
    rows[1] = {2, textValue("J_TC"), 0, 0, 1000, textValue("DEG F"), textValue(" ")};
    rows[2] = {3, textValue("HdrPSI"), 0, 0, 200, textValue("PSI"), textValue(" ")};
    return rows;
}

struct TableRows {
    std::string_view table;
    Rows (*rows)();
};

constexpr std::array kTableRows{
    TableRows{"Block List", blockRows},
    TableRows{"Comments",
              [] {
                  return Rows{{textValue(""), textValue(""), textValue("")}};
              }},
    TableRows{"Pager", [] { return numberedRows(0, kPagerStrings, {textValue("")}); }},
    TableRows{"Slots", [] { return numberedRows(0, kSlotCount, {textValue("")}); }},
    TableRows{"Menu List", menuRows},
    TableRows{"Menu Items",
              [] {
                  return placedRows(0, kMenus, kItemsOfMenu, {textValue(""), 0, 0, 0});
              }},
    TableRows{"Screen List",
              [] {
                  return numberedRows(1, kScreens, {textValue(""), 0, 1});
              }},
    TableRows{"Screen Items", screenItemRows},
    TableRows{"Chart List", [] { return numberedRows(1, kCharts, {textValue("")}); }},
    TableRows{"Pens", penRows},
    TableRows{"EGUs", eguRows},
    TableRows{"Loop List",
              [] {
                  return numberedRows(1, kLoops, {textValue(" "), 0, 0});
              }},
    TableRows{"Version",
              [] {
                  return Rows{{5.01F, textValue("Describe"), 3, 1}};
              }},
    TableRows{"Poll List",
              [] {
                  return numberedRows(1, kPolls, {0, textValue(""), 0, textValue(""), 0});
              }},
    TableRows{"mod comm",
              [] {
                  return Rows{{0, 0, 0, 0, 0, 1}};
              }},
};

}  // namespace

std::int16_t defaultFunction(std::int32_t block) {
    switch (block) {
        case 0: return 0;
        case 1: return 1;
        case 2: return 90;
        case 3: return 91;
        default: return kNop;
    }
}

std::vector<std::vector<Value>> defaultRows(const Table& table) {
    for (const TableRows& known : kTableRows) {
        if (known.table == table.name) return known.rows();
    }
    return {};
}

}  // namespace qrv
