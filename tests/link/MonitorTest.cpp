#include "link/Monitor.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "LiveRig.h"

namespace qrv::test {
namespace {

const std::string kPumpTag = "Pump            ";

TEST(Monitor, NewLabelShowsTagAndBlock) {
    MonitorRig rig;
    rig.analog(12, 100);
    rig.add("12", "Pump");
    EXPECT_EQ(rig.form.entry_count, 1);
    EXPECT_EQ(rig.form.label(1).caption, "Pump\nBlock 12");
    EXPECT_TRUE(rig.form.label(1).visible);
    EXPECT_EQ(rig.form.entry(1), (MonitorEntry{.in_use = true, .block = 12, .kind = 1, .tag = kPumpTag, .color = 0}));
}

TEST(Monitor, NopAndDiscreteFunctionsHaveTheSecondKind) {
    MonitorRig rig;
    rig.discrete(5, true);
    rig.add("5", "Valve");
    rig.add("6", "Nothing");
    EXPECT_EQ(rig.form.entry(1).kind, 2);
    EXPECT_EQ(rig.form.entry(2).kind, 2);
}

TEST(Monitor, TwentySixthBlockDoesNothing) {
    MonitorRig rig;
    for (int i = 0; i < 25; ++i) rig.add("4", "Pump");
    const MonitorEntries before = rig.form.entries;
    rig.form.Command1_Click();
    EXPECT_EQ(rig.form.entry_count, 25);
    EXPECT_EQ(rig.form.entries, before);
}

TEST(Monitor, AnalogShowsItsValueFirstAndDiscreteItsTag) {
    MonitorRig rig;
    rig.analog(12, -5);
    rig.discrete(13, true);
    rig.add("12", "Pump");
    rig.add("13", "Pump");
    rig.poll(milliseconds(200));
    EXPECT_EQ(rig.form.label(1).caption, "-0.05\n" + kPumpTag);
    EXPECT_EQ(rig.form.label(2).caption, kPumpTag + "\n1");
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_TRUE(rig.form.Command2.enabled);
}

TEST(Monitor, SleepsTenMillisecondsBeforeEachPass) {
    MonitorRig rig;
    rig.analog(12, 100);
    rig.add("12", "Pump");
    rig.poll(milliseconds(200));
    ASSERT_FALSE(rig.clock.sleeps.empty());
    EXPECT_EQ(rig.clock.sleeps.size(), rig.blocksRead().size());
    for (const auto sleep : rig.clock.sleeps) EXPECT_EQ(sleep, milliseconds(10));
}

TEST(Monitor, ResetWhilePollingLeavesNothingToRead) {
    MonitorRig rig;
    rig.analog(12, 100);
    rig.add("12", "Pump");
    std::size_t readings = 0;
    rig.after(milliseconds(100), [&] {
        rig.form.Command4_Click();
        readings = rig.blocksRead().size();
    });
    rig.poll(milliseconds(1000));
    EXPECT_EQ(rig.form.entry_count, 0);
    EXPECT_FALSE(rig.form.label(1).visible);
    EXPECT_EQ(rig.form.label(1).caption, "");
    EXPECT_EQ(rig.blocksRead().size(), readings);
    EXPECT_GE(rig.clock.elapsed(), milliseconds(1000));
}

TEST(Monitor, DeadLineLeavesTheValueAndMarksIt) {
    MonitorRig rig;
    rig.analog(12, 100);
    rig.analog(13, 200);
    rig.add("12", "Pump");
    rig.add("13", "Pump");
    rig.dieAt(4);  // poll, two good readings, silence
    rig.poll(milliseconds(5000));
    EXPECT_EQ(rig.form.label(1).caption, "1.00\n" + kPumpTag);
    EXPECT_TRUE(rig.form.label(1).silentSince.has_value());
    EXPECT_FALSE(rig.form.label(2).silentSince.has_value());
    EXPECT_EQ(rig.blocksRead().size(), 12U);
}

TEST(Monitor, SilenceIsToldFromTheTimeOfTheQuestion) {
    MonitorRig rig;
    rig.analog(12, 100);
    rig.add("12", "Pump");
    rig.dieAt(2);
    rig.poll(milliseconds(5000));
    const auto asked = rig.clock.wallTime() - rig.clock.elapsed() + rig.record.sentAt.at(1);
    EXPECT_EQ(rig.form.label(1).silentSince, asked);
}

TEST(Monitor, WithoutMarksADeadLineChangesNothing) {
    MonitorRig rig(StaleMarks::Absent);
    rig.analog(12, 100);
    rig.add("12", "Pump");
    rig.dieAt(2);
    rig.poll(milliseconds(5000));
    EXPECT_EQ(rig.form.label(1).caption, "Pump\nBlock 12");
    EXPECT_FALSE(rig.form.label(1).silentSince.has_value());
}

TEST(Monitor, AQuestionClosedWithoutAnAnswerAddsNoLabel) {
    MonitorRig rig;
    rig.analog(12, 100);
    rig.add("12", "Pump");
    rig.host.onModal("frmTag", [&rig](Form& shown) { rig.host.unload(shown); });
    rig.form.Command1_Click();
    EXPECT_EQ(rig.form.entry_count, 1);
    EXPECT_FALSE(rig.form.label(2).visible);
    rig.add("12", "Fan");
    EXPECT_EQ(rig.form.entry_count, 2);
    EXPECT_EQ(rig.form.label(2).caption, "Fan\nBlock 12");
}

// --- the file ---

/// 52 bytes: in use, block 300, analog, "Pump", red.
std::string pumpRecord() {
    return std::string("\xFF\xFF\x2C\x01\x01\x00", 6) + kPumpTag + std::string("\xFF\x00\x00\x00", 4) +
           std::string(26, '\0');
}

TEST(Monitor, SavesTwentyFiveRecordsOfFiftyTwoBytes) {
    MonitorRig rig;
    rig.analog(300, 100);
    rig.host.onModal("frmTag", [](Form& shown) {
        auto& asked = dynamic_cast<frmTag&>(shown);
        asked.Text1.text = "Pump";
        asked.Text2.text = "300";
        asked.Picture1_MouseDown(150, 800);
        asked.Command1_Click();
    });
    rig.form.Command1_Click();
    rig.form.Command5_Click();
    const std::string bytes = rig.bytes();
    ASSERT_EQ(bytes.size(), 1300U);
    EXPECT_EQ(bytes.substr(0, 52), pumpRecord());
    EXPECT_EQ(bytes.substr(52, 6), std::string(6, '\0'));
    EXPECT_EQ(bytes.substr(58, 16), std::string(16, ' '));
}

TEST(Monitor, RestoresToTheHighestRecordInUse) {
    MonitorRig rig;
    rig.write(std::string(52, '\0') + pumpRecord() + std::string(23 * 52, '\0'));
    rig.add("4", "Other");
    rig.form.Command6_Click();
    EXPECT_EQ(rig.form.entry_count, 2);
    EXPECT_FALSE(rig.form.label(1).visible);
    EXPECT_EQ(rig.form.label(2).caption, kPumpTag + "\nBlock 300");
    EXPECT_EQ(rig.form.label(2).color, 0x0000FF);
    EXPECT_EQ(rig.form.label(2).left, 2310);
}

TEST(Monitor, MissingFileGivesAnEmptyBoard) {
    MonitorRig rig;
    rig.add("4", "Other");
    rig.form.Command6_Click();
    EXPECT_EQ(rig.form.entry_count, 0);
    EXPECT_FALSE(rig.form.label(1).visible);
    EXPECT_FALSE(std::filesystem::exists(rig.file()));
}

TEST(Monitor, ShortFileGivesWhatItHolds) {
    MonitorRig rig;
    rig.write(pumpRecord() + pumpRecord().substr(0, 10));
    rig.form.Command6_Click();
    EXPECT_EQ(rig.form.entry_count, 2);
    EXPECT_EQ(rig.form.entry(2).block, 300);
    EXPECT_EQ(rig.form.entry(2).tag, std::string("Pump") + std::string(12, '\0'));
}

TEST(Monitor, ForeignFileGivesNoBlockThatNoControllerHas) {
    MonitorRig rig;
    rig.write(std::string(4000, '\x7F'));
    rig.form.Command6_Click();
    EXPECT_EQ(rig.form.entry_count, 0);
}

TEST(Monitor, FileIsNamedAfterAnyConfiguration) {
    EXPECT_EQ(boardFileOf("/a/boiler.mdb"), "/a/boiler.mon");
    EXPECT_EQ(boardFileOf("/a.b/boiler.qrv"), "/a.b/boiler.mon");
    EXPECT_EQ(boardFileOf("/a/plan\u00E9"), "/a/plmon");
    EXPECT_EQ(boardFileOf("/a/\u20AC\u00E9\u00FC"), "/a/mon");
}

TEST(Monitor, BoardThatCannotBeReadIsTold) {
    MonitorRig rig;
    std::filesystem::create_directory(rig.file());
    rig.boxes.expect("The board was not restored: cannot read " + rig.file() + ": Is a directory.");
    rig.form.Command6_Click();
    EXPECT_EQ(rig.form.entry_count, 0);
}

TEST(Monitor, BoardThatCannotBeKeptIsTold) {
    MonitorRig rig;
    std::filesystem::create_directory(rig.file());
    rig.boxes.expect("The board was not saved: cannot replace " + rig.file() + ": Is a directory.");
    rig.form.Command5_Click();
}

// --- dragging ---

struct SnapRow {
    const char* name;
    int x, y;
    int left, top;
};

class MonitorSnap : public testing::TestWithParam<SnapRow> {};

TEST_P(MonitorSnap, TakesThePlaceOfItsLimits) {
    MonitorRig rig;
    rig.add("4", "Pump");
    rig.form.drop(1, GetParam().x, GetParam().y);
    EXPECT_EQ(rig.form.label(1).left, GetParam().left);
    EXPECT_EQ(rig.form.label(1).top, GetParam().top);
}

TEST(Monitor, ALabelBesideAPlaceStepsToTheNextPlaceAndNoFurtherThanTheLast) {
    MonitorRig rig;
    rig.add("4", "Pump");
    const auto stepFrom = [&rig](int left, int top, int columns, int rows) {
        rig.form.label(1).left = left;
        rig.form.label(1).top = top;
        rig.form.step(1, columns, rows);
        return std::pair(rig.form.label(1).left, rig.form.label(1).top);
    };
    EXPECT_EQ(stepFrom(660, 1500, 1, 0), std::pair(2310, 1200));
    EXPECT_EQ(stepFrom(660, 1500, 0, 1), std::pair(360, 2450));
    EXPECT_EQ(stepFrom(360, 1200, -1, 0), std::pair(360, 1200));
    EXPECT_EQ(stepFrom(360, 1200, 0, -1), std::pair(360, 1200));
    EXPECT_EQ(stepFrom(8160, 4950, 1, 0), std::pair(8160, 4950));
    EXPECT_EQ(stepFrom(8160, 4950, 0, 1), std::pair(8160, 4950));
    EXPECT_EQ(stepFrom(4260, 3700, -1, 0), std::pair(2310, 3700));
}

INSTANTIATE_TEST_SUITE_P(
    Limits, MonitorSnap,
    testing::Values(SnapRow{"beyondTheCorner", -50, -50, 360, 1200}, SnapRow{"belowTheFirst", 2309, 2449, 360, 1200},
                    SnapRow{"atTheFirst", 2310, 2450, 2310, 2450}, SnapRow{"belowTheSecond", 4259, 3699, 2310, 2450},
                    SnapRow{"atTheSecond", 4260, 3700, 4260, 3700}, SnapRow{"belowTheThird", 6209, 4949, 4260, 3700},
                    SnapRow{"atTheThird", 6210, 4950, 6210, 4950}, SnapRow{"belowTheLast", 8159, 4950, 6210, 4950},
                    SnapRow{"atTheLast", 8160, 9000, 8160, 4950}),
    [](const auto& row) { return row.param.name; });

// --- the question ---

struct BlockRow {
    const char* name;
    const char* typed;
    std::int16_t block;
};

class FrmTagBlock : public testing::TestWithParam<BlockRow> {};

TEST_P(FrmTagBlock, IsFourUnlessANumberWithinTheBlocks) {
    LiveRig rig;
    frmTag form(rig.bench);
    rig.host.show(form);
    form.Text2.text = GetParam().typed;
    form.Command1_Click();
    EXPECT_EQ(form.block, GetParam().block);
    EXPECT_FALSE(rig.host.isLoaded(form));
}

INSTANTIATE_TEST_SUITE_P(Texts, FrmTagBlock,
                         testing::Values(BlockRow{"empty", "", 4}, BlockRow{"word", "pump", 4},
                                         BlockRow{"zero", "0", 0}, BlockRow{"last", "704", 704},
                                         BlockRow{"beyond", "705", 4}, BlockRow{"negative", "-1", 4},
                                         BlockRow{"huge", "1E300", 4}, BlockRow{"beyondAllNumbers", "1e999", 4}),
                         [](const auto& row) { return row.param.name; });

TEST(FrmTag, ComesUpWithBlockFourInBlack) {
    LiveRig rig;
    frmTag form(rig.bench);
    rig.host.show(form);
    EXPECT_EQ(form.caption, "Enter Block Number And Tag");
    EXPECT_EQ(form.Text1.text, "Block 4");
    EXPECT_TRUE(form.isPicture1Painted);
    EXPECT_EQ(form.color, 0);
}

struct ColourRow {
    const char* name;
    double x;
    std::int32_t color;
};

class FrmTagColour : public testing::TestWithParam<ColourRow> {};

TEST_P(FrmTagColour, IsTheBoxUnderTheMouse) {
    LiveRig rig;
    frmTag form(rig.bench);
    rig.host.show(form);
    form.Picture1_MouseDown(GetParam().x, 800);
    EXPECT_EQ(form.color, GetParam().color);
    EXPECT_EQ(form.Label3BackColor, GetParam().color);
}

INSTANTIATE_TEST_SUITE_P(Boxes, FrmTagColour,
                         testing::Values(ColourRow{"first", 0, 0x000000}, ColourRow{"firstEnd", 99.9, 0x000000},
                                         ColourRow{"red", 100, 0x0000FF}, ColourRow{"blue", 450, 0xFF0000},
                                         ColourRow{"last", 799, 0xFFFFFF}, ColourRow{"atTheEdge", 800, 0xFFFFFF}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace qrv::test
