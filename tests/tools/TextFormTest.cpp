#include "tools/TextForm.h"

#include <gtest/gtest.h>

#include "tools/ContentRig.h"

namespace qrv {
namespace {

const std::string kMark = "QRV configuration text, form 1\n";

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(TextForm, OfANewFileIsItsFirstLine) {
    ContentRig rig;
    EXPECT_EQ(rig.text(), kMark);
}

TEST(TextForm, NamesFunctionsInputsAndParameters) {
    ContentRig rig;
    rig.place(4, 29, 4);  // ASW: three inputs, one parameter
    rig.field("Block List", 4, "Comment") = std::string("Outdoor sensor \"A\"\r\nnorth wall");
    rig.place(600, 2, 10);
    rig.addConstant(4, 0, 600);
    rig.addConstant(4, 1, 1024 + 600);    // its first aux analog output
    rig.addConstant(4, 2, 1624 - 32768);  // its first aux discrete output
    rig.addConstant(4, 3, 2500);
    EXPECT_EQ(rig.text(),
              kMark +
                  "\n[Block List]\n"
                  "BlockNumber=4 FunctionNumber=29 Constants=4 TempRam=0 VolRam=0"
                  R"( Comment="Outdoor sensor \"A\"\r\nnorth wall" VisioComment=""  # ASW)"
                  "\n"
                  "BlockNumber=600 FunctionNumber=2 Constants=10 TempRam=0 VolRam=0"
                  " Comment=\"\" VisioComment=\"\"  # AIN\n"
                  "\n[Constants]\n"
                  "BlockNumber=4 Offset=0 ConstantValue=600  # input 1 INPUT WHEN SWITCH IS OFF <- 600 AIN\n"
                  "BlockNumber=4 Offset=1 ConstantValue=1624  # input 2 INPUT WHEN SWITCH IS ON <- 600 AIN RAW\n"
                  "BlockNumber=4 Offset=2 ConstantValue=-31144  # input 3 SWITCH INPUT <- 600 AIN FAIL\n"
                  "BlockNumber=4 Offset=3 ConstantValue=2500  # parameter 1 CHANGE-OVER TIME, SECONDS\n");
}

TEST(TextForm, NamesHiddenConstantsAndStrings) {
    ContentRig rig;
    rig.place(600, 2, 10);
    rig.addConstant(600, 8, 0);
    rig.place(7, 13, 16);  // LININT: one input, its first parameter a string
    rig.content.of("ParmString").rows.push_back({7, 1, std::string("STACK TEMP")});
    EXPECT_TRUE(contains(rig.text(), "BlockNumber=600 Offset=8 ConstantValue=0  # hidden 1 FACTORY ZERO\n"));
    EXPECT_TRUE(contains(rig.text(), "BlockNumber=7 Offset=1 Pstring=\"STACK TEMP\"  # parameter 1 LINEAR INTERPOL\n"));
}

TEST(TextForm, MarksReferencesToOutputsThatAreNot) {
    ContentRig rig;
    rig.place(600, 2, 10);
    rig.place(7, 11, 3);
    rig.addConstant(7, 0, 5 * 1024 + 600);  // AIN has no fifth analog output
    rig.addConstant(7, 1, 1024 + 800);      // there is no block 800
    EXPECT_TRUE(contains(rig.text(), "ConstantValue=5720  # input 1 INPUT TO SUBTRACT FROM <- 600 AIN BUNK\n"));
    EXPECT_TRUE(contains(rig.text(), "ConstantValue=1824  # input 2 INPUT TO BE SUBTRACTED <- BUNK\n"));
}

TEST(TextForm, TellsOfAFunctionThatTheCatalogueLacks) {
    ContentRig rig;
    rig.place(9, 250, 0);
    EXPECT_TRUE(contains(rig.text(), "VisioComment=\"\"  # no function of the catalogue\n"));
}

TEST(TextForm, NamesWhatAlarmsPensAndRegistersPointAt) {
    ContentRig rig;
    rig.place(20, 115, 4);
    rig.content.of("Alarm List")
        .rows.push_back({20, std::string("\xCCOW WATER"), std::string(" "), std::string(" "), -1});
    rig.field("Pens", 0, "Block") = 20;
    rig.field("Poll List", 0, "BlockNumber") = 20;
    rig.field("Poll List", 0, "LogicalAddr") = 20;
    const std::string text = rig.text();
    // The first character's highest bit is the mark of an alarm that pages.
    EXPECT_TRUE(contains(text,
                         "[Alarm List]\nBlockNumber=20 Description=\"\u00CCOW WATER\" Event0=\" \" Event1=\" \""
                         " IsAlarm=true  # 20 HICMP, pages\n"));
    EXPECT_TRUE(contains(text,
                         "\n[Pens]\nChartNumber=1 Offset=1 Block=20 Descriptor=\"\" Units=\"\" Analog=false Scale1=0"
                         " Scale12=0 ScaleDec=0 BottomTic=0 LowTic=0 HighTic=0 LowTag=\"\" HighTag=\"\" ScaleMult=0"
                         " Zero=0 Span=0 Threshold=2 Interval=15 Decimal=0 GEGU=0  # 20 HICMP\n"));
    EXPECT_TRUE(
        contains(text, "Offset=1 BlockNumber=20 AuxOut=\"\" Param=0 Comments=\"\" LogicalAddr=20  # 20 HICMP\n"));
}

TEST(TextForm, LeavesNullsOut) {
    ContentRig rig;
    rig.field("Screen Items", 0, "Type") = 1;
    rig.field("Screen Items", 0, "X") = 5;
    EXPECT_EQ(rig.text(), kMark + "\n[Screen Items]\nScreenNumber=1 Offset=1 X=5 Type=1\n");
}

TEST(TextForm, WritesANullThatTheDesktopCouldNotRead) {
    ContentRig rig;
    rig.field("Slots", 3, "Description") = Value{};
    for (const char* column : {"Title", "Comment", "Config"}) rig.field("Comments", 0, column) = Value{};
    for (const char* column : {"Baud", "Length", "Parity", "Stop", "Protocol", "Address"}) {
        rig.field("mod comm", 0, column) = Value{};
    }
    for (const char* column : {"RevLevel", "Vtext", "Major", "Minor"}) rig.field("Version", 0, column) = Value{};
    const std::string text = rig.text();
    EXPECT_EQ(text, kMark +
                        "\n[Slots]\nOffset=3 Description=null\n"
                        "\n[Comments]\nTitle=null Comment=null Config=null\n"
                        "\n[Version]\nRevLevel=null Vtext=null Major=null Minor=null\n"
                        "\n[mod comm]\nBaud=null Length=null Parity=null Stop=null Protocol=null Address=null\n");
    const TextFormResult result = readTextForm(text, "plant.txt");
    ASSERT_EQ(result.refusal, "");
    rig.content = *result.content;
    EXPECT_EQ(rig.text(), text);
}

TEST(TextForm, TellsOfARowThatIsGone) {
    ContentRig rig;
    auto& items = rig.content.of("Menu Items").rows;
    items.erase(items.begin() + 1);
    rig.field("Menu Items", 1, "Description") = std::string("PUMPS");
    EXPECT_EQ(rig.text(), kMark +
                              "\n[Menu Items]\n"
                              "- MenuNumber=0 Offset=2\n"
                              "MenuNumber=0 Offset=3 Description=\"PUMPS\" Type=0 Target=0 Block=0\n");
}

TEST(TextForm, OneChangedParameterIsOneChangedLine) {
    ContentRig rig;
    rig.place(4, 3, 1);
    rig.addConstant(4, 0, 1000);
    std::string expected = rig.text();
    rig.content.of("Constants").rows.back()[2] = 1001;
    const std::size_t place = expected.find("ConstantValue=1000");
    ASSERT_NE(place, std::string::npos);
    expected.replace(place, 18, "ConstantValue=1001");
    EXPECT_EQ(rig.text(), expected);
}

TEST(TextForm, ReadBackGivesTheSameRows) {
    ContentRig rig;
    rig.place(4, 29, 4);
    rig.addConstant(4, 0, -31144);
    rig.field("Pens", 3, "Scale1") = 0.1F;
    rig.field("Pens", 3, "Zero") = Value{};
    rig.field("Screen List", 2, "ScreenAlarm") = -1;
    rig.content.of("Screen Items").rows.erase(rig.content.of("Screen Items").rows.begin());
    const TextFormResult result = readTextForm(rig.text(), "plant.txt");
    ASSERT_EQ(result.refusal, "");
    for (const TableContent& table : rig.content.tables) {
        EXPECT_TRUE(result.content->of(table.table->name).rows == table.rows) << table.table->name;
    }
}

}  // namespace
}  // namespace qrv
