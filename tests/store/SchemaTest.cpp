#include "store/Schema.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace qrv {
namespace {

// Written by hand: table, its columns in order with their types (i 16 bits, l 32 bits, b byte, y yes/no, s float, t
// text that may be empty, T text that may not, 8 text of 80, m memo), and its index.
struct ToldTable {
    std::string name;
    std::string columns;
    std::string index;
};

const std::vector<ToldTable> kTold{
    {"Block List", "BlockNumber:i FunctionNumber:i Constants:i TempRam:i VolRam:i Comment:m VisioComment:m",
     "BlockNumber(BlockNumber)"},
    {"Alarm List", "BlockNumber:i Description:t Event0:t Event1:t IsAlarm:y", "PrimaryKey(BlockNumber)"},
    {"Slots", "Offset:i Description:t", "PrimaryKey(Offset)"},
    {"Chart List", "ChartNumber:i Description:t", "PrimaryKey(ChartNumber)"},
    {"Pens",
     "ChartNumber:i Offset:i Block:i Descriptor:t Units:t Analog:y Scale1:s Scale12:s ScaleDec:i BottomTic:b LowTic:b "
     "HighTic:b LowTag:t HighTag:t ScaleMult:i Zero:l Span:l Threshold:i Interval:i Decimal:i GEGU:i",
     "PrimaryKey(ChartNumber,Offset)"},
    {"Menu List", "MenuNumber:i MenuTitle:t MenuCount:i", "PrimaryKey(MenuNumber)"},
    {"Menu Items", "MenuNumber:i Offset:i Description:t Type:b Target:i Block:i", "PrimaryKey(MenuNumber,Offset)"},
    {"Screen List", "ScreenNumber:i ScreenTitle:t ScreenAlarm:y Password:b", "PrimaryKey(ScreenNumber)"},
    {"Screen Items",
     "ScreenNumber:i Offset:i X:b Y:b Large:b Type:b Editable:b Width:b Block:i Text0:t Text1:t Text2:t Text3:t "
     "Parameter:i",
     "PrimaryKey(ScreenNumber,Offset)"},
    {"Constants", "BlockNumber:i Offset:i ConstantValue:l", "PrimaryKey(BlockNumber,Offset)"},
    {"Comments", "Title:8 Comment:m Config:8", ""},
    {"ParmString", "BlockNumber:i Offset:i Pstring:T", "PrimaryKey(BlockNumber,Offset)"},
    {"EGUs", "EGUID:i Name:t Decimal:i Zero:l Span:l Units:t Comment:t", "PrimaryKey(EGUID)"},
    {"Loop List", "LoopIndex:i LoopText:t LoopID:i LoopBlock:i", "PrimaryKey(LoopIndex)"},
    {"Block EGUs", "Block:i Param:i GEGU:i Zero:l Span:l Decimal:i Units:t", "PrimaryKey(Block,Param)"},
    {"Version", "RevLevel:s Vtext:T Major:i Minor:i", ""},
    {"Poll List", "Offset:i BlockNumber:i AuxOut:t Param:i Comments:t LogicalAddr:i", "PrimaryKey(Offset)"},
    {"mod comm", "Baud:i Length:i Parity:i Stop:i Protocol:i Address:i", ""},
    {"Pager", "Offset:i PagerInfo:t", ""},
};

char letterOf(const Column& column) {
    switch (column.type) {
        case ColumnType::Integer: return 'i';
        case ColumnType::Long: return 'l';
        case ColumnType::Byte: return 'b';
        case ColumnType::Boolean: return 'y';
        case ColumnType::Single: return 's';
        case ColumnType::Memo: return column.emptyAllowed ? 'm' : '?';
        case ColumnType::Text: break;
    }
    if (column.size != 0) return column.size == 80 && column.emptyAllowed ? '8' : '?';
    return column.emptyAllowed ? 't' : 'T';
}

std::string columnsOf(const Table& table) {
    std::string text;
    for (const Column& column : table.columns) {
        if (!text.empty()) text += ' ';
        text += std::string(column.name) + ':' + letterOf(column);
    }
    return text;
}

std::string indexOf(const Table& table) {
    std::string text;
    for (const Index& index : table.indexes) {
        text += std::string(index.name) + '(';
        for (std::size_t part = 0; part < index.partCount(); ++part) {
            if (part > 0) text += ',';
            text += index.parts[part];
        }
        text += ')';
    }
    return text;
}

TEST(Schema, HoldsTheNineteenTablesInTheOrderOfAFile) {
    ASSERT_EQ(configurationTables().size(), kTold.size());
    for (std::size_t i = 0; i < kTold.size(); ++i) {
        const Table& table = configurationTables()[i];
        EXPECT_EQ(table.name, kTold[i].name);
        EXPECT_EQ(columnsOf(table), kTold[i].columns) << table.name;
        EXPECT_EQ(indexOf(table), kTold[i].index) << table.name;
    }
}

std::string typeInWords(const Column& column) {
    switch (letterOf(column)) {
        case 'i': return "Integer";
        case 'l': return "Long";
        case 'b': return "Byte";
        case 'y': return "Boolean";
        case 's': return "Single";
        case 'm': return "Memo";
        case 'T': return "Text, never empty";
        case '8': return "Text, 80 at most";
        default: return "Text";
    }
}

TEST(Schema, IsWhatThePageOfTheFileFormatTells) {
    std::ifstream page(QRV_FILE_FORMAT_DOCUMENT);
    std::string line;
    std::vector<std::string> told;
    while (std::getline(page, line)) {
        if (line.starts_with("## ")) told.push_back(line);
        if (line.starts_with("| `")) told.push_back(line.substr(0, line.rfind(" | ")));
    }
    std::vector<std::string> expected;
    for (const Table& table : configurationTables()) {
        expected.push_back("## " + std::string(table.name));
        for (const Column& column : table.columns) {
            expected.push_back("| `" + std::string(column.name) + "` | " + typeInWords(column));
        }
    }
    EXPECT_EQ(told, expected);
}

TEST(Schema, OnlyTheAlarmsMayRepeatAKey) {
    for (const Table& table : configurationTables()) {
        for (const Index& index : table.indexes) EXPECT_EQ(index.unique, table.name != "Alarm List") << table.name;
    }
}

TEST(Schema, FindsColumnsWhateverTheirCase) {
    const Table& items = tableNamed(configurationTables(), "screen Items");
    EXPECT_EQ(items.columnIndex("x"), 2);
    EXPECT_EQ(items.columnIndex("EDITABLE"), 6);
    EXPECT_EQ(items.columnIndex("nowhere"), -1);
}

TEST(Schema, WritesTheStrictTableThatRefusesWhatAColumnRefuses) {
    EXPECT_EQ(createTableSql(tableNamed(configurationTables(), "ParmString")),
              "CREATE TABLE [ParmString] ([BlockNumber] INT NOT NULL CHECK ([BlockNumber] BETWEEN -32768 AND 32767), "
              "[Offset] INT NOT NULL CHECK ([Offset] BETWEEN -32768 AND 32767), "
              "[Pstring] TEXT CHECK (length([Pstring]) > 0)) STRICT");
    EXPECT_EQ(createTableSql(tableNamed(configurationTables(), "Comments")),
              "CREATE TABLE [Comments] ([Title] TEXT CHECK (length([Title]) <= 80), [Comment] TEXT, "
              "[Config] TEXT CHECK (length([Config]) <= 80)) STRICT");
}

TEST(Schema, IndexNamesAreUniqueInTheFile) {
    const Table& alarms = tableNamed(configurationTables(), "Alarm List");
    EXPECT_EQ(createIndexSql(alarms, alarms.indexes[0]),
              "CREATE INDEX [Alarm List.PrimaryKey] ON [Alarm List] ([BlockNumber])");
    const Table& blocks = tableNamed(configurationTables(), "Block List");
    EXPECT_EQ(createIndexSql(blocks, blocks.indexes[0]),
              "CREATE UNIQUE INDEX [Block List.BlockNumber] ON [Block List] ([BlockNumber])");
    const Table& funcs = tableNamed(catalogueTables(), "Funcs");
    EXPECT_EQ(createIndexSql(funcs, funcs.indexes[1]),
              "CREATE UNIQUE INDEX [Funcs.Fname] ON [Funcs] ([Fname] COLLATE NOCASE)");
}

}  // namespace
}  // namespace qrv
