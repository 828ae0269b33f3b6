#include "store/CatalogueText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "store/CatalogueRules.h"
#include "twins/TemporaryFolder.h"

namespace qrv {
namespace {

namespace fs = std::filesystem;

/// A copy of the shipped text that a test may spoil.
class CatalogueTextTest : public testing::Test {
 protected:
    CatalogueTextTest() { fs::copy(QRV_CATALOGUE_TEXT, folder_, fs::copy_options::recursive); }

    void write(const std::string& file, const std::string& content) const {
        std::ofstream(folder_ / file, std::ios::binary) << content;
    }
    void append(const std::string& file, const std::string& content) const {
        std::ofstream(folder_ / file, std::ios::binary | std::ios::app) << content;
    }
    [[nodiscard]] CatalogueReading read() const { return readCatalogueText(folder_.string()); }
    /// The one fault that the reading has.
    [[nodiscard]] CatalogueFault onlyFault() const {
        const CatalogueReading reading = read();
        EXPECT_EQ(reading.faults.size(), 1U);
        if (reading.faults.size() != 1) return {};
        EXPECT_EQ(reading.faults.front().rule, "rowsCanBeRead");
        return reading.faults.front();
    }

    TemporaryFolder scratch_;
    fs::path folder_ = fs::path(scratch_.path()) / "text";
};

TEST_F(CatalogueTextTest, ReadsRowsInTheOrderOfTheFile) {
    write("functions.csv",
          "fn,Fname,Icycle,VolRam,INPUTS,params,Hidden,Single,AuxAnalogs,AuxDiscretes,ftype,Group,Title\n"
          "200,ZED,3,2,1,4,5,1,6,7,2,logic,\"Last, and first\"\n"
          "10,ADD,1,0,2,1,0,0,0,0,1,arithmetic,Sum of two\n");
    const CatalogueReading reading = read();
    ASSERT_TRUE(reading.faults.empty());
    ASSERT_EQ(reading.text.functions.size(), 2U);
    const FunctionRow& row = reading.text.functions[0];
    EXPECT_EQ(row.fn, 200);
    EXPECT_EQ(row.name, "ZED");
    EXPECT_EQ(row.icycle, 3);
    EXPECT_EQ(row.volRam, 2);
    EXPECT_EQ(row.inputs, 1);
    EXPECT_EQ(row.params, 4);
    EXPECT_EQ(row.hidden, 5);
    EXPECT_EQ(row.single, 1);
    EXPECT_EQ(row.auxAnalogs, 6);
    EXPECT_EQ(row.auxDiscretes, 7);
    EXPECT_EQ(row.ftype, 2);
    EXPECT_EQ(row.group, "logic");
    EXPECT_EQ(row.title, "Last, and first");
    EXPECT_EQ(row.line, 2);
    EXPECT_EQ(row.slots(), 10);
    EXPECT_EQ(reading.text.functions[1].line, 3);
}

TEST_F(CatalogueTextTest, ReadsAParameter) {
    write("params.csv",
          "fn,pn,Description,offset,Min,Max,Default,decimal,Security,type\n"
          "10,1,\"BIAS, %\",2,-327680,327670,1500,3,2,1\n");
    const CatalogueReading reading = read();
    ASSERT_EQ(reading.text.params.size(), 1U);
    const ParamRow& row = reading.text.params[0];
    EXPECT_EQ(row.description, "BIAS, %");
    EXPECT_EQ(row.offset, 2);
    EXPECT_EQ(row.min, -327680);
    EXPECT_EQ(row.max, 327670);
    EXPECT_EQ(row.initial, 1500);
    EXPECT_EQ(row.decimal, 3);
    EXPECT_EQ(row.security, 2);
    EXPECT_EQ(row.type, 1);
}

TEST_F(CatalogueTextTest, JoinsTheLinesOfAParagraph) {
    write("definitions/logic.txt",
          "100 AND2\nOutput: Y = 1 when\n  I1 and I2 are.\nLimits: None.\n\n104 NOT\nOutput: Y.\n");
    const CatalogueText text = read().text;
    const Definition* both = text.definition(100);
    ASSERT_NE(both, nullptr);
    EXPECT_EQ(both->name, "AND2");
    EXPECT_EQ(both->file, "definitions/logic.txt");
    EXPECT_EQ(both->line, 1);
    ASSERT_EQ(both->paragraphs.size(), 2U);
    EXPECT_EQ(both->paragraphs[0].label, "Output");
    EXPECT_EQ(both->paragraphs[0].text, "Y = 1 when I1 and I2 are.");
    ASSERT_NE(text.definition(104), nullptr);
    EXPECT_EQ(text.definition(104)->line, 6);
}

TEST_F(CatalogueTextTest, MissingFileIsNamed) {
    fs::remove(folder_ / "inputs.csv");
    const CatalogueFault fault = onlyFault();
    EXPECT_EQ(fault.file, "inputs.csv");
    EXPECT_EQ(fault.row, 0);
}

TEST_F(CatalogueTextTest, OtherHeadingIsRefused) {
    write("version.csv", "Version\n1.00\n");
    const CatalogueFault fault = onlyFault();
    EXPECT_EQ(fault.file, "version.csv");
    EXPECT_EQ(fault.row, 1);
}

TEST_F(CatalogueTextTest, MissingCellIsRefused) {
    write("groups.csv", "Group,Title\nlogic\n");
    const CatalogueFault fault = onlyFault();
    EXPECT_EQ(fault.file, "groups.csv");
    EXPECT_EQ(fault.row, 2);
    EXPECT_EQ(fault.detail, "1 cells where the heading has 2");
}

TEST_F(CatalogueTextTest, EmptyCellIsRefused) {
    write("aux_outputs.csv", "fn,Kind,Ordinal,Description,Short\n2,A,1,,RAW\n");
    EXPECT_EQ(onlyFault().detail, "Description is empty");
}

TEST_F(CatalogueTextTest, LetterInANumberIsRefused) {
    write("inputs.csv", "fn,In,Description,ShortName,Security,type\n10,1,A,A,3,1\n10,2x,B,B,3,1\n");
    const CatalogueFault fault = onlyFault();
    EXPECT_EQ(fault.row, 3);
    EXPECT_EQ(fault.detail, "In is no whole number: 2x");
}

TEST_F(CatalogueTextTest, NumberBeyond32BitsIsRefused) {
    write("params.csv",
          "fn,pn,Description,offset,Min,Max,Default,decimal,Security,type\n"
          "10,1,BIAS,2,0,2147483648,0,3,2,1\n");
    EXPECT_EQ(onlyFault().detail, "Max is no whole number: 2147483648");
}

TEST_F(CatalogueTextTest, StrayLineInADefinitionIsRefused) {
    append("definitions/links.txt", "no paragraph\n");
    EXPECT_EQ(onlyFault().file, "definitions/links.txt");
}

TEST_F(CatalogueTextTest, DefinitionWithoutANumberIsRefused) {
    append("definitions/links.txt", "\nPID 43\nOutput: Y.\n");
    EXPECT_EQ(onlyFault().detail, "a definition begins with its function's number and name");
}

TEST_F(CatalogueTextTest, BrokenRuleOfAFileIsFoundWithItsRow) {
    append("params.csv", "126,3,SPARE,3,5,1,0,0,2,1\n");
    const CheckedCatalogue catalogue = checkedCatalogue(folder_.string());
    bool isFound = false;
    for (const CatalogueFault& fault : catalogue.faults) {
        isFound =
            isFound || (fault.file == "params.csv" && fault.rule == "paramsAreNumberedThrough" && fault.row > 400);
    }
    EXPECT_TRUE(isFound);
}

}  // namespace
}  // namespace qrv
