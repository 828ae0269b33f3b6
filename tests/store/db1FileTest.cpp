// The files that db1 opens: sound, old, read-only, damaged, and two at once.
#include <gtest/gtest.h>

#include <string>

#include "OpenFileRig.h"
#include "platform/Files.h"
#include "store/ConfigurationContent.h"
#include "store/Sqlite.h"
#include "store/db1.h"
#include "twins/TemporaryFolder.h"

namespace qrv {

using test::errorOf;
using test::OpenFileRig;

namespace {

TEST(db1File, OneThatMustStayIsNotOverwrittenByANewOne) {
    const TemporaryFolder folder;
    const std::string there = folder.file("a.qrv");
    ASSERT_FALSE(writeWholeAtOnce(there, "somebody else's"));
    const auto make = [](const std::string& path) {
        makeConfigurationFile(path, contentOfNewFile(), Overwrite::Refuse);
    };
    EXPECT_EQ(errorOf([&] { make(there); }), 58);
    EXPECT_EQ(readWhole(there, 100).bytes, "somebody else's");
    make(folder.file("b.qrv"));
    makeConfigurationFile(there, contentOfNewFile());
    EXPECT_EQ(readWhole(there, 1 << 24).bytes, readWhole(folder.file("b.qrv"), 1 << 24).bytes);
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.qrv", "b.qrv"}));
}

TEST(db1, TheFileItselfRefusesWhatAColumnRefuses) {
    OpenFileRig rig;
    rig.db.close_work_dbs();
    Sqlite file(rig.path, Sqlite::Mode::ReadWrite);
    for (const char* sql : {"UPDATE [Block List] SET FunctionNumber = 32768", "UPDATE [Screen Items] SET X = 256",
                            "UPDATE [Block List] SET FunctionNumber = 'PID'", "UPDATE Version SET Vtext = ''",
                            "UPDATE EGUs SET Zero = 2147483648", "UPDATE Comments SET Title = printf('%81d', 1)",
                            "UPDATE [Block List] SET BlockNumber = NULL", "UPDATE Slots SET Offset = 1"}) {
        EXPECT_NE(errorOf([&] { file.execute(sql); }), 0) << sql;
    }
}

TEST(db1, AReadOnlyFileIsReadAndRefusesEdits) {
    OpenFileRig rig;
    rig.db.close_work_dbs();
    ASSERT_FALSE(setReadOnly(rig.path, true));
    rig.db.open_existing_database(rig.path);
    EXPECT_TRUE(rig.db.ReadOnlyFile());
    rig.db.BlockSeek(2);
    EXPECT_EQ(rig.db.BlockFn(), 90);
    EXPECT_EQ(errorOf([&] { rig.db.BlockEdit(); }), 3027);
    EXPECT_EQ(errorOf([&] { rig.db.ConstantAddNew(); }), 3027);
    EXPECT_EQ(errorOf([&] { rig.db.SlotEdit(); }), 3027);
}

TEST(db1, AnOldFileGetsWhatItLacksWithTwoNotices) {
    OpenFileRig rig;
    rig.alter(
        "DROP TABLE Pager; DROP TABLE [Poll List]; DROP TABLE [mod comm];"
        "ALTER TABLE [Block List] DROP COLUMN VisioComment");
    EXPECT_EQ(rig.db.TestVisioComments(rig.path), 3265);
    rig.boxes.expect("no pager table");
    rig.boxes.expect("no poll list");
    rig.db.open_existing_database(rig.path);
    EXPECT_EQ(rig.db.PollHowMany(), 256);
    EXPECT_EQ(rig.db.ModcommAddress(), 1);
    rig.db.PagerMoveFirst();
    EXPECT_EQ(rig.db.PagerPagerInfo(), "");
    rig.db.BlockSeek(0);
    EXPECT_EQ(rig.db.BlockVisioComment(), "");
    rig.db.close_work_dbs();
    EXPECT_EQ(rig.db.TestVisioComments(rig.path), 0);
    rig.db.open_existing_database(rig.path);
}

TEST(db1, OnlyTheMissingModbusTableIsAdded) {
    OpenFileRig rig;
    rig.alter("UPDATE [Poll List] SET Comments = 'kept' WHERE Offset = 7; DROP TABLE [mod comm]");
    rig.boxes.expect("no poll list");
    rig.db.open_existing_database(rig.path);
    rig.db.PollSeek(7);
    EXPECT_EQ(rig.db.PollComments(), "kept");
    EXPECT_EQ(rig.db.ModcommAddress(), 1);
}

TEST(db1, AReadOnlyFileWithoutItsSecondCommentsGetsThemAndStaysReadOnly) {
    OpenFileRig rig;
    rig.alter("ALTER TABLE [Block List] DROP COLUMN VisioComment");
    ASSERT_FALSE(setReadOnly(rig.path, true));
    rig.db.open_existing_database(rig.path);
    EXPECT_TRUE(rig.db.ReadOnlyFile());
    EXPECT_TRUE(isReadOnly(rig.path));
    rig.db.BlockSeek(704);
    EXPECT_EQ(rig.db.BlockVisioComment(), "");
}

TEST(db1, ASecondFileIsOpenBesideTheFirst) {
    OpenFileRig first;
    OpenFileRig second;
    second.db.BlockSeek(5);
    first.db.BlockSeek(2);
    second.db.BlockEdit();
    second.db.BlockFn(33);
    second.db.BlockUpdate();
    EXPECT_EQ(first.db.blockNumber(), 2);
    first.db.BlockSeek(5);
    EXPECT_EQ(first.db.BlockFn(), 127);
}

TEST(db1, ABatchThatTheDiskUndidIsToldAndNotSaved) {
    TemporaryFolder folder;
    const std::string path = folder.file("a.db");
    Sqlite made("", Sqlite::Mode::Memory);
    made.execute("CREATE TABLE t (a)");
    ASSERT_FALSE(writeWholeAtOnce(path, made.bytes()));
    Sqlite file(path, Sqlite::Mode::ReadWrite);
    file.joinBatch();
    file.execute("INSERT INTO t VALUES (1)");
    // What a full disk does to an open transaction.
    file.execute("ROLLBACK");
    EXPECT_EQ(errorOf([&] { file.settle(); }), 57);
    EXPECT_EQ(errorOf([&] { file.settle(); }), 57);
}

struct Damage {
    const char* name;
    const char* sql;
    const char* reason;
};

class db1Damaged : public testing::TestWithParam<Damage> {};

TEST_P(db1Damaged, IsRefusedWithFileAndReason) {
    OpenFileRig rig;
    rig.alter(GetParam().sql);
    try {
        rig.db.open_existing_database(rig.path);
        FAIL() << "opened";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.code(), 3343);
        EXPECT_NE(error.description().find(rig.path), std::string::npos) << error.description();
        EXPECT_NE(error.description().find(GetParam().reason), std::string::npos) << error.description();
    }
    EXPECT_EQ(errorOf([&] { rig.db.BlockMoveFirst(); }), 91);
}

INSTANTIATE_TEST_SUITE_P(
    Files, db1Damaged,
    testing::Values(Damage{"missingTable", "DROP TABLE Pens", "table Pens is missing"},
                    Damage{"viewForTable",
                           "ALTER TABLE Slots RENAME TO Other; CREATE VIEW Slots AS SELECT * FROM Other",
                           "Slots is no table"},
                    Damage{"extraTable", "CREATE TABLE Mine (a)", "it holds Mine"},
                    Damage{"trigger", "CREATE TRIGGER t AFTER UPDATE ON Slots BEGIN SELECT 1; END", "it holds t"},
                    Damage{"renamedColumn", "ALTER TABLE EGUs RENAME COLUMN Span TO Spam", "columns of table EGUs"},
                    Damage{"missingColumn", "ALTER TABLE EGUs DROP COLUMN Units", "columns of table EGUs"},
                    Damage{"missingIndex", "DROP INDEX [Pens.PrimaryKey]", "index of table Pens"},
                    Damage{"missingBlock", "DELETE FROM [Block List] WHERE BlockNumber = 300", "table Block List"},
                    Damage{"extraBlock", "INSERT INTO [Block List] VALUES (705, 127, 0, 0, 0, '', '')", "row too many"},
                    Damage{"noComments", "DELETE FROM Comments", "row of table Comments is missing"},
                    Damage{"twoVersions", "INSERT INTO Version SELECT * FROM Version", "Version has a row too many"},
                    Damage{"otherMark", "PRAGMA application_id = 77", "another program's mark"},
                    Damage{"newer", "PRAGMA user_version = 2", "newer version"},
                    Damage{"foreignCharacter", "UPDATE Slots SET Description = char(9731) WHERE Offset = 3",
                           "row 4 of table Slots has a Description"}),
    [](const auto& row) { return row.param.name; });

TEST(db1, AFileWithoutAMarkIsOursByItsTables) {
    OpenFileRig rig;
    rig.alter("PRAGMA application_id = 0");
    rig.db.open_existing_database(rig.path);
    EXPECT_FALSE(rig.db.BlockEOF());
}

}  // namespace
}  // namespace qrv
