#include "tools/ConfigurationSummary.h"

#include <gtest/gtest.h>

#include <ostream>

#include "tools/ContentRig.h"

namespace qrv {

bool operator==(const Usage& a, const Usage& b) { return a.used == b.used && a.most == b.most; }
void PrintTo(const Usage& usage, std::ostream* out) { *out << usage.used << " of " << usage.most; }

namespace {

TEST(ConfigurationSummary, OfANewFile) {
    ContentRig rig;
    const ConfigurationSummary summary = summaryOf(rig.content, rig.catalogue);
    EXPECT_EQ(summary.title, "");
    EXPECT_EQ(summary.layoutRevision, "5.01");
    EXPECT_EQ(summary.version, "3.1");
    EXPECT_EQ(summary.boards.size(), 7U);
    EXPECT_EQ(summary.blocks, (Usage{4, 705}));
    EXPECT_EQ(summary.constants, (Usage{0, 5632}));
    EXPECT_EQ(summary.retentiveBytes, (Usage{0, 634}));
    EXPECT_EQ(summary.menus, (Usage{1, 25}));
    EXPECT_EQ(summary.engineeringUnits, (Usage{0, 50}));
    EXPECT_EQ(summary.coils, (Usage{0, 128}));
    EXPECT_EQ(summary.unknownFunctions, 0);
}

TEST(ConfigurationSummary, CountsWhatIsInUse) {
    ContentRig rig;
    rig.field("Comments", 0, "Title") = std::string("Boiler house");
    rig.field("Slots", 1, "Description") = std::string("DISCRETE INPUT   610012");
    rig.place(4, 5, 3);    // OPSP: two retentive bytes
    rig.place(5, 38, 7);   // AMSTA: three
    rig.place(6, 250, 0);  // no function of the catalogue
    rig.addConstant(4, 0, 0);
    rig.content.of("Alarm List").rows.push_back({4, std::string("A"), std::string(), std::string(), 0});
    rig.field("Screen List", 0, "ScreenTitle") = std::string("PLANT");
    rig.field("Screen List", 1, "ScreenTitle") = std::string(" ");
    rig.field("Chart List", 34, "Description") = std::string("HEADER");
    rig.field("EGUs", 49, "Units") = std::string("GPM");
    rig.field("Loop List", 0, "LoopID") = 1;
    rig.field("Poll List", 127, "BlockNumber") = 4;
    rig.field("Poll List", 128, "BlockNumber") = 4;
    const ConfigurationSummary summary = summaryOf(rig.content, rig.catalogue);
    EXPECT_EQ(summary.title, "Boiler house");
    EXPECT_EQ(summary.boards[1], "DISCRETE INPUT   610012");
    EXPECT_EQ(summary.blocks, (Usage{7, 705}));
    EXPECT_EQ(summary.constants, (Usage{1, 5632}));
    EXPECT_EQ(summary.retentiveBytes, (Usage{5, 634}));
    EXPECT_EQ(summary.unknownFunctions, 1);
    EXPECT_EQ(summary.alarms, (Usage{1, 80}));
    EXPECT_EQ(summary.screens, (Usage{1, 25}));
    EXPECT_EQ(summary.charts, (Usage{1, 35}));
    EXPECT_EQ(summary.engineeringUnits, (Usage{1, 50}));
    EXPECT_EQ(summary.loopEntries, (Usage{1, 20}));
    EXPECT_EQ(summary.registers, (Usage{1, 128}));
    EXPECT_EQ(summary.coils, (Usage{1, 128}));
}

}  // namespace
}  // namespace qrv
