#include "store/Schema.h"

#include <array>
#include <cassert>
#include <limits>

namespace qrv {

namespace {

using enum ColumnType;

constexpr Column text(std::string_view name) { return {.name = name, .type = Text, .emptyAllowed = true}; }
constexpr Column memo(std::string_view name) { return {.name = name, .type = Memo, .emptyAllowed = true}; }
constexpr Column integer(std::string_view name) { return {.name = name, .type = Integer}; }
constexpr Column longInteger(std::string_view name) { return {.name = name, .type = Long}; }
constexpr Column byte(std::string_view name) { return {.name = name, .type = Byte}; }
constexpr Column boolean(std::string_view name) { return {.name = name, .type = Boolean}; }
constexpr Column single(std::string_view name) { return {.name = name, .type = Single}; }

constexpr std::array kBlockList{
    integer("BlockNumber"), Column{.name = "FunctionNumber", .type = Integer, .needed = true},
    integer("Constants"),   integer("TempRam"),
    integer("VolRam"),      memo("Comment"),
    memo("VisioComment")};
constexpr std::array kBlockListIndex{Index{.name = "BlockNumber", .parts = {"BlockNumber"}}};

constexpr std::array kAlarmList{integer("BlockNumber"), text("Description"), text("Event0"), text("Event1"),
                                boolean("IsAlarm")};
// Not unique: two rows may name the same word, and the one added first is found.
constexpr std::array kAlarmListIndex{Index{.name = "PrimaryKey", .parts = {"BlockNumber"}, .unique = false}};

constexpr std::array kSlots{integer("Offset"), text("Description")};
constexpr std::array kOffsetIndex{Index{.name = "PrimaryKey", .parts = {"Offset"}}};

constexpr std::array kChartList{integer("ChartNumber"), text("Description")};
constexpr std::array kChartListIndex{Index{.name = "PrimaryKey", .parts = {"ChartNumber"}}};

constexpr std::array kPens{integer("ChartNumber"), integer("Offset"),    integer("Block"),     text("Descriptor"),
                           text("Units"),          boolean("Analog"),    single("Scale1"),     single("Scale12"),
                           integer("ScaleDec"),    byte("BottomTic"),    byte("LowTic"),       byte("HighTic"),
                           text("LowTag"),         text("HighTag"),      integer("ScaleMult"), longInteger("Zero"),
                           longInteger("Span"),    integer("Threshold"), integer("Interval"),  integer("Decimal"),
                           integer("GEGU")};
constexpr std::array kPensIndex{Index{.name = "PrimaryKey", .parts = {"ChartNumber", "Offset"}}};

constexpr std::array kMenuList{integer("MenuNumber"), text("MenuTitle"), integer("MenuCount")};
constexpr std::array kMenuListIndex{Index{.name = "PrimaryKey", .parts = {"MenuNumber"}}};

constexpr std::array kMenuItems{integer("MenuNumber"), integer("Offset"), text("Description"),
                                byte("Type"),          integer("Target"), integer("Block")};
constexpr std::array kMenuItemsIndex{Index{.name = "PrimaryKey", .parts = {"MenuNumber", "Offset"}}};

constexpr std::array kScreenList{integer("ScreenNumber"), text("ScreenTitle"), boolean("ScreenAlarm"),
                                 byte("Password")};
constexpr std::array kScreenListIndex{Index{.name = "PrimaryKey", .parts = {"ScreenNumber"}}};

constexpr std::array kScreenItems{integer("ScreenNumber"), integer("Offset"),   byte("X"),        byte("Y"),
                                  byte("Large"),           byte("Type"),        byte("Editable"), byte("Width"),
                                  integer("Block"),        text("Text0"),       text("Text1"),    text("Text2"),
                                  text("Text3"),           integer("Parameter")};
constexpr std::array kScreenItemsIndex{Index{.name = "PrimaryKey", .parts = {"ScreenNumber", "Offset"}}};

constexpr std::array kConstants{integer("BlockNumber"), integer("Offset"), longInteger("ConstantValue")};
constexpr std::array kBlockOffsetIndex{Index{.name = "PrimaryKey", .parts = {"BlockNumber", "Offset"}}};

constexpr std::array kComments{Column{.name = "Title", .type = Text, .emptyAllowed = true, .size = 80}, memo("Comment"),
                               Column{.name = "Config", .type = Text, .emptyAllowed = true, .size = 80}};

constexpr std::array kParmString{integer("BlockNumber"), integer("Offset"), Column{.name = "Pstring", .type = Text}};

constexpr std::array kEgus{integer("EGUID"),    text("Name"),  integer("Decimal"), longInteger("Zero"),
                           longInteger("Span"), text("Units"), text("Comment")};
constexpr std::array kEgusIndex{Index{.name = "PrimaryKey", .parts = {"EGUID"}}};

constexpr std::array kLoopList{integer("LoopIndex"), text("LoopText"), integer("LoopID"), integer("LoopBlock")};
constexpr std::array kLoopListIndex{Index{.name = "PrimaryKey", .parts = {"LoopIndex"}}};

constexpr std::array kBlockEgus{integer("Block"),    integer("Param"),   integer("GEGU"), longInteger("Zero"),
                                longInteger("Span"), integer("Decimal"), text("Units")};
constexpr std::array kBlockEgusIndex{Index{.name = "PrimaryKey", .parts = {"Block", "Param"}}};

constexpr std::array kVersion{single("RevLevel"), Column{.name = "Vtext", .type = Text}, integer("Major"),
                              integer("Minor")};

constexpr std::array kPollList{integer("Offset"), integer("BlockNumber"), text("AuxOut"),
                               integer("Param"),  text("Comments"),       integer("LogicalAddr")};

constexpr std::array kModComm{integer("Baud"), integer("Length"),   integer("Parity"),
                              integer("Stop"), integer("Protocol"), integer("Address")};

constexpr std::array kPager{integer("Offset"), text("PagerInfo")};

// The catalogue. No field is ever null.
constexpr std::array kFuncs{integer("fn"),         text("Fname"),           integer("Icycle"), integer("VolRam"),
                            integer("INPUTS"),     integer("params"),       integer("Hidden"), integer("Single"),
                            integer("AuxAnalogs"), integer("AuxDiscretes"), integer("ftype")};
constexpr std::array kFuncsIndexes{Index{.name = "PrimaryKey", .parts = {"fn"}},
                                   Index{.name = "Fname", .parts = {"Fname"}}};
constexpr std::array kInputs{integer("fn"),     integer("In"),       text("Description"),
                             text("ShortName"), integer("Security"), integer("type")};
constexpr std::array kInputsIndex{Index{.name = "PrimaryKey", .parts = {"fn", "In"}}};
constexpr std::array kParams{integer("fn"),       integer("pn"),      text("Description"),    integer("offset"),
                             longInteger("Min"),  longInteger("Max"), longInteger("Default"), integer("decimal"),
                             integer("Security"), integer("type")};
constexpr std::array kParamsIndex{Index{.name = "PrimaryKey", .parts = {"fn", "pn"}}};
constexpr std::array kAuxOutputs{integer("fn"), text("Kind"), integer("Ordinal"), text("Description"), text("Short")};
constexpr std::array kAuxOutputsIndex{Index{.name = "PrimaryKey", .parts = {"fn", "Kind", "Ordinal"}}};
constexpr std::array kCatalogueVersion{text("VersionString")};

// On disk: the order in which a new file gets its tables.
constexpr std::array kConfigurationTables{
    Table{"Block List", kBlockList, kBlockListIndex, RowSet::Fixed},
    Table{"Alarm List", kAlarmList, kAlarmListIndex},
    Table{"Slots", kSlots, kOffsetIndex, RowSet::Fixed},
    Table{"Chart List", kChartList, kChartListIndex, RowSet::Fixed},
    Table{"Pens", kPens, kPensIndex, RowSet::Fixed},
    Table{"Menu List", kMenuList, kMenuListIndex, RowSet::Fixed},
    Table{"Menu Items", kMenuItems, kMenuItemsIndex},
    Table{"Screen List", kScreenList, kScreenListIndex, RowSet::Fixed},
    Table{"Screen Items", kScreenItems, kScreenItemsIndex},
    Table{"Constants", kConstants, kBlockOffsetIndex},
    Table{"Comments", kComments, {}, RowSet::Fixed},
    Table{"ParmString", kParmString, kBlockOffsetIndex},
    Table{"EGUs", kEgus, kEgusIndex, RowSet::Fixed},
    Table{"Loop List", kLoopList, kLoopListIndex, RowSet::Fixed},
    Table{"Block EGUs", kBlockEgus, kBlockEgusIndex},
    Table{"Version", kVersion, {}, RowSet::Fixed},
    Table{"Poll List", kPollList, kOffsetIndex},
    Table{"mod comm", kModComm, {}, RowSet::Fixed},
    // No index: the rows are walked as they were added.
    Table{"Pager", kPager, {}, RowSet::Fixed},
};

constexpr std::array kCatalogueTables{
    Table{"Funcs", kFuncs, kFuncsIndexes, RowSet::Free, false},
    Table{"Inputs", kInputs, kInputsIndex, RowSet::Free, false},
    Table{"Params", kParams, kParamsIndex, RowSet::Free, false},
    Table{"AuxOutputs", kAuxOutputs, kAuxOutputsIndex, RowSet::Free, false},
    Table{"Version", kCatalogueVersion, {}, RowSet::Free, false},
};

constexpr bool hasColumn(const Table& table, std::string_view name) {
    for (const Column& column : table.columns) {
        if (column.name == name) return true;
    }
    return false;
}

constexpr bool isSound(std::span<const Table> tables) {
    for (std::size_t i = 0; i < tables.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (sameName(tables[i].name, tables[j].name)) return false;
        }
        for (const Index& index : tables[i].indexes) {
            for (std::size_t part = 0; part < index.partCount(); ++part) {
                if (!hasColumn(tables[i], index.parts[part])) return false;
            }
        }
        const auto columns = tables[i].columns;
        for (std::size_t a = 0; a < columns.size(); ++a) {
            for (std::size_t b = 0; b < a; ++b) {
                if (sameName(columns[a].name, columns[b].name)) return false;
            }
        }
    }
    return true;
}
static_assert(isSound(kConfigurationTables) && isSound(kCatalogueTables),
              "table and column names are unique, and every index names columns of its table");
static_assert(kConfigurationTables.size() == 19);

std::string rangeCheck(const std::string& name, ColumnType type) {
    const auto [least, greatest] = rangeOf(type);
    return " CHECK (" + name + " BETWEEN " + std::to_string(least) + " AND " + std::to_string(greatest) + ")";
}

}  // namespace

int Table::columnIndex(std::string_view column) const {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (sameName(columns[i].name, column)) return static_cast<int>(i);
    }
    return -1;
}

std::vector<std::size_t> identityOf(const Table& table) {
    std::vector<std::size_t> columns;
    for (const Index& index : table.indexes) {
        for (std::size_t part = 0; part < index.partCount(); ++part) {
            columns.push_back(static_cast<std::size_t>(table.columnIndex(index.parts[part])));
        }
    }
    if (columns.empty() && sameName(table.name, "Pager")) columns.push_back(0);
    return columns;
}

NumberRange rangeOf(ColumnType type) {
    switch (type) {
        case Byte: return {0, 255};
        case Long: return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
        default: return {std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()};
    }
}

std::span<const Table> configurationTables() { return kConfigurationTables; }

std::span<const Table> catalogueTables() { return kCatalogueTables; }

const Table& tableNamed(std::span<const Table> tables, std::string_view name) {
    for (const Table& table : tables) {
        if (sameName(table.name, name)) return table;
    }
    assert(false && "a table that no file has");
    return tables.front();
}

bool isKeyPart(const Table& table, std::string_view column) {
    for (const Index& index : table.indexes) {
        for (std::size_t part = 0; part < index.partCount(); ++part) {
            if (index.parts[part] == column) return true;
        }
    }
    return false;
}

bool mayBeNull(const Table& table, const Column& column) {
    return table.nullAllowed && !column.needed && !isKeyPart(table, column.name);
}

std::string bracketed(std::string_view name) { return "[" + std::string(name) + "]"; }

std::string columnSql(const Column& column, bool isRequired) {
    const std::string name = bracketed(column.name);
    const std::string required = isRequired ? " NOT NULL" : "";
    switch (column.type) {
        // Not "INTEGER": such a key would become the row's own number and lose the order of adding.
        case Integer:
        case Long:
        case Byte:
        case Boolean: return name + " INT" + required + rangeCheck(name, column.type);
        case Single: return name + " REAL" + required;
        case Text:
        case Memo: break;
    }
    std::string sql = name + " TEXT" + required;
    if (!column.emptyAllowed) sql += " CHECK (length(" + name + ") > 0)";
    if (column.size > 0) sql += " CHECK (length(" + name + ") <= " + std::to_string(column.size) + ")";
    return sql;
}

std::string createTableSql(const Table& table) {
    std::string sql = "CREATE TABLE " + bracketed(table.name) + " (";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (i > 0) sql += ", ";
        sql += columnSql(table.columns[i], !table.nullAllowed || isKeyPart(table, table.columns[i].name));
    }
    return sql + ") STRICT";
}

std::string createIndexSql(const Table& table, const Index& index) {
    std::string sql = index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    sql += bracketed(std::string(table.name) + "." + std::string(index.name)) + " ON " + bracketed(table.name) + " (";
    for (std::size_t part = 0; part < index.partCount(); ++part) {
        if (part > 0) sql += ", ";
        sql += bracketed(index.parts[part]);
        const int column = table.columnIndex(index.parts[part]);
        if (table.columns[static_cast<std::size_t>(column)].type == Text) sql += " COLLATE NOCASE";
    }
    return sql + ")";
}

}  // namespace qrv
