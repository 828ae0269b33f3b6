#include "store/CatalogueWriter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/RunTimeError.h"
#include "store/CatalogueText.h"
#include "store/Sqlite.h"
#include "store/db1.h"
#include "twins/ScriptedBox.h"

namespace qrv {
namespace {

constexpr std::size_t kMostBytes = 1024 * 1024;

/// The data file that the build made.
Sqlite dataFile() { return {std::string(QRV_CATALOGUE_DATA) + "/QRVDATA.DAT", Sqlite::Mode::ReadOnly}; }

std::string joinedRows(Sqlite& file, const std::string& sql) {
    std::string rows;
    for (Statement statement = file.prepare(sql); statement.step();) {
        for (int column = 0; column < statement.columnCount(); ++column) {
            rows += (column == 0 ? "" : "|") + std::string(statement.text(column));
        }
        rows += "\n";
    }
    return rows;
}

TEST(CatalogueWriter, SameTextGivesSameBytes) {
    const CatalogueText text = readCatalogueText(QRV_CATALOGUE_TEXT).text;
    const std::string bytes = catalogueFile(text);
    EXPECT_EQ(bytes, catalogueFile(text));
    EXPECT_EQ(bytes, readWhole(std::string(QRV_CATALOGUE_DATA) + "/QRVDATA.DAT", kMostBytes).bytes);
}

TEST(CatalogueWriter, FileIsMarkedAsACatalogue) {
    Sqlite file = dataFile();
    EXPECT_EQ(file.integerOf("PRAGMA application_id"), 0x51525666);
    EXPECT_EQ(file.integerOf("PRAGMA user_version"), 1);
    EXPECT_EQ(file.textOf("PRAGMA integrity_check"), "ok");
}

TEST(CatalogueWriter, TablesHaveTheFieldsTold) {
    Sqlite file = dataFile();
    const auto fields = [&file](const std::string& table) {
        return joinedRows(file, "SELECT name FROM pragma_table_info('" + table + "')");
    };
    EXPECT_EQ(joinedRows(file, "SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY name"),
              "AuxOutputs\nFuncs\nInputs\nParams\nVersion\n");
    EXPECT_EQ(fields("Funcs"),
              "fn\nFname\nIcycle\nVolRam\nINPUTS\nparams\nHidden\nSingle\nAuxAnalogs\nAuxDiscretes\nftype\n");
    EXPECT_EQ(fields("Inputs"), "fn\nIn\nDescription\nShortName\nSecurity\ntype\n");
    EXPECT_EQ(fields("Params"), "fn\npn\nDescription\noffset\nMin\nMax\nDefault\ndecimal\nSecurity\ntype\n");
    EXPECT_EQ(fields("AuxOutputs"), "fn\nKind\nOrdinal\nDescription\nShort\n");
    EXPECT_EQ(fields("Version"), "VersionString\n");
}

TEST(CatalogueWriter, IndexesAreThoseTold) {
    Sqlite file = dataFile();
    const auto index = [&file](const std::string& name) {
        return joinedRows(file, "SELECT name FROM pragma_index_info('" + name + "')");
    };
    EXPECT_EQ(index("Funcs.PrimaryKey"), "fn\n");
    EXPECT_EQ(index("Funcs.Fname"), "Fname\n");
    EXPECT_EQ(index("Inputs.PrimaryKey"), "fn\nIn\n");
    EXPECT_EQ(index("Params.PrimaryKey"), "fn\npn\n");
    EXPECT_EQ(index("AuxOutputs.PrimaryKey"), "fn\nKind\nOrdinal\n");
    EXPECT_EQ(joinedRows(file, "SELECT count(*) FROM sqlite_schema WHERE type = 'index' AND sql LIKE '%UNIQUE%'"),
              "5\n");
}

TEST(CatalogueWriter, KeysAreNotTheRowsOwnNumbers) {
    Sqlite file = dataFile();
    // NOP, number 127, is stored first.
    EXPECT_EQ(joinedRows(file, "SELECT rowid, fn, Fname FROM Funcs ORDER BY rowid LIMIT 3"),
              "1|127|NOP\n2|0|ZERO\n3|1|FULL\n");
}

TEST(CatalogueWriter, RowsHoldWhatTheTextSays) {
    Sqlite file = dataFile();
    EXPECT_EQ(joinedRows(file, "SELECT * FROM Funcs WHERE fn = 10"), "10|ADD|1|0|2|1|0|0|0|0|1\n");
    EXPECT_EQ(joinedRows(file, "SELECT * FROM Inputs WHERE fn = 10"),
              "10|1|FIRST INPUT|A|3|1\n10|2|SECOND INPUT|B|3|1\n");
    EXPECT_EQ(joinedRows(file, "SELECT * FROM Params WHERE fn = 10"), "10|1|BIAS, %|2|-327680|327670|0|3|2|1\n");
    EXPECT_EQ(joinedRows(file, "SELECT * FROM AuxOutputs WHERE fn = 16"), "16|D|1|DENOMINATOR TOO SMALL|LOW\n");
    EXPECT_EQ(joinedRows(file, "SELECT * FROM Version"), "1.00\n");
}

TEST(CatalogueWriter, NameTwiceIsRefusedWhateverTheCase) {
    CatalogueText text;
    text.functions = {FunctionRow{.fn = 1, .name = "ADD"}, FunctionRow{.fn = 2, .name = "add"}};
    EXPECT_THROW((void)catalogueFile(text), RunTimeError);
}

TEST(CatalogueWriter, TheToolOpensTheFile) {
    ScriptedBox box;
    db1 db(box);
    db.open_database(QRV_CATALOGUE_DATA);
    int count = 0;
    for (; !db.FuncEOF(); db.FuncMoveNext()) ++count;
    EXPECT_EQ(count, 128);
    db.FuncSetIndex("Name");
    db.FuncSeekS("f(x)");
    ASSERT_FALSE(db.FuncNoMatch());
    EXPECT_EQ(db.FuncFN(), 42);
    EXPECT_EQ(db.FuncInputs() + db.FuncParams(), 28);
    db.ParamSeek(42, 7);
    EXPECT_EQ(db.ParamDefault(), 10000);
    db.AuxSeek(43, "D", 2);
    EXPECT_EQ(db.AuxShort(), "HIGH");
}

// --- what other parts of the tool and the controller rely on, asked of the file itself ---

struct ReliedOn {
    const char* name;
    const char* sql;  ///< a number: how many rows break it
};
std::ostream& operator<<(std::ostream& out, const ReliedOn& row) { return out << row.name; }

class CatalogueDataTest : public testing::TestWithParam<ReliedOn> {};

TEST_P(CatalogueDataTest, HasNoRowAgainstIt) { EXPECT_EQ(dataFile().integerOf(GetParam().sql), 0); }

const ReliedOn kReliedOn[] = {
    {"inputsMatchTheirCount",
     "SELECT count(*) FROM Funcs f WHERE INPUTS <> (SELECT count(*) FROM Inputs i WHERE i.fn = f.fn)"},
    {"paramsMatchTheirCount",
     "SELECT count(*) FROM Funcs f WHERE params + Hidden <> (SELECT count(*) FROM Params p WHERE p.fn = f.fn)"},
    {"auxOutputsMatchTheirCounts",
     "SELECT count(*) FROM Funcs f WHERE AuxAnalogs <> (SELECT count(*) FROM AuxOutputs a WHERE a.fn = f.fn AND Kind = "
     "'A')"
     " OR AuxDiscretes <> (SELECT count(*) FROM AuxOutputs a WHERE a.fn = f.fn AND Kind = 'D')"},
    {"noParameterZero", "SELECT count(*) FROM Params WHERE pn < 1"},
    {"typesAreKnown", "SELECT count(*) FROM Params WHERE type NOT IN (1, 2, 3, 4)"},
    {"stringsOnThreeFunctionsOnly", "SELECT count(*) FROM Params WHERE type = 3 AND fn NOT IN (12, 13, 114)"},
    {"threeStrings",
     "SELECT count(*) - 3 FROM Params WHERE type = 3 AND Max = 16 AND Description = upper(Description)"},
    {"hiddenArePlainZeros",
     "SELECT count(*) FROM Params p JOIN Funcs f ON f.fn = p.fn WHERE pn > params AND (p.type <> 1 OR [Default] <> 0)"},
    {"countsOfDecimals", "SELECT count(*) FROM Params WHERE type = 2 AND (Min <> 0 OR Max <> 4 OR decimal <> 0)"},
    {"ownDecimalsAtOddPlaces",
     "SELECT count(*) FROM Params p WHERE type = 4 AND pn % 2 = 1 AND NOT EXISTS"
     " (SELECT 1 FROM Params c WHERE c.fn = p.fn AND c.pn = p.pn - 1 AND c.type = 2)"},
    {"ownDecimalsAtEvenPlaces",
     "SELECT count(*) FROM Params p WHERE type = 4 AND pn % 2 = 0 AND NOT (EXISTS"
     " (SELECT 1 FROM Params c WHERE c.fn = p.fn AND c.pn = p.pn - 2 AND c.type = 2) AND NOT EXISTS"
     " (SELECT 1 FROM Params c WHERE c.fn = p.fn AND c.pn = p.pn - 1 AND c.type = 2))"},
    {"sixteenBitsForTheHighHalf", "SELECT count(*) FROM Params WHERE type IN (2, 4) AND (Min < -32768 OR Max > 32767)"},
    {"defaultsWithinLimits", "SELECT count(*) FROM Params WHERE type <> 3 AND [Default] NOT BETWEEN Min AND Max"},
    {"atMostTwoOddScales", "SELECT max(0, count(*) - 2) FROM Params WHERE decimal IN (1, 2)"},
    {"constantsWithoutSlots",
     "SELECT count(*) FROM Funcs WHERE fn IN (0, 1, 90, 91, 127) AND INPUTS + params + Hidden + VolRam + AuxAnalogs +"
     " AuxDiscretes <> 0"},
    {"constantsOfTheirKind",
     "SELECT 5 - count(*) FROM Funcs WHERE (fn IN (0, 1) AND ftype = 1) OR (fn IN (90, 91) AND ftype = 2) OR (fn = 127 "
     "AND"
     " Fname = 'NOP' AND ftype = 0 AND Icycle = 0)"},
    {"boardFunctionsByNumber",
     "SELECT 5 - count(*) FROM Funcs WHERE (fn = 2 AND Fname = 'AIN') OR (fn = 81 AND Fname = 'AOUT') OR (fn = 84 AND"
     " Fname = 'TOUT') OR (fn = 92 AND Fname = 'DIN') OR (fn = 125 AND Fname = 'ROUT')"},
    {"namesSoughtByTheTool", "SELECT 3 - count(*) FROM Funcs WHERE Fname IN ('AABO', 'DABO', 'DOUT')"},
    {"numbersKnownByTheTool",
     "SELECT 12 - count(*) FROM Funcs WHERE fn IN (5, 9, 12, 13, 38, 55, 93, 94, 97, 98, 99, 114)"},
    {"curveOfElevenPoints",
     "SELECT 22 - count(*) FROM Params p JOIN Funcs f ON f.fn = p.fn WHERE p.fn = 42 AND pn + INPUTS BETWEEN 7 AND 28 "
     "AND"
     " p.type = 1 AND Min = 0 AND Max = 100000 AND decimal = 3 AND pn <= params"},
    {"tenLimitGroups",
     "SELECT 40 - count(*) FROM Params WHERE fn = 96 AND pn BETWEEN 2 AND 41 AND type = CASE pn % 4 WHEN 2 THEN 2 WHEN "
     "1"
     " THEN 2 ELSE 4 END"},
    {"ordinalsAreTheFirstParameter",
     "SELECT 2 - count(*) FROM Params p JOIN Funcs f ON f.fn = p.fn WHERE Fname IN ('AABO', 'DABO') AND INPUTS = 1 AND"
     " params = 1 AND Hidden = 0 AND pn = 1 AND p.type = 1 AND decimal = 0 AND Min = 0 AND Max = 31 AND [Default] = 0"},
    {"icycleSumFits16Bits", "SELECT count(*) FROM Funcs WHERE Icycle < 0 OR 705 * Icycle > 32767"},
    {"descriptionsAreThere",
     "SELECT (SELECT count(*) FROM Inputs WHERE trim(Description) = '') + (SELECT count(*) FROM Params WHERE"
     " trim(Description) = '') + (SELECT count(*) FROM AuxOutputs WHERE trim(Description) = '' OR trim(Short) = '')"},
    {"outputsAreNamedApart",
     "SELECT count(*) FROM (SELECT 1 FROM AuxOutputs GROUP BY fn, Kind, Short HAVING count(*) > 1)"},
    {"namesAreOneWord", "SELECT count(*) FROM Funcs WHERE Fname LIKE '% %' OR length(Fname) NOT BETWEEN 1 AND 8"},
    {"slotsReachTheLimitOfAProgram",
     "SELECT count(*) FROM (SELECT min(n) AS least, max(n) AS most FROM (SELECT INPUTS + params + Hidden AS n FROM "
     "Funcs"
     " WHERE INPUTS + params + Hidden > 0)) WHERE least <> 1 OR most < 10"},
};

INSTANTIATE_TEST_SUITE_P(ReliedOn, CatalogueDataTest, testing::ValuesIn(kReliedOn),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace qrv
