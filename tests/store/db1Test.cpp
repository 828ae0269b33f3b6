#include "store/db1.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "OpenFileRig.h"
#include "store/Sqlite.h"
#include "twins/ScriptedBox.h"
#include "twins/TemporaryFolder.h"

namespace qrv {

using test::errorOf;
using test::OpenFileRig;

namespace {

TEST(db1, ANewFileHasItsDefaultRows) {
    OpenFileRig rig;
    rig.db.close_work_dbs();
    Sqlite file(rig.path, Sqlite::Mode::ReadOnly);
    const auto count = [&file](const std::string& table) {
        return file.integerOf("SELECT count(*) FROM [" + table + "]").value_or(-1);
    };
    EXPECT_EQ(count("Block List"), 705);
    EXPECT_EQ(count("Menu List"), 25);
    EXPECT_EQ(count("Menu Items"), 250);
    EXPECT_EQ(count("Screen List"), 25);
    EXPECT_EQ(count("Screen Items"), 3750);
    EXPECT_EQ(count("Chart List"), 35);
    EXPECT_EQ(count("Pens"), 140);
    EXPECT_EQ(count("EGUs"), 50);
    EXPECT_EQ(count("Loop List"), 20);
    EXPECT_EQ(count("Poll List"), 256);
    EXPECT_EQ(count("Slots"), 7);
    EXPECT_EQ(count("Pager"), 5);
    for (const char* one : {"Comments", "Version", "mod comm"}) EXPECT_EQ(count(one), 1) << one;
    for (const char* none : {"Alarm List", "Constants", "ParmString", "Block EGUs"}) EXPECT_EQ(count(none), 0) << none;
    const auto text = [&file](const std::string& sql) { return file.textOf(sql).value_or("?"); };
    EXPECT_EQ(text("SELECT group_concat(BlockNumber || ':' || FunctionNumber, ' ') FROM [Block List] WHERE "
                   "FunctionNumber <> 127"),
              "0:0 1:1 2:90 3:91");
    EXPECT_EQ(text("SELECT MenuTitle FROM [Menu List] WHERE MenuNumber = 0"), "MAIN MENU");
    EXPECT_EQ(text("SELECT min(Password) || '/' || max(Password) FROM [Screen List]"), "1/1");
    EXPECT_EQ(text("SELECT count(*) FROM [Screen Items] WHERE Type = 99 AND X IS NULL AND Text0 IS NULL AND Block IS "
                   "NULL AND Parameter IS NULL"),
              "3750");
    EXPECT_EQ(text("SELECT count(*) FROM Pens WHERE Threshold = 2 AND [Interval] = 15 AND Scale1 = 0 AND Descriptor = "
                   "'' AND Block = 0"),
              "140");
    EXPECT_EQ(text("SELECT group_concat(EGUID || ',' || Name || ',' || Decimal || ',' || Zero || ',' || Span || ',' || "
                   "Units || ',' || Comment, ';') FROM EGUs WHERE EGUID IN (1, 2, 3, 4, 50)"),
              "1,THERMISTOR,0,-50,300,DEG F, ;2,J_TC,0,0,1000,DEG F, ;3,HdrPSI,0,0,200,PSI, ;"
              "4,default,2,0,10000,%, ;50,default,2,0,10000,%, ");
    EXPECT_EQ(text("SELECT RevLevel || ',' || Vtext || ',' || Major || ',' || Minor FROM Version"),
              "5.01,Describe,3,1");
    EXPECT_EQ(text("SELECT Baud || Length || Parity || Stop || Protocol || Address FROM [mod comm]"), "000001");
    EXPECT_EQ(text("SELECT min(LoopText) || max(LoopText) FROM [Loop List]"), "  ");
    EXPECT_EQ(text("SELECT group_concat(Offset || PagerInfo) FROM Pager"), "0,1,2,3,4");
    EXPECT_EQ(text("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(file.integerOf("PRAGMA application_id"), 0x51525663);
}

TEST(db1, AFamilyWithoutAnOpenFileIsAnError) {
    ScriptedBox boxes;
    db1 db(boxes);
    EXPECT_EQ(errorOf([&] { db.BlockMoveFirst(); }), 91);
    EXPECT_EQ(errorOf([&] { static_cast<void>(db.BlockFn()); }), 91);
    EXPECT_EQ(errorOf([&] { db.FuncSetIndex("FN"); }), 91);
    EXPECT_EQ(errorOf([&] { db.PollMoveFirst(); }), 91);
}

TEST(db1, WalksEditsAndKeepsABlock) {
    OpenFileRig rig;
    rig.db.BlockSeek(12);
    rig.db.BlockEdit();
    rig.db.BlockFn(45);
    rig.db.BlockConstant(3);
    rig.db.BlockComment("supply fan");
    rig.db.BlockUpdate();
    rig.reopen();
    rig.db.BlockSeek(12);
    EXPECT_EQ(rig.db.blockNumber(), 12);
    EXPECT_EQ(rig.db.BlockFn(), 45);
    EXPECT_EQ(rig.db.BlockConstant(), 3);
    EXPECT_EQ(rig.db.BlockComment(), "supply fan");
    EXPECT_EQ(rig.db.BlockVisioComment(), "");
}

TEST(db1, NumbersAreCheckedAgainstTheirColumn) {
    OpenFileRig rig;
    rig.db.BlockMoveFirst();
    rig.db.BlockEdit();
    EXPECT_EQ(errorOf([&] { rig.db.BlockFn(32768); }), 6);
    rig.db.ScreenItemSeek(1, 1);
    rig.db.ScreenItemEdit();
    EXPECT_EQ(errorOf([&] { rig.db.ScreenItemX(-1); }), 6);
    EXPECT_EQ(errorOf([&] { rig.db.ScreenItemX(256); }), 6);
    rig.addConstant(5, 0, 1);
    rig.db.ConstantSeek(5, 0);
    rig.db.ConstantEdit();
    EXPECT_EQ(errorOf([&] { rig.db.ConstantValue(2147483648LL); }), 6);
}

TEST(db1, AnUnusedScreenItemReadsAsZeroAndEmpty) {
    OpenFileRig rig;
    rig.db.ScreenItemSeek(3, 150);
    EXPECT_EQ(rig.db.ScreenItemX(), 0);
    EXPECT_EQ(rig.db.ScreenItemY(), 0);
    EXPECT_EQ(rig.db.ScreenItemLarge(), 0);
    EXPECT_EQ(rig.db.ScreenItemEditable(), 0);
    EXPECT_EQ(rig.db.ScreenItemWidth(), 0);
    EXPECT_EQ(rig.db.ScreenItemBlock(), 0);
    EXPECT_EQ(rig.db.ScreenItemParameter(), 0);
    EXPECT_EQ(rig.db.ScreenItemText0() + rig.db.ScreenItemText1() + rig.db.ScreenItemText2() + rig.db.ScreenItemText3(),
              "");
    EXPECT_EQ(rig.db.ScreenItemType(), 99);
}

TEST(db1, ANullIsAnErrorWhereNothingElseIsTold) {
    OpenFileRig rig;
    rig.alter(
        "UPDATE [Menu Items] SET Description = NULL; UPDATE [Menu List] SET MenuTitle = NULL;"
        "UPDATE [Screen List] SET ScreenTitle = NULL; UPDATE [Chart List] SET Description = NULL;"
        "UPDATE Pens SET Zero = NULL; UPDATE [Block List] SET Comment = NULL, VisioComment = NULL, TempRam = NULL");
    rig.db.open_existing_database(rig.path);
    rig.db.MenuItemMoveFirst();
    EXPECT_EQ(errorOf([&] { static_cast<void>(rig.db.MenuItemDescription()); }), 94);
    rig.db.BlockMoveFirst();
    EXPECT_EQ(errorOf([&] { static_cast<void>(rig.db.BlockTempRam()); }), 94);
    EXPECT_EQ(rig.db.BlockComment() + rig.db.BlockVisioComment(), "");
    rig.db.MenuMoveFirst();
    EXPECT_EQ(rig.db.MenuTitle(), "");
    rig.db.ScreenMoveFirst();
    EXPECT_EQ(rig.db.ScreenTitle(), "");
    rig.db.ChartMoveFirst();
    EXPECT_EQ(rig.db.ChartDescription(), "");
    rig.db.PenMoveFirst();
    EXPECT_EQ(rig.db.PenZero(), std::nullopt);
    EXPECT_EQ(rig.db.PenSpan(), 0);
    rig.db.PenEdit();
    rig.db.PenZero(-5);
    rig.db.PenSpan(std::nullopt);
    rig.db.PenUpdate();
    EXPECT_EQ(rig.db.PenZero(), -5);
    EXPECT_EQ(rig.db.PenSpan(), std::nullopt);
}

TEST(db1, ATitleIsEmptyWithoutACurrentRow) {
    OpenFileRig rig;
    rig.db.MenuSeek(99);
    EXPECT_EQ(rig.db.MenuTitle(), "");
    EXPECT_EQ(errorOf([&] { static_cast<void>(rig.db.MenuCount()); }), 3021);
}

TEST(db1, AMissedSeekFollowedByAGetterIsAnError) {
    OpenFileRig rig;
    rig.db.ConstantSeek(4, 0);
    EXPECT_TRUE(rig.db.ConstantNoMatch());
    EXPECT_EQ(errorOf([&] { static_cast<void>(rig.db.ConstantValue()); }), 3021);
}

TEST(db1, ARepeatedConstantIsSilentlyLeftOut) {
    OpenFileRig rig;
    rig.addConstant(4, 0, 40);
    rig.addConstant(4, 0, 99);
    rig.db.ConstantSeek(4, 0);
    EXPECT_EQ(rig.db.ConstantValue(), 40);
    EXPECT_EQ(errorOf([&] { rig.db.ConstantValue(1); }), 3020);
    rig.addConstant(4, 1, 41);
    rig.db.ConstantSeek(4, 1);
    EXPECT_FALSE(rig.db.ConstantNoMatch());
}

TEST(db1, OnlyFourUpdatesIgnoreErrors) {
    OpenFileRig rig;
    rig.db.ConstantUpdate();
    rig.db.MenuItemUpdate();
    rig.db.ScreenItemUpdate();
    rig.db.ParmstrUpdate();
    using Update = std::function<void()>;
    const std::vector<Update> strict{
        [&] { rig.db.BlockUpdate(); }, [&] { rig.db.CommentUpdate(); }, [&] { rig.db.VersionUpdate(); },
        [&] { rig.db.PagerUpdate(); }, [&] { rig.db.AlarmUpdate(); },   [&] { rig.db.SlotUpdate(); },
        [&] { rig.db.MenuUpdate(); },  [&] { rig.db.ScreenUpdate(); },  [&] { rig.db.ChartUpdate(); },
        [&] { rig.db.PenUpdate(); },   [&] { rig.db.EGUUpdate(); },     [&] { rig.db.BEGUUpdate(); },
        [&] { rig.db.LoopUpdate(); },  [&] { rig.db.PollUpdate(); },    [&] { rig.db.ModcommUpdate(); }};
    for (const Update& update : strict) EXPECT_EQ(errorOf(update), 3020);
}

TEST(db1, AnEmptyStringParameterIsSilentlyLeftOut) {
    OpenFileRig rig;
    rig.db.ParmstrAddNew();
    rig.db.ParmstrBlockNumber(9);
    rig.db.ParmstrOffset(2);
    rig.db.ParmstrStr("");
    rig.db.ParmstrUpdate();
    rig.db.ParmstrSeek(9, 2);
    EXPECT_TRUE(rig.db.ParmstrNoMatch());
}

TEST(db1, AnEmptyVersionTextIsRefused) {
    OpenFileRig rig;
    rig.db.VersionEdit();
    rig.db.VersionVtext("");
    EXPECT_EQ(errorOf([&] { rig.db.VersionUpdate(); }), 3315);
}

TEST(db1, TheVersionRowCanBeReadAndChanged) {
    OpenFileRig rig;
    rig.db.VersionMoveFirst();
    EXPECT_EQ(rig.db.VersionRevLevel(), 5.01F);
    EXPECT_EQ(rig.db.VersionVtext(), "Describe");
    rig.db.VersionEdit();
    rig.db.VersionRevLevel(5.5F);
    rig.db.VersionUpdate();
    EXPECT_EQ(rig.db.VersionRevLevel(), 5.5F);
}

TEST(db1, EmptyTablesAreHarmlessWhereTold) {
    OpenFileRig rig;
    rig.db.ParmstrMoveFirst();
    EXPECT_TRUE(rig.db.ParmstrEOF());
    EXPECT_EQ(rig.db.AlarmHowMany(), 0);
    rig.db.AlarmMoveFirst();
    EXPECT_TRUE(rig.db.AlarmEOF());
    EXPECT_EQ(rig.db.BEGUHowMany(), 0);
    rig.db.BEGUMoveFirst();
    EXPECT_TRUE(rig.db.BEGUEOF());
    EXPECT_EQ(errorOf([&] { rig.db.ConstantMoveFirst(); }), 3021);
}

TEST(db1, AnEmptyPollListSaysSo) {
    OpenFileRig rig;
    rig.db.PollMoveFirst();
    while (!rig.db.PollEOF()) {
        rig.db.PollDeleteRecord();
        if (rig.db.PollHowMany() > 0) rig.db.PollMoveNext();
    }
    EXPECT_EQ(rig.db.PollHowMany(), 0);
    rig.boxes.expect("Poll Recordset is Empty");
    rig.db.PollMoveFirst();
}

TEST(db1, AlarmsAreWalkedAsAddedUntilTheFirstSeek) {
    OpenFileRig rig;
    for (const int block : {30, 10, 20}) rig.addAlarm(block, std::to_string(block));
    const auto walk = [&rig] {
        std::string texts;
        for (rig.db.AlarmMoveFirst(); !rig.db.AlarmEOF(); rig.db.AlarmMoveNext()) {
            texts += rig.db.AlarmDescription() + " ";
        }
        return texts;
    };
    EXPECT_EQ(walk(), "30 10 20 ");
    rig.db.AlarmSeekBlock(20);
    EXPECT_EQ(rig.db.AlarmDescription(), "20");
    EXPECT_EQ(walk(), "10 20 30 ");
    rig.reopen();
    EXPECT_EQ(walk(), "30 10 20 ");
}

TEST(db1, AScaleBeyondASingleIsRefused) {
    OpenFileRig rig;
    rig.db.PenSeek(1, 1);
    rig.db.PenEdit();
    for (const double bad : {1e39, -3.41e38, HUGE_VAL, std::nan("")}) {
        EXPECT_EQ(errorOf([&] { rig.db.PenScale1(bad); }), 6) << bad;
        EXPECT_EQ(errorOf([&] { rig.db.PenScale12(bad); }), 6) << bad;
    }
    rig.db.PenScale1(3.4e38);
    rig.db.PenUpdate();
    rig.db.VersionEdit();
    EXPECT_EQ(errorOf([&] { rig.db.VersionRevLevel(HUGE_VAL); }), 6);
    rig.reopen();
    rig.db.PenSeek(1, 1);
    EXPECT_EQ(rig.db.PenScale1(), 3.4e38F);
    EXPECT_EQ(rig.db.PenScale12(), 0.0F);
}

TEST(db1, AThresholdIsRoundedHalfToEvenByItsColumn) {
    OpenFileRig rig;
    rig.db.PenSeek(1, 1);
    for (const auto& [given, kept] : {std::pair{2.5F, 2.0F}, {3.5F, 4.0F}, {-0.4F, 0.0F}}) {
        rig.db.PenEdit();
        rig.db.PenThreshold(given);
        rig.db.PenUpdate();
        EXPECT_EQ(rig.db.PenThreshold(), kept);
    }
    rig.db.PenEdit();
    EXPECT_EQ(errorOf([&] { rig.db.PenThreshold(32768.0F); }), 6);
    EXPECT_EQ(errorOf([&] { rig.db.PenThreshold(1e39); }), 6);
    EXPECT_EQ(errorOf([&] { rig.db.PenThreshold(std::nan("")); }), 6);
}

TEST(db1, FlagsAreMinusOneInTheFileAndAnyNumberReadsAsTrue) {
    OpenFileRig rig;
    rig.db.PenSeek(1, 1);
    rig.db.PenEdit();
    rig.db.PenAnalog(true);
    rig.db.PenUpdate();
    rig.db.close_work_dbs();
    {
        Sqlite file(rig.path, Sqlite::Mode::ReadWrite);
        EXPECT_EQ(file.integerOf("SELECT Analog FROM Pens WHERE ChartNumber = 1 AND Offset = 1"), -1);
        file.execute("UPDATE Pens SET Analog = 1 WHERE ChartNumber = 2");
    }
    rig.db.open_existing_database(rig.path);
    rig.db.PenSeek(2, 3);
    EXPECT_TRUE(rig.db.PenAnalog());
    rig.db.PenSeek(3, 1);
    EXPECT_FALSE(rig.db.PenAnalog());
}

/// The shipped catalogue, open.
struct Catalogue {
    Catalogue() { db.open_database(QRV_CATALOGUE_DATA); }
    ScriptedBox boxes;
    db1 db{boxes};
};

TEST(db1Catalogue, IsWalkedInStoredOrderFromItsFirstRowUntilAnIndexIsChosen) {
    Catalogue catalogue;
    EXPECT_EQ(catalogue.db.FuncName(), "NOP");
    EXPECT_EQ(errorOf([&] { catalogue.db.FuncSeekI(127); }), 3019);
    int count = 0;
    for (; !catalogue.db.FuncEOF(); catalogue.db.FuncMoveNext()) ++count;
    EXPECT_GT(count, 100);
}

TEST(db1Catalogue, OnlyFnInCapitalsChoosesTheNumbers) {
    Catalogue catalogue;
    catalogue.db.FuncSetIndex("FN");
    catalogue.db.FuncSeekI(127);
    EXPECT_FALSE(catalogue.db.FuncNoMatch());
    EXPECT_EQ(catalogue.db.FuncName(), "NOP");
    EXPECT_EQ(errorOf([&] { catalogue.db.FuncSeekS("NOP"); }), 3421);
    for (const char* name : {"fn", "Name", "Fname", ""}) {
        catalogue.db.FuncSetIndex(name);
        EXPECT_EQ(errorOf([&] { catalogue.db.FuncSeekI(127); }), 3421) << name;
        catalogue.db.FuncSeekS("ain");
        EXPECT_FALSE(catalogue.db.FuncNoMatch()) << name;
        EXPECT_EQ(catalogue.db.FuncFN(), 2) << name;
    }
}

TEST(db1Catalogue, AMissedSeekKeepsTheRowBefore) {
    Catalogue catalogue;
    catalogue.db.FuncSetIndex("FN");
    catalogue.db.FuncSeekI(2);
    catalogue.db.FuncSeekI(255);
    EXPECT_TRUE(catalogue.db.FuncNoMatch());
    EXPECT_EQ(catalogue.db.FuncName(), "AIN");
    catalogue.db.ParamSeek(2, 1);
    const std::string description = catalogue.db.ParamDescription();
    catalogue.db.ParamSeek(2, 200);
    EXPECT_TRUE(catalogue.db.ParamNoMatch());
    EXPECT_EQ(catalogue.db.ParamDescription(), description);
}

TEST(db1Catalogue, AMissingFileRaises) {
    ScriptedBox boxes;
    const TemporaryFolder folder;
    db1 db(boxes);
    EXPECT_EQ(errorOf([&] { db.open_database(folder.path()); }), 53);
    EXPECT_EQ(errorOf([&] { static_cast<void>(db.FuncName()); }), 91);
}

}  // namespace
}  // namespace qrv
