// Files that are damaged, foreign or hostile: each opens whole or is refused with one sentence that names the file, and
// either way the user's file and its folder are as they were.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>

#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/RunTimeError.h"
#include "store/ConfigurationFile.h"
#include "store/DefaultRows.h"
#include "store/LifeCycle.h"
#include "store/Sqlite.h"
#include "twins/Seed.h"
#include "twins/TestBench.h"

namespace qrv {
namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kLargestFile = std::size_t{1} << 26U;
constexpr long kMostGrowth = 512L * 1024;  // KiB, the sanitizers' own quarantine included

long peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

/// A configuration with few rows in the tables whose rows come and go, so that ten thousand of them are soon read.
std::string smallConfiguration() {
    Sqlite file("", Sqlite::Mode::Memory);
    file.execute("PRAGMA application_id = " + std::to_string(kConfigurationApplicationId));
    for (const Table& table : configurationTables()) addTable(file, table);
    for (const Table& table : configurationTables()) {
        if (table.rowSet == RowSet::Fixed) addRows(file, table, defaultRows(table));
    }
    file.execute(
        "INSERT INTO Constants VALUES (0, 0, 5), (0, 1, -70000), (12, 0, 600);"
        "INSERT INTO [Alarm List] VALUES (12, 'HIGH', 'OFF', 'ON', -1);"
        "INSERT INTO [Screen Items] ([ScreenNumber], [Offset], [Type]) VALUES (1, 1, 99), (1, 2, 0);"
        "INSERT INTO ParmString VALUES (12, 3, 'SCHEDULE');"
        "INSERT INTO [Poll List] VALUES (1, 12, 'PV', 0, '', 7)");
    return file.bytes();
}

/// Opens files as the editor does, and sees to what must hold whatever they hold.
class Opener {
 public:
    /// Gives true if the file opened.
    bool opens(const std::string& bytes, const std::string& what) {
        EXPECT_FALSE(writeWholeAtOnce(path_, bytes));
        const auto before = rig_.folder.names();
        bool opened = false;
        try {
            OpenConfiguration(rig_.bench, path_);
            opened = true;
            useEverything();
            CloseConfiguration(rig_.bench, Answer::No);
        } catch (const RunTimeError& error) {
            EXPECT_FALSE(opened) << what << ": refused too late: " << error.description();
            EXPECT_NE(error.description().find(path_), std::string::npos) << what << ": " << error.description();
            EXPECT_EQ(error.description().find(".TMP"), std::string::npos) << what << ": " << error.description();
        }
        EXPECT_EQ(rig_.folder.names(), before) << what;
        EXPECT_TRUE(std::filesystem::is_empty(rig_.bench.places.work)) << what;
        EXPECT_EQ(readWhole(path_, kLargestFile).bytes, bytes) << what;
        rig_.boxes.said.clear();
        return opened;
    }

 private:
    void useEverything() {
        db1& db = rig_.bench.db;
        for (db.BlockMoveFirst(); !db.BlockEOF(); db.BlockMoveNext()) static_cast<void>(db.BlockComment());
        for (db.PenMoveFirst(); !db.PenEOF(); db.PenMoveNext()) static_cast<void>(db.PenZero());
        if (!db.ScreenItemEOF()) {
            for (db.ScreenItemMoveFirst(); !db.ScreenItemEOF(); db.ScreenItemMoveNext()) {
                static_cast<void>(db.ScreenItemText0());
            }
        }
        for (db.AlarmMoveFirst(); !db.AlarmEOF(); db.AlarmMoveNext()) static_cast<void>(db.AlarmBlockNumber());
    }

    /// Notices of what an older file lacks are no surprise here.
    struct Rig : TestBench {
        struct Quiet final : MessageBox {
            Answer ask(const Notice&) override { return Answer::Ok; }
        } quiet;
        Workbench bench{Platform{quiet, dialogs, host, settings, clock, pump, noPort},
                        ProgramPlaces{.work = made("work"), .catalogue = "", .backups = folder.file("kept")}};
    } rig_;
    std::string path_ = rig_.path("x.qrv");
};

/// Each shard has its own seed; a failure is told with what was done to the file.
class MalformedFile : public testing::TestWithParam<int> {
 protected:
    std::string made(const std::string& what) const { return what + ", seed " + std::to_string(seed_); }

    /// The n-th of the files: one byte or up to 1024 of them changed.
    std::string damaged(std::string bytes, int n) {
        const int count = n % 3 == 0 ? 1 : static_cast<int>(random_() % 1024) + 1;
        // In half of the files where the engine keeps its structure: the heads of pages.
        for (int i = 0; i < count; ++i) {
            std::size_t place = random_() % bytes.size();
            if (n % 2 == 0) place = place / kPage * kPage + random_() % 64;
            bytes[place % bytes.size()] = static_cast<char>(random_());
        }
        return bytes;
    }

    std::uint32_t seed_ = seedOfRun(static_cast<std::uint32_t>(GetParam()));
    std::mt19937 random_{seed_};
};

constexpr int kShards = 4;
constexpr int kFilesOfShard = 2500;

TEST_P(MalformedFile, OpensOrIsRefusedWhateverBytesAreChanged) {
    Opener opener;
    const std::string whole = smallConfiguration();
    const long before = peakMemory();
    int opened = 0;
    for (int n = 0; n < kFilesOfShard; ++n) {
        opened += opener.opens(damaged(whole, n), made("file " + std::to_string(n))) ? 1 : 0;
    }
    EXPECT_LT(peakMemory() - before, kMostGrowth);
    EXPECT_LT(opened, kFilesOfShard);
}

INSTANTIATE_TEST_SUITE_P(Shards, MalformedFile, testing::Range(0, kShards));

TEST(MalformedFiles, AreRefusedWhenCutAtEveryPage) {
    Opener opener;
    const std::string whole = smallConfiguration();
    ASSERT_TRUE(opener.opens(whole, "the whole file"));
    for (std::size_t size = 0; size < whole.size(); size += kPage) {
        EXPECT_FALSE(opener.opens(whole.substr(0, size), "cut at " + std::to_string(size)));
        EXPECT_FALSE(opener.opens(whole.substr(0, size + 1), "cut behind " + std::to_string(size)));
    }
}

TEST(MalformedFiles, OpenOrAreRefusedWhateverAHeaderByteIs) {
    Opener opener;
    const std::string whole = smallConfiguration();
    for (std::size_t place = 0; place < 100; ++place) {
        for (const int change : {1, 3, 0x80, 0xFF}) {
            std::string bytes = whole;
            bytes[place] = static_cast<char>(bytes[place] ^ change);
            opener.opens(bytes, "header byte " + std::to_string(place));
        }
    }
}

/// Changes a configuration as a stranger with the bare library could: nothing is forbidden.
std::string altered(const std::string& whole, const std::string& sql) {
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open_v2(":memory:", &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY, nullptr), SQLITE_OK);
    auto* copy = static_cast<unsigned char*>(sqlite3_malloc64(whole.size()));
    std::copy(whole.begin(), whole.end(), copy);
    sqlite3_deserialize(handle, "main", copy, static_cast<sqlite3_int64>(whole.size()),
                        static_cast<sqlite3_int64>(whole.size()),
                        SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE);
    char* fault = nullptr;
    EXPECT_EQ(sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, &fault), SQLITE_OK) << sql << ": " << fault;
    sqlite3_free(fault);
    sqlite3_int64 size = 0;
    unsigned char* bytes = sqlite3_serialize(handle, "main", &size, 0);
    std::string result(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    sqlite3_free(bytes);
    sqlite3_close(handle);
    return result;
}

std::string name(std::string_view text) { return bracketed(text); }

TEST(MalformedFiles, EachTableAndColumnMissingRenamedOrOfAnotherKind) {
    Opener opener;
    const std::string whole = smallConfiguration();
    const auto refused = [&](const std::string& sql) { EXPECT_FALSE(opener.opens(altered(whole, sql), sql)) << sql; };
    for (const Table& table : configurationTables()) {
        const std::string own = name(table.name);
        if (!mayBeMissing(table)) refused("DROP TABLE " + own);
        refused("ALTER TABLE " + own + " RENAME TO other");
        refused("ALTER TABLE " + own + " RENAME TO other; CREATE VIEW " + own + " AS SELECT * FROM other");
        refused("CREATE TRIGGER t AFTER UPDATE ON " + own + " BEGIN SELECT 1; END");
        refused("ALTER TABLE " + own + " ADD COLUMN more INT");
        for (const Column& column : table.columns) {
            refused("ALTER TABLE " + own + " RENAME COLUMN " + name(column.name) + " TO other");
        }
        for (const Index& index : table.indexes) {
            refused("DROP INDEX " + name(std::string(table.name) + "." + std::string(index.name)));
        }
    }
}

/// Rebuilds one table without its checks, does something to its rows, and gives it its own description back.
std::string withHiddenDamage(const std::string& whole, const Table& table, const std::string& sql) {
    const std::string own = name(table.name);
    std::string plain = "CREATE TABLE " + own + " (";
    for (const Column& column : table.columns) plain += (&column == &table.columns[0] ? "" : ", ") + name(column.name);
    std::string script = "CREATE TEMP TABLE kept AS SELECT * FROM " + own + "; DROP TABLE " + own + "; " + plain +
                         "); INSERT INTO " + own + " SELECT * FROM kept; DROP TABLE kept; " + sql + ";";
    for (const Index& index : table.indexes) script += createIndexSql({table.name, table.columns, {}}, index) + ";";
    std::string told = createTableSql(table);
    script += "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = '" + told + "' WHERE name = '" +
              std::string(table.name) + "'; PRAGMA writable_schema = RESET";
    return altered(whole, script);
}

TEST(MalformedFiles, EachColumnHoldingWhatItRefuses) {
    Opener opener;
    const std::string whole = smallConfiguration();
    for (const Table& table : configurationTables()) {
        const std::string own = name(table.name);
        for (const Column& column : table.columns) {
            const std::string place = "UPDATE " + own + " SET " + name(column.name) + " = ";
            const std::string first = " WHERE rowid = (SELECT max(rowid) FROM " + own + ")";
            std::vector<std::string> bad{"x'00'"};
            const bool isText = column.type == ColumnType::Text || column.type == ColumnType::Memo;
            bad.emplace_back(isText ? "char(9731)" : "'PID'");
            if (column.type == ColumnType::Byte) bad.emplace_back("256");
            if (column.type == ColumnType::Integer) bad.emplace_back("40000");
            if (column.type == ColumnType::Long) bad.emplace_back("3000000000");
            if (column.type == ColumnType::Single) bad.emplace_back("1e300");
            if (isKeyPart(table, column.name)) bad.emplace_back("NULL");
            if (isText && !column.emptyAllowed) bad.emplace_back("''");
            if (column.size > 0) bad.emplace_back("printf('%81d', 1)");
            const bool hasRows = table.rowSet == RowSet::Fixed || table.name != "Block EGUs";
            for (const std::string& value : bad) {
                if (!hasRows || (table.name == "Menu Items")) continue;
                const std::string bytes = withHiddenDamage(whole, table, place + value + first);
                EXPECT_FALSE(opener.opens(bytes, place + value)) << place << value;
            }
        }
    }
}

// Every column takes a null but a key, what tells a row of a list from the others, and a block's function.
TEST(MalformedFiles, EachColumnHoldingANull) {
    Opener opener;
    const std::string whole = altered(smallConfiguration(),
                                      "INSERT INTO [Block EGUs] VALUES (12, 0, 0, 1, 2, 1, 'PSI');"
                                      "INSERT INTO [Menu Items] VALUES (1, 1, 'PUMPS', 1, 2, 12)");
    ASSERT_TRUE(opener.opens(whole, "the whole file"));
    for (const Table& table : configurationTables()) {
        const std::string own = name(table.name);
        for (const Column& column : table.columns) {
            if (isKeyPart(table, column.name)) continue;
            const bool isRefused =
                column.name == "FunctionNumber" || (table.name == "Pager" && column.name == "Offset");
            const std::string sql = "UPDATE " + own + " SET " + name(column.name) +
                                    " = NULL WHERE rowid = (SELECT max(rowid) FROM " + own + ")";
            EXPECT_EQ(opener.opens(altered(whole, sql), sql), !isRefused) << sql;
        }
    }
}

TEST(MalformedFiles, RepeatedRowsUnderTheirKeyAreRefused) {
    Opener opener;
    const std::string whole = smallConfiguration();
    // The index is made over rows that repeat a key, and afterwards called unique.
    const Table& constants = tableNamed(configurationTables(), "Constants");
    const std::string told = createIndexSql(constants, constants.indexes[0]);
    std::string lax = told;
    lax.replace(lax.find("UNIQUE "), 7, "");
    const std::string bytes =
        altered(whole, "DROP INDEX [Constants.PrimaryKey]; INSERT INTO Constants VALUES (0, 0, 9); " + lax +
                           "; PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = '" + told +
                           "' WHERE name = 'Constants.PrimaryKey'; PRAGMA writable_schema = RESET");
    EXPECT_FALSE(opener.opens(bytes, "a repeated constant"));
}

/// Opens a catalogue with these bytes and walks all of it. Gives true if it opened.
bool opensAsCatalogue(const TemporaryFolder& folder, const std::string& bytes, const std::string& what) {
    const std::string path = folder.file("QRVDATA.DAT");
    EXPECT_FALSE(writeWholeAtOnce(path, bytes));
    const auto before = folder.names();
    ScriptedBox boxes;
    db1 db(boxes);
    bool opened = false;
    try {
        db.open_database(folder.path());
        opened = true;
        for (; !db.FuncEOF(); db.FuncMoveNext()) {
            for (int n = 0; n < 4; ++n) {
                db.ParamSeek(db.FuncFN(), n);
                db.InputSeek(db.FuncFN(), n);
                db.AuxSeek(db.FuncFN(), n % 2 == 0 ? "A" : "D", n);
            }
        }
        static_cast<void>(db.Version());
        db.close_database();
    } catch (const RunTimeError& error) {
        EXPECT_FALSE(opened) << what << ": refused too late: " << error.description();
        EXPECT_NE(error.description().find(path), std::string::npos) << what << ": " << error.description();
    }
    EXPECT_EQ(folder.names(), before) << what;
    EXPECT_EQ(readWhole(path, kLargestFile).bytes, bytes) << what;
    return opened;
}

std::string shippedCatalogue() {
    return readWhole(std::string(QRV_CATALOGUE_DATA) + "/QRVDATA.DAT", kLargestFile).bytes;
}

TEST_P(MalformedFile, OpensOrIsRefusedAsACatalogue) {
    constexpr int kCatalogues = 1000;
    const TemporaryFolder folder;
    const std::string whole = shippedCatalogue();
    ASSERT_TRUE(opensAsCatalogue(folder, whole, "the shipped catalogue"));
    for (int n = 0; n < kCatalogues; ++n) {
        opensAsCatalogue(folder, damaged(whole, n), made("catalogue " + std::to_string(n)));
    }
}

TEST(MalformedFiles, ACatalogueCutOrWithoutATableOrColumnIsRefused) {
    const TemporaryFolder folder;
    const std::string whole = shippedCatalogue();
    for (std::size_t size = 0; size < whole.size(); size += kPage) {
        EXPECT_FALSE(opensAsCatalogue(folder, whole.substr(0, size), "cut at " + std::to_string(size)));
    }
    const auto refused = [&](const std::string& sql) {
        EXPECT_FALSE(opensAsCatalogue(folder, altered(whole, sql), sql)) << sql;
    };
    for (const Table& table : catalogueTables()) {
        const std::string own = name(table.name);
        refused("DROP TABLE " + own);
        refused("ALTER TABLE " + own + " RENAME TO other; CREATE VIEW " + own + " AS SELECT * FROM other");
        for (const Column& column : table.columns) {
            refused("ALTER TABLE " + own + " RENAME COLUMN " + name(column.name) + " TO other");
        }
    }
    refused("UPDATE Funcs SET Fname = 'MUCHTOOLONGFORAKEY' WHERE fn = 0");
    refused("DELETE FROM Version");
}

TEST(MalformedFiles, AJournalBesideTheFileIsNoneOfOurs) {
    TestBench rig;
    const std::string file = rig.path("a.qrv");
    ASSERT_FALSE(writeWholeAtOnce(file, smallConfiguration()));
    for (const char* suffix : {"-journal", "-wal", "-shm"}) {
        ASSERT_FALSE(writeWholeAtOnce(file + suffix, std::string(8192, '\x55')));
    }
    const auto before = rig.folder.names();
    OpenConfiguration(rig.bench, file);
    EXPECT_EQ(rig.bench.FnOfBlock[2], 90);
    CloseConfiguration(rig.bench, Answer::No);
    EXPECT_EQ(rig.folder.names(), before);
    EXPECT_EQ(readWhole(file + "-journal", 1 << 20).bytes, std::string(8192, '\x55'));
}

TEST(MalformedFiles, ANameThatLooksLikeAnAddressIsAName) {
    TestBench rig;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(rig.folder.path());
    rig.bench.db.create_new_database("file:a.qrv?mode=ro");
    EXPECT_TRUE(exists(rig.path("file:a.qrv?mode=ro")));
    rig.bench.db.open_existing_database("file:a.qrv?mode=ro");
    EXPECT_FALSE(rig.bench.db.ReadOnlyFile());
    rig.bench.db.close_work_dbs();
    std::filesystem::current_path(before);
}

}  // namespace
}  // namespace qrv
