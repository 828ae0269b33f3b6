#include "TestCatalogue.h"

#include <fstream>

#include "store/Schema.h"
#include "store/Sqlite.h"

namespace qrv {
namespace {

// fn, Fname, Icycle, VolRam, INPUTS, params, Hidden, Single, AuxAnalogs, AuxDiscretes, ftype
constexpr const char* kFunctions = R"(
    (0, 'ZERO', 1, 0, 0, 0, 0, 0, 0, 0, 1),
    (1, 'HUNDRED', 1, 0, 0, 0, 0, 0, 0, 0, 1),
    (90, 'OFF', 1, 0, 0, 0, 0, 0, 0, 0, 2),
    (91, 'ON', 1, 0, 0, 0, 0, 0, 0, 0, 2),
    (127, 'NOP', 0, 0, 0, 0, 0, 0, 0, 0, 0),
    (2, 'AIN', 2, 0, 0, 2, 1, 0, 0, 0, 1),
    (92, 'DIN', 2, 0, 0, 1, 0, 0, 0, 0, 2),
    (81, 'AOUT', 2, 0, 2, 1, 0, 0, 0, 0, 1),
    (93, 'DOUT', 2, 0, 1, 0, 0, 0, 0, 0, 2),
    (125, 'ROUT', 2, 2, 1, 1, 0, 0, 0, 0, 2),
    (84, 'TOUT', 2, 0, 1, 1, 0, 0, 0, 0, 1),
    (10, 'SUM', 2, 3, 3, 2, 1, 0, 0, 0, 1),
    (12, 'TEXTS', 2, 0, 0, 3, 0, 0, 0, 0, 1),
    (13, 'LABEL', 2, 0, 2, 3, 0, 0, 0, 0, 1),
    (20, 'SCALES', 2, 0, 1, 9, 0, 0, 0, 0, 1),
    (30, 'AABO', 2, 0, 1, 1, 0, 0, 0, 0, 1),
    (31, 'DABO', 2, 0, 1, 1, 0, 0, 0, 0, 2),
    (40, 'STAGE', 2, 0, 0, 1, 0, 0, 2, 3, 1),
    (41, 'METER', 2, 0, 0, 0, 0, 0, 1, 0, 1),
    (43, 'ALARMS', 2, 0, 0, 0, 0, 0, 0, 1, 2),
    (50, 'WIDE', 2, 0, 74, 0, 0, 0, 0, 0, 1),
    (60, 'RETAIN', 2, 211, 0, 1, 0, 0, 0, 0, 1)
)";

// fn, In, Description, ShortName, Security, type
constexpr const char* kInputs = R"(
    (81, 1, 'SIGNAL', 'S', 0, 1), (81, 2, 'FEEDBACK', 'F', 0, 1),
    (93, 1, 'STATE', 'S', 0, 2), (125, 1, 'STATE', 'S', 0, 2), (84, 1, 'SIGNAL', 'S', 0, 1),
    (10, 1, 'FIRST INPUT', 'A', 0, 1),
    (10, 2, 'ENABLE FOR THE SECOND ADDEND OF ALL', 'E', 0, 2),
    (10, 3, ' INPUT AT THE START', 'B', 0, 1),
    (13, 1, 'VALUE INPUT OF THE TEXT', 'V', 0, 1), (13, 2, 'HOLD input', 'H', 0, 2),
    (20, 1, 'OTHER', 'O', 0, 3),
    (30, 1, 'SOURCE', 'S', 0, 1), (31, 1, 'SOURCE', 'S', 0, 2)
)";

// fn, pn, Description, offset, Min, Max, Default, decimal, Security, type
constexpr const char* kParams = R"(
    (2, 1, 'FILTER', 0, 0, 100000, 1000, 1, 0, 1), (2, 2, 'RANGE', 0, 0, 3, 0, 0, 0, 1),
    (2, 3, 'HIDDEN', 0, 0, 0, 7, 0, 0, 1),
    (92, 1, 'DELAY', 0, 0, 600, 0, 0, 0, 1), (81, 1, 'LEAST', 0, 0, 100000, 0, 1, 0, 1),
    (125, 1, 'MODE', 0, 0, 2, 1, 0, 0, 1), (84, 1, 'PERIOD', 0, 1, 60, 10, 0, 0, 1),
    (10, 1, 'GAIN', 0, -5000, 5000, 1000, 3, 0, 1),
    (10, 2, 'THIS IS EXACTLY 28 CHARS ..X', 0, 0, 9, 4, 0, 0, 1),
    (10, 3, 'HIDDEN', 0, 0, 0, 77, 0, 0, 1),
    (12, 1, 'NAME', 0, 0, 16, 5, 0, 0, 3), (12, 2, 'PLACE OF THE METER IN THE YARD', 0, 0, 16, 6, 0, 0, 3),
    (12, 3, 'LIMIT', 0, 0, 10, 3, 0, 0, 1),
    (13, 1, 'LIMIT', 0, 0, 10, 3, 0, 0, 1), (13, 2, 'CAPTION', 0, 0, 5, 9, 0, 0, 3),
    (13, 3, 'TAIL', 0, 0, 8, 9, 0, 0, 3),
    (20, 1, 'WHOLE', 0, -10, 200, 5, 0, 0, 1),
    (20, 2, 'ONE PLACE', 0, -500, 100000, 12350, 1, 0, 1),
    (20, 3, 'TWO PLACES', 0, -1000, 100000, 12355, 2, 0, 1),
    (20, 4, 'THREE PLACES', 0, 1, 32767000, 1500, 3, 0, 1),
    (20, 5, 'FOUR PLACES', 0, 1, 100, 0, 4, 0, 1),
    (20, 6, 'DECIMALS', 0, 0, 4, 2, 0, 0, 2),
    (20, 7, 'COUNTED', 0, -20000, 20000, 1234, 0, 0, 4),
    (20, 8, 'COUNTED TOO', 0, -20000, 20000, -1234, 0, 0, 4),
    (20, 9, 'LAST', 0, 0, 1, 0, 0, 0, 1),
    (30, 1, 'OUTPUT', 0, 0, 31, 0, 0, 0, 1), (31, 1, 'OUTPUT', 0, 0, 31, 0, 0, 0, 1),
    (40, 1, 'STAGES', 0, 1, 4, 2, 0, 0, 1), (60, 1, 'KEPT', 0, 0, 1, 0, 0, 0, 1)
)";

// function, kind, ordinal, Description, Short
constexpr const char* kAuxOutputs = R"(
    (40, 'A', 1, 'LOAD IN PERCENT', 'LOAD'), (40, 'A', 2, 'RUNNING STAGES', 'RUNNING'),
    (40, 'D', 1, 'STAGE ONE', 'STG1'), (40, 'D', 2, 'STAGE TWO', 'STG2'), (40, 'D', 3, 'STAGE THREE OF THE COMPRESSOR', 'STG3'),
    (41, 'A', 1, 'TOTAL', 'TOT'), (43, 'D', 1, 'ANY ALARM', 'ANY')
)";

std::string quotedNames(const std::string& commaSeparated) {
    std::string quoted = "'";
    for (const char c : commaSeparated) quoted += c == ',' ? std::string("','") : std::string(1, c);
    return quoted + "'";
}

}  // namespace

void makeTestCatalogue(const std::string& folder, const std::string& without) {
    Sqlite file("", Sqlite::Mode::Memory);
    for (const Table& table : catalogueTables()) {
        file.execute(createTableSql(table));
        for (const Index& index : table.indexes) file.execute(createIndexSql(table, index));
    }
    const auto fill = [&](const char* table, const char* rows) {
        file.execute(std::string("INSERT INTO ") + table + " VALUES " + rows);
    };
    fill("Funcs", kFunctions);
    fill("Inputs", kInputs);
    for (int i = 1; i <= 74; ++i) {
        file.execute("INSERT INTO Inputs VALUES (50, " + std::to_string(i) + ", 'IN " + std::to_string(i) +
                     "', '', 0, 1)");
    }
    fill("Params", kParams);
    fill("AuxOutputs", kAuxOutputs);
    fill("Version", "('test')");
    if (!without.empty()) file.execute("DELETE FROM Funcs WHERE Fname IN (" + quotedNames(without) + ")");
    file.execute("PRAGMA application_id = " + std::to_string(kCatalogueApplicationId));
    file.execute("PRAGMA user_version = " + std::to_string(kCatalogueUserVersion));
    std::ofstream(folder + "/QRVDATA.DAT", std::ios::binary) << file.bytes();
}

}  // namespace qrv
