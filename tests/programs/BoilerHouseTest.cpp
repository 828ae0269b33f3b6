// The sample is a sound program: it loads, every reference names an output that exists, every constant is one that the
// function takes.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "programs/ProgramRun.h"
#include "store/db1.h"
#include "tools/ContentNotes.h"
#include "tools/TextForm.h"
#include "twins/ScriptedBox.h"

namespace qrv {
namespace {

constexpr std::int32_t kEmptyBlock = 127;
constexpr std::int32_t kCurve = 42;
constexpr std::int32_t kStringParameter = 3;
const std::string kSample = QRV_SAMPLES "/boiler_house.txt";

class BoilerHouse : public testing::Test {
 protected:
    void SetUp() override {
        catalogue.open_database(QRV_CATALOGUE_FOLDER);
        text = bytesOf(kSample);
        TextFormResult result = readTextForm(text, "boiler_house.txt");
        ASSERT_EQ(result.refusal, "");
        content = std::move(*result.content);
        for (const TableRow& row : rowsOf("Block List")) {
            functions[std::get<std::int32_t>(row[0])] = std::get<std::int32_t>(row[1]);
        }
    }

    [[nodiscard]] const std::vector<TableRow>& rowsOf(std::string_view table) const { return content.of(table).rows; }

    /// The catalogue's row of the block's function becomes the current one.
    void seekFunctionOf(std::int32_t block) {
        catalogue.FuncSetIndex("FN");
        catalogue.FuncSeekI(functions.at(block));
        ASSERT_FALSE(catalogue.FuncNoMatch()) << "block " << block;
    }

    void expectOutput(std::int32_t word, const std::string& place) {
        const std::int32_t block = word & 0x3FF;
        const std::int32_t ordinal = (word & 0x7FFF) >> 10;
        ASSERT_TRUE(functions.contains(block)) << place;
        EXPECT_NE(functions.at(block), kEmptyBlock) << place << " names the empty block " << block;
        if (ordinal == 0) return;
        catalogue.AuxSeek(functions.at(block), word < 0 ? "D" : "A", ordinal);
        EXPECT_FALSE(catalogue.AuxNoMatch()) << place << " names an output that block " << block << " lacks";
        (word < 0 ? usesDiscreteAux : usesAnalogAux) = true;
    }

    /// All of a table's rows whose reference isn't 0.
    void expectOutputs(std::string_view table, std::string_view column) {
        const TableContent& rows = content.of(table);
        const auto ordinal = static_cast<std::size_t>(rows.table->columnIndex(column));
        for (const TableRow& row : rows.rows) {
            const auto* word = std::get_if<std::int32_t>(&row[ordinal]);
            if (word != nullptr && *word != 0) expectOutput(*word, std::string(table));
        }
    }

    ScriptedBox boxes;
    db1 catalogue{boxes};
    std::string text;
    ConfigurationContent content;
    std::map<std::int32_t, std::int32_t> functions;
    bool usesAnalogAux = false;
    bool usesDiscreteAux = false;
};

TEST_F(BoilerHouse, IsWrittenAsADumpWritesIt) {
    ContentNotes notes(content, catalogue);
    EXPECT_EQ(textFormOf(content, notes), text);
}

TEST_F(BoilerHouse, GoesThroughAFileUnchanged) {
    const QrvProgram qrv;
    ASSERT_EQ(qrv.run("load '" + kSample + "' plant.qrv").exitCode, 0);
    EXPECT_EQ(qrv.run("dump plant.qrv").out, text);
}

TEST_F(BoilerHouse, HasSomeTwoHundredBlocks) {
    int used = 0;
    for (const auto& [block, function] : functions) used += function == kEmptyBlock ? 0 : 1;
    EXPECT_GE(used, 200);
    EXPECT_LE(used, 250);
}

TEST_F(BoilerHouse, HasOneOfEachBoardWithItsBlocks) {
    struct Board {
        const char* text;
        const char* function;
        std::int32_t blocks;
    };
    const std::vector<Board> boards{
        {"DISCRETE INPUT   610012", "DIN", 15},  {"ANALOG INPUT      610014", "AIN", 8},
        {"RELAY OUTPUT     610027", "ROUT", 8},  {"HOA ROUT              610018", "ROUT", 5},
        {"AUTO MANUAL       610021", "AOUT", 5}, {"TRIAC OUTPUT      610033", "TOUT", 4}};
    EXPECT_TRUE(rowsOf("Slots")[0][1] == Value{std::string("CPU BOARD - 610050")});
    for (std::size_t i = 0; i < boards.size(); ++i) {
        EXPECT_TRUE(rowsOf("Slots")[i + 1][1] == Value{std::string(boards[i].text)}) << boards[i].text;
        catalogue.FuncSetIndex("Name");
        catalogue.FuncSeekS(boards[i].function);
        const std::int32_t function = catalogue.FuncFN();
        const std::int32_t first = 615 + 15 * static_cast<std::int32_t>(i);
        for (std::int32_t place = 0; place < 15; ++place) {
            EXPECT_EQ(functions.at(first + place), place < boards[i].blocks ? function : kEmptyBlock) << first + place;
        }
    }
}

TEST_F(BoilerHouse, EveryBlockHasExactlyItsConstants) {
    std::map<std::int32_t, std::int32_t> counts;
    for (const TableRow& row : rowsOf("Constants")) {
        const std::int32_t block = std::get<std::int32_t>(row[0]);
        EXPECT_TRUE(row[1] == Value{counts[block]}) << "block " << block;
        ++counts[block];
    }
    for (const TableRow& row : rowsOf("Block List")) {
        const std::int32_t block = std::get<std::int32_t>(row[0]);
        seekFunctionOf(block);
        const std::int32_t expected = catalogue.FuncInputs() + catalogue.FuncParams() + catalogue.FuncHidden();
        EXPECT_EQ(counts[block], expected) << "block " << block;
        EXPECT_TRUE(row[2] == Value{expected}) << "block " << block;
    }
}

TEST_F(BoilerHouse, EveryInputIsWiredToAnOutputOfItsKind) {
    for (const TableRow& row : rowsOf("Constants")) {
        const std::int32_t block = std::get<std::int32_t>(row[0]);
        const std::int32_t slot = std::get<std::int32_t>(row[1]);
        const std::int32_t word = std::get<std::int32_t>(row[2]);
        seekFunctionOf(block);
        if (slot >= catalogue.FuncInputs()) continue;
        const std::string place = "block " + std::to_string(block) + " input " + std::to_string(slot + 1);
        expectOutput(word, place);
        const std::string reader = catalogue.FuncName();
        if (reader == "AABO" || reader == "DABO") continue;  // they name a block, whatever its main output
        catalogue.InputSeek(functions.at(block), slot + 1);
        const std::int32_t wanted = catalogue.InputType();
        seekFunctionOf(word & 0x3FF);
        const std::int32_t auxKind = word < 0 ? 2 : 1;
        const bool isMain = word >= 0 && word <= 704;
        EXPECT_EQ(isMain ? std::int32_t{catalogue.FuncFtype()} : auxKind, wanted) << place;
    }
    EXPECT_TRUE(usesAnalogAux);
    EXPECT_TRUE(usesDiscreteAux);
}

TEST_F(BoilerHouse, EveryParameterIsWithinItsLimits) {
    for (const TableRow& row : rowsOf("Constants")) {
        const std::int32_t block = std::get<std::int32_t>(row[0]);
        seekFunctionOf(block);
        const std::int32_t number = std::get<std::int32_t>(row[1]) - catalogue.FuncInputs() + 1;
        if (number < 1 || number > catalogue.FuncParams()) continue;
        catalogue.ParamSeek(functions.at(block), number);
        ASSERT_FALSE(catalogue.ParamNoMatch());
        if (catalogue.ParamType() == kStringParameter) continue;
        const std::int32_t value = std::get<std::int32_t>(row[2]);
        EXPECT_GE(value, catalogue.ParamMin()) << "block " << block << " parameter " << number;
        EXPECT_LE(value, catalogue.ParamMax()) << "block " << block << " parameter " << number;
    }
}

TEST_F(BoilerHouse, AlarmsPensScreensMenusAndRegistersNameUsedOutputs) {
    expectOutputs("Alarm List", "BlockNumber");
    expectOutputs("Pens", "Block");
    expectOutputs("Menu Items", "Block");
    expectOutputs("Screen Items", "Block");
    expectOutputs("Block EGUs", "Block");
    expectOutputs("Poll List", "BlockNumber");
    expectOutputs("Poll List", "LogicalAddr");
}

TEST_F(BoilerHouse, UsesCurvesAndEveryFunctionThatHasAString) {
    std::set<std::int32_t> used;
    for (const auto& [block, function] : functions) used.insert(function);
    EXPECT_TRUE(used.contains(kCurve));
    std::set<std::int32_t> stringBlocks;
    for (const TableRow& row : rowsOf("ParmString")) stringBlocks.insert(functions.at(std::get<std::int32_t>(row[0])));
    for (std::int32_t function = 0; function <= 255; ++function) {
        catalogue.ParamSeek(function, 1);
        if (catalogue.ParamNoMatch() || catalogue.ParamType() != kStringParameter) continue;
        EXPECT_TRUE(stringBlocks.contains(function)) << "function " << function;
    }
}

TEST_F(BoilerHouse, EveryBlockButTheFixedOnesHasAComment) {
    for (const TableRow& row : rowsOf("Block List")) {
        const bool isPlaced = std::get<std::int32_t>(row[0]) > 3 && std::get<std::int32_t>(row[1]) != kEmptyBlock;
        EXPECT_EQ(!std::get<std::string>(row[5]).empty(), isPlaced) << "block " << std::get<std::int32_t>(row[0]);
    }
}

}  // namespace
}  // namespace qrv
