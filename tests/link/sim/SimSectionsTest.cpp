#include "link/sim/SimSections.h"

#include <gtest/gtest.h>

namespace qrv::test {

namespace {

constexpr auto kRead = SimAccessKind::Read;
constexpr auto kWrite = SimAccessKind::Write;

struct AccessRow {
    const char* name;
    SimAccessKind kind;
    std::uint8_t section;
    std::uint32_t offset, count;
};

std::string refusalOf(const AccessRow& row, SimStrictness strictness = SimStrictness::Layouts) {
    return simRefusalOf(row.kind, row.section, row.offset, row.count, strictness);
}

class SimSectionsTakes : public testing::TestWithParam<AccessRow> {};
class SimSectionsRefuses : public testing::TestWithParam<AccessRow> {};

}  // namespace

TEST_P(SimSectionsTakes, TheAccess) { EXPECT_EQ(refusalOf(GetParam()), ""); }

TEST_P(SimSectionsRefuses, TheAccess) { EXPECT_NE(refusalOf(GetParam()), ""); }

INSTANTIATE_TEST_SUITE_P(
    Layouts, SimSectionsTakes,
    testing::Values(
        AccessRow{"version", kRead, 0, 0, 24}, AccessRow{"firstBlocks", kWrite, 1, 0, 50},
        AccessRow{"lastBlocks", kWrite, 1, 7000, 50}, AccessRow{"lastConstants", kWrite, 3, 22400, 128},
        AccessRow{"firstString", kWrite, 3, 22528, 20}, AccessRow{"longString", kWrite, 3, 22548, 44},
        AccessRow{"endOfNoStrings", kWrite, 3, 22528, 2}, AccessRow{"endOfAHundredStrings", kWrite, 3, 24528, 2},
        AccessRow{"constantsReadAhead", kRead, 3, 22528, 128}, AccessRow{"lastStringRead", kRead, 3, 24568, 20},
        AccessRow{"lastBlocksRead", kRead, 4, 6900, 150}, AccessRow{"lastAlarms", kWrite, 6, 2700, 180},
        AccessRow{"lastAlarmRead", kRead, 6, 2844, 36}, AccessRow{"mainHeader", kWrite, 9, 0, 164},
        AccessRow{"screenDirectory", kWrite, 9, 164, 150}, AccessRow{"firstMenuTitle", kWrite, 9, 314, 22},
        AccessRow{"emptyMenusChecksum", kWrite, 9, 314, 2}, AccessRow{"loopList", kRead, 9, 0, 64},
        AccessRow{"lastMenuEntry", kRead, 9, 160, 4}, AccessRow{"lastScreenEntry", kRead, 9, 308, 6},
        AccessRow{"screenItemHead", kRead, 9, 314, 12}, AccessRow{"screenItemTexts", kRead, 9, 326, 68},
        AccessRow{"chartHeader", kWrite, 10, 0, 144}, AccessRow{"noChartsChecksum", kWrite, 10, 144, 2},
        AccessRow{"lastChartEntry", kRead, 10, 140, 4}, AccessRow{"chartTitle", kRead, 10, 144, 21},
        AccessRow{"pen", kRead, 10, 166, 40}, AccessRow{"historyHead", kWrite, 11, 0, 4},
        AccessRow{"noAnalogs", kWrite, 11, 4, 0}, AccessRow{"fortyAnalogs", kWrite, 11, 4, 240},
        AccessRow{"fortyDiscretesBehindThem", kWrite, 11, 244, 160}, AccessRow{"historyChecksum", kWrite, 11, 404, 2},
        AccessRow{"lastReserved", kWrite, 12, 1688, 18}, AccessRow{"noBlockUnitsChecksum", kWrite, 12, 1706, 2},
        AccessRow{"lastGlobalUnit", kRead, 12, 790, 16}, AccessRow{"lastRegisters", kWrite, 13, 584, 192},
        AccessRow{"modbusSetup", kRead, 13, 0, 8}, AccessRow{"modbusChecksum", kWrite, 13, 776, 2},
        AccessRow{"lastPager", kRead, 14, 240, 60}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Layouts, SimSectionsRefuses,
    testing::Values(
        AccessRow{"versionWritten", kWrite, 0, 0, 24}, AccessRow{"versionByPart", kRead, 0, 1, 23},
        AccessRow{"blockTableReadWhereItIsWritten", kRead, 1, 0, 50},
        AccessRow{"blockTableWrittenWhereItIsRead", kWrite, 4, 0, 150}, AccessRow{"unknownSection", kRead, 2, 0, 20},
        AccessRow{"blockBehindTheLast", kWrite, 1, 7050, 50}, AccessRow{"blocksOutOfStep", kWrite, 1, 10, 50},
        AccessRow{"oneBlock", kWrite, 1, 0, 10}, AccessRow{"constantsInTheStrings", kRead, 3, 22656, 128},
        AccessRow{"stringAmongTheConstants", kWrite, 3, 22508, 20}, AccessRow{"stringOutOfStep", kRead, 3, 22530, 20},
        AccessRow{"alarmFrameOfFourRecords", kWrite, 6, 0, 144}, AccessRow{"alarmBehindTheLast", kRead, 6, 2880, 36},
        AccessRow{"menuTitleInTheHeader", kWrite, 9, 300, 22}, AccessRow{"screenItemReadWhole", kRead, 9, 314, 80},
        AccessRow{"modbusChecksumAtTheHead", kWrite, 13, 0, 2}, AccessRow{"analogsNotWhole", kWrite, 11, 4, 10},
        AccessRow{"unitHeaderTooLong", kRead, 12, 0, 8}, AccessRow{"sixthPager", kWrite, 14, 300, 60},
        AccessRow{"pastTheEndOfTheSection", kWrite, 9, 65500, 80}),
    [](const auto& row) { return row.param.name; });

TEST(SimSections, LooseOnesTakeAnySizeWithinASection) {
    EXPECT_EQ(refusalOf({"", kRead, 9, 3, 17}, SimStrictness::Sections), "");
    EXPECT_EQ(refusalOf({"", kWrite, 3, 65300, 236}, SimStrictness::Sections), "");
    EXPECT_NE(refusalOf({"", kWrite, 3, 65300, 237}, SimStrictness::Sections), "");
    EXPECT_NE(refusalOf({"", kRead, 1, 0, 10}, SimStrictness::Sections), "");
    EXPECT_NE(refusalOf({"", kRead, 2, 0, 10}, SimStrictness::Sections), "");
}

}  // namespace qrv::test
