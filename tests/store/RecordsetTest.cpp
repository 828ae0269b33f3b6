#include "store/Recordset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "platform/RunTimeError.h"
#include "store/ConfigurationFile.h"
#include "store/Sqlite.h"

namespace qrv {
namespace {

constexpr std::size_t kBlock = 0;
constexpr std::size_t kOffset = 1;
constexpr std::size_t kValue = 2;

/// A Constants table with the rows (block, offset, value) in the order given, in a database in memory.
class Rig {
 public:
    explicit Rig(const std::vector<std::array<std::int32_t, 3>>& rows = {}, std::string_view table = "Constants")
        : file("", Sqlite::Mode::Memory), table_(tableNamed(configurationTables(), table)) {
        addTable(file, table_);
        for (const auto& row : rows) {
            file.execute("INSERT INTO [Constants] VALUES (" + std::to_string(row[0]) + "," + std::to_string(row[1]) +
                         "," + std::to_string(row[2]) + ")");
        }
    }

    Recordset cursor(bool writable = true, Recordset::Missed missed = Recordset::Missed::LosesRow) {
        return {table_, file, writable, missed};
    }
    Recordset indexedCursor() {
        Recordset rows = cursor();
        rows.setIndex("PrimaryKey");
        return rows;
    }
    [[nodiscard]] std::string inFile() {
        return file
            .textOf(
                "SELECT group_concat(BlockNumber || '/' || Offset || '=' || ConstantValue, ' ') FROM "
                "(SELECT * FROM [Constants] ORDER BY rowid)")
            .value_or("");
    }

    Sqlite file;

 private:
    const Table& table_;
};

void seek(Recordset& rows, std::int32_t block, std::int32_t offset) {
    rows.seek(std::array<KeyPart, 2>{block, offset});
}

std::int32_t number(const Recordset& rows, std::size_t column) { return std::get<std::int32_t>(rows.value(column)); }

template <typename Action>
std::int32_t errorOf(Action action) {
    try {
        action();
    } catch (const RunTimeError& error) {
        return error.code();
    }
    return 0;
}

void change(Recordset& rows, std::int32_t value) {
    rows.edit();
    rows.setValue(kValue, value);
    rows.update();
}

void add(Recordset& rows, std::int32_t block, std::int32_t offset, std::int32_t value) {
    rows.addNew();
    rows.setValue(kBlock, block);
    rows.setValue(kOffset, offset);
    rows.setValue(kValue, value);
    rows.update();
}

TEST(Recordset, StartsOnItsFirstStoredRow) {
    Rig rig({{7, 0, 70}, {3, 0, 30}});
    const Recordset rows = rig.cursor();
    EXPECT_FALSE(rows.isEof());
    EXPECT_EQ(number(rows, kBlock), 7);
}

TEST(Recordset, WalksInStoredOrderWithoutAnIndexAndInKeyOrderWithOne) {
    Rig rig({{7, 0, 70}, {3, 1, 31}, {-2, 5, 25}, {3, 0, 30}});
    Recordset rows = rig.cursor();
    const auto walk = [&rows] {
        std::vector<std::int32_t> values;
        for (rows.moveFirst(); !rows.isEof(); rows.moveNext()) values.push_back(number(rows, kValue));
        return values;
    };
    EXPECT_EQ(walk(), (std::vector<std::int32_t>{70, 31, 25, 30}));
    rows.setIndex("PrimaryKey");
    EXPECT_EQ(walk(), (std::vector<std::int32_t>{25, 30, 31, 70}));
}

TEST(Recordset, AnEmptyTableHasNoFirstRow) {
    Rig rig;
    Recordset rows = rig.cursor();
    EXPECT_TRUE(rows.isEof());
    EXPECT_EQ(errorOf([&] { rows.moveFirst(); }), 3021);
    EXPECT_EQ(errorOf([&] { static_cast<void>(rows.value(kValue)); }), 3021);
}

TEST(Recordset, PastTheLastRowThereIsNoFurtherMove) {
    Rig rig({{1, 0, 10}});
    Recordset rows = rig.indexedCursor();
    rows.moveNext();
    EXPECT_TRUE(rows.isEof());
    EXPECT_EQ(errorOf([&] { rows.moveNext(); }), 3021);
    EXPECT_EQ(errorOf([&] { static_cast<void>(rows.value(kValue)); }), 3021);
}

TEST(Recordset, AMissedSeekLosesTheRow) {
    Rig rig({{1, 0, 10}});
    Recordset rows = rig.indexedCursor();
    seek(rows, 1, 1);
    EXPECT_TRUE(rows.noMatch());
    EXPECT_EQ(errorOf([&] { static_cast<void>(rows.value(kValue)); }), 3021);
    EXPECT_EQ(errorOf([&] { rows.edit(); }), 3021);
    EXPECT_EQ(errorOf([&] { rows.moveNext(); }), 3021);
    seek(rows, 1, 0);
    EXPECT_FALSE(rows.noMatch());
    EXPECT_EQ(number(rows, kValue), 10);
}

TEST(Recordset, AMissedSeekOfTheCatalogueKeepsTheRow) {
    Rig rig({{1, 0, 10}, {2, 0, 20}});
    Recordset rows = rig.cursor(false, Recordset::Missed::KeepsRow);
    rows.setIndex("PrimaryKey");
    seek(rows, 2, 0);
    seek(rows, 9, 9);
    EXPECT_TRUE(rows.noMatch());
    EXPECT_EQ(number(rows, kValue), 20);
}

TEST(Recordset, ASeekNeedsAnIndexAndAKeyOfItsType) {
    Rig rig({{1, 0, 10}});
    Recordset rows = rig.cursor();
    EXPECT_EQ(errorOf([&] { seek(rows, 1, 0); }), 3019);
    rows.setIndex("PrimaryKey");
    EXPECT_EQ(errorOf([&] { rows.seek(std::array<KeyPart, 2>{1, std::string_view("0")}); }), 3421);
    EXPECT_EQ(errorOf([&] { seek(rows, 40000, 0); }), 6);
}

TEST(Recordset, WritesAnEditThrough) {
    Rig rig({{1, 0, 10}, {1, 1, 11}});
    Recordset rows = rig.indexedCursor();
    seek(rows, 1, 1);
    change(rows, -7);
    EXPECT_EQ(number(rows, kValue), -7);
    EXPECT_EQ(rig.inFile(), "1/0=10 1/1=-7");
}

TEST(Recordset, StaysOnARowWhoseKeyWasChanged) {
    Rig rig({{1, 0, 10}, {5, 0, 50}, {9, 0, 90}});
    Recordset rows = rig.indexedCursor();
    rows.moveFirst();
    rows.edit();
    rows.setValue(kBlock, 7);
    rows.update();
    EXPECT_EQ(number(rows, kValue), 10);
    rows.moveNext();
    EXPECT_EQ(number(rows, kValue), 90);
    seek(rows, 1, 0);
    EXPECT_TRUE(rows.noMatch());
}

TEST(Recordset, AnAdditionLeavesTheCursorWhereItWas) {
    Rig rig({{1, 0, 10}, {5, 0, 50}});
    Recordset rows = rig.indexedCursor();
    seek(rows, 5, 0);
    add(rows, 3, 0, 30);
    EXPECT_EQ(number(rows, kValue), 50);
    EXPECT_EQ(rows.rowCount(), 3);
    rows.moveFirst();
    rows.moveNext();
    EXPECT_EQ(number(rows, kValue), 30);
    EXPECT_EQ(rig.inFile(), "1/0=10 5/0=50 3/0=30");
}

TEST(Recordset, RefusesARepeatedKeyAndKeepsTheCursor) {
    Rig rig({{1, 0, 10}, {5, 0, 50}});
    Recordset rows = rig.indexedCursor();
    seek(rows, 5, 0);
    EXPECT_EQ(errorOf([&] { add(rows, 1, 0, 99); }), 3022);
    rows.cancelUpdate();
    EXPECT_EQ(number(rows, kValue), 50);
    EXPECT_EQ(rig.inFile(), "1/0=10 5/0=50");
}

TEST(Recordset, ADeletedPlaceHasNoRowUntilAMove) {
    Rig rig({{1, 0, 10}, {3, 0, 30}, {5, 0, 50}});
    Recordset rows = rig.indexedCursor();
    seek(rows, 3, 0);
    rows.deleteRow();
    EXPECT_EQ(errorOf([&] { static_cast<void>(rows.value(kValue)); }), 3021);
    EXPECT_FALSE(rows.isEof());
    rows.moveNext();
    EXPECT_EQ(number(rows, kValue), 50);
    EXPECT_EQ(rig.inFile(), "1/0=10 5/0=50");
}

TEST(Recordset, ALoopOfDeletionsEmptiesTheTable) {
    for (const bool indexed : {false, true}) {
        Rig rig({{1, 0, 10}, {3, 0, 30}, {5, 0, 50}});
        Recordset rows = rig.cursor();
        if (indexed) rows.setIndex("PrimaryKey");
        for (rows.moveFirst(); !rows.isEof(); rows.moveNext()) {
            rows.deleteRow();
            if (rows.rowCount() == 0) break;
        }
        EXPECT_TRUE(rows.isEof());
        EXPECT_EQ(rig.inFile(), "");
    }
}

TEST(Recordset, ARowAddedAfterTheLastOneWasDeletedIsTheNext) {
    Rig rig({{1, 0, 10}, {2, 0, 20}});
    Recordset rows = rig.cursor();
    rows.moveNext();
    rows.deleteRow();
    add(rows, 3, 0, 30);
    // The file gives it the number of the deleted row.
    EXPECT_EQ(rig.file.integerOf("SELECT max(rowid) FROM [Constants]"), 2);
    rows.moveNext();
    ASSERT_FALSE(rows.isEof());
    EXPECT_EQ(number(rows, kValue), 30);
}

TEST(Recordset, ARowAddedWithTheKeyOfADeletedOneIsTheNext) {
    Rig rig({{1, 0, 10}, {2, 0, 20}});
    Recordset rows = rig.indexedCursor();
    seek(rows, 2, 0);
    rows.deleteRow();
    add(rows, 2, 0, 21);
    rows.moveNext();
    ASSERT_FALSE(rows.isEof());
    EXPECT_EQ(number(rows, kValue), 21);
    rows.moveNext();
    EXPECT_TRUE(rows.isEof());
}

// Long walks, with rows that come, go and change their key on the way, against a plain sorted list.
TEST(Recordset, ALongWalkSeesEveryChangeAtOnce) {
    constexpr std::int32_t kRows = 60;
    for (std::int32_t changeAt = 0; changeAt < kRows - 2; ++changeAt) {
        for (const int change : {0, 1, 2}) {
            std::vector<std::array<std::int32_t, 3>> given;
            for (std::int32_t n = 0; n < kRows; ++n) given.push_back({n * 10, 0, n});
            Rig rig(given);
            Recordset rows = rig.indexedCursor();
            std::vector<std::int32_t> seen;
            for (rows.moveFirst(); !rows.isEof(); rows.moveNext()) {
                seen.push_back(number(rows, kValue));
                if (seen.size() != static_cast<std::size_t>(changeAt) + 1) continue;
                if (change == 0) rows.deleteRow();
                if (change == 1) add(rows, changeAt * 10 + 5, 0, 1000);
                if (change == 2) {
                    rows.edit();
                    rows.setValue(kBlock, changeAt * 10 + 15);
                    rows.update();
                }
            }
            std::vector<std::int32_t> expected;
            for (std::int32_t n = 0; n < kRows; ++n) {
                expected.push_back(n);
                if (n == changeAt && change == 1) expected.push_back(1000);
            }
            if (change == 2) expected.erase(expected.begin() + changeAt + 1);
            EXPECT_EQ(seen, expected) << "change " << change << " at " << changeAt;
            std::vector<std::int32_t> again;
            for (rows.moveFirst(); !rows.isEof(); rows.moveNext()) again.push_back(number(rows, kBlock));
            EXPECT_TRUE(std::is_sorted(again.begin(), again.end()));
            EXPECT_EQ(again.size(), static_cast<std::size_t>(rows.rowCount()));
        }
    }
}

TEST(Recordset, NothingIsStoredOutsideAnEdit) {
    Rig rig({{1, 0, 10}});
    Recordset rows = rig.cursor();
    EXPECT_EQ(errorOf([&] { rows.setValue(kValue, 1); }), 3020);
    EXPECT_EQ(errorOf([&] { rows.update(); }), 3020);
}

TEST(Recordset, AMoveDropsAPendingEdit) {
    Rig rig({{1, 0, 10}, {2, 0, 20}});
    Recordset rows = rig.indexedCursor();
    rows.edit();
    rows.setValue(kValue, 99);
    rows.moveNext();
    EXPECT_EQ(errorOf([&] { rows.update(); }), 3020);
    EXPECT_EQ(rig.inFile(), "1/0=10 2/0=20");
}

TEST(Recordset, SeesTheRowBeingAdded) {
    Rig rig({{1, 0, 10}});
    Recordset rows = rig.cursor();
    rows.addNew();
    EXPECT_TRUE(std::holds_alternative<std::monostate>(rows.value(kValue)));
    rows.setValue(kValue, 5);
    EXPECT_EQ(number(rows, kValue), 5);
}

TEST(Recordset, RefusesANumberBeyondItsColumn) {
    Rig rig({{1, 0, 10}});
    Recordset rows = rig.cursor();
    rows.edit();
    EXPECT_EQ(errorOf([&] { rows.setValue(kBlock, 32768); }), 6);
    rows.setValue(kBlock, -32768);
    rows.setValue(kValue, 2147483647);
    rows.update();
    EXPECT_EQ(rig.inFile(), "-32768/0=2147483647");
}

TEST(Recordset, RefusesAFloatThatIsNoNumber) {
    Rig rig({}, "Pens");
    Recordset rows = rig.cursor();
    constexpr std::size_t kScale1 = 6;
    rows.addNew();
    for (const float bad : {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                            std::numeric_limits<float>::quiet_NaN()}) {
        EXPECT_EQ(errorOf([&] { rows.setValue(kScale1, bad); }), 6);
    }
    rows.setValue(0, 1);
    rows.setValue(1, 1);
    rows.setValue(kScale1, -std::numeric_limits<float>::max());
    rows.update();
    EXPECT_EQ(rows.rowCount(), 1);
}

TEST(Recordset, AKeyIsNeverNull) {
    Rig rig;
    Recordset rows = rig.cursor();
    rows.addNew();
    rows.setValue(kBlock, 1);
    EXPECT_EQ(errorOf([&] { rows.update(); }), 3058);
}

TEST(Recordset, AnEmptyTextIsRefusedWhenItIsWritten) {
    Rig rig({}, "ParmString");
    Recordset rows = rig.cursor();
    rows.addNew();
    rows.setValue(0, 1);
    rows.setValue(1, 0);
    rows.setValue(2, std::string());
    EXPECT_EQ(errorOf([&] { rows.update(); }), 3315);
    // The file measures a text to its first character of code 0.
    rows.setValue(2, std::string("\0A", 2));
    EXPECT_EQ(errorOf([&] { rows.update(); }), 3315);
    rows.setValue(2, std::string("A\0", 2));
    rows.update();
    EXPECT_EQ(rows.rowCount(), 1);
}

TEST(Recordset, ATextLongerThanItsFieldIsRefused) {
    Rig rig({}, "Comments");
    Recordset rows = rig.cursor();
    rows.addNew();
    rows.setValue(0, std::string(80, 'x'));
    EXPECT_EQ(errorOf([&] { rows.setValue(0, std::string(81, 'x')); }), 3163);
}

TEST(Recordset, AReadOnlyFileTakesNoEdit) {
    Rig rig({{1, 0, 10}});
    Recordset rows = rig.cursor(false);
    EXPECT_EQ(errorOf([&] { rows.edit(); }), 3027);
    EXPECT_EQ(errorOf([&] { rows.addNew(); }), 3027);
    EXPECT_EQ(errorOf([&] { rows.deleteRow(); }), 3027);
}

TEST(Recordset, TheRowAddedFirstIsFoundAmongEqualKeys) {
    Rig rig({}, "Alarm List");
    rig.file.execute(
        "INSERT INTO [Alarm List] VALUES (9, 'nine', '', '', 0), (5, 'first', '', '', 0), "
        "(5, 'second', '', '', 0)");
    Recordset rows = rig.cursor();
    rows.setIndex("PrimaryKey");
    rows.seek(std::array<KeyPart, 1>{5});
    EXPECT_EQ(std::get<std::string>(rows.value(1)), "first");
    rows.moveNext();
    EXPECT_EQ(std::get<std::string>(rows.value(1)), "second");
}

TEST(Recordset, TextsAreOneByteACharacterInTheProgramAndUtf8InTheFile) {
    Rig rig({}, "Alarm List");
    Recordset rows = rig.cursor();
    rows.addNew();
    rows.setValue(0, 1);
    rows.setValue(1, std::string("\x81 20 \xB0\x80"));
    rows.update();
    EXPECT_EQ(rig.file.textOf("SELECT hex(Description) FROM [Alarm List]"), "C28120323020C2B0E282AC");
    const Recordset again = rig.cursor();
    EXPECT_EQ(std::get<std::string>(again.value(1)), "\x81 20 \xB0\x80");
}

}  // namespace
}  // namespace qrv
