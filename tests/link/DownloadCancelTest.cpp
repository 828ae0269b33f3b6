// A download that the user cancels, at each of its phases and while a frame gets no good answer; and the second round
// of a frame of constants.
#include <gtest/gtest.h>

#include "TransferRig.h"
#include "link/frmDownload.h"

namespace qrv::test {

namespace {

/// Poll, version, announcement, table, constants, strings and their end stand before it.
constexpr std::size_t kCommitFrame = 3 + 141 + 176 + 101 + 1;

/// The number of the frame, from 1, in which each Cancel falls: into the block table, the constants, the strings.
class frmDownloadCancelAt : public testing::TestWithParam<std::size_t> {};

}  // namespace

TEST_P(frmDownloadCancelAt, NoFurtherFrameLeaves) {
    TransferRig rig;
    rig.place(4, "LIMIT10");
    rig.place(5, "SCHEDULE");
    rig.download.onProgress = [&] {
        if (rig.record.sends.size() == GetParam()) rig.download.Cancel_Click();
    };
    rig.runDownload();
    EXPECT_EQ(rig.record.sends.size(), GetParam());
    EXPECT_EQ(rig.controller.counters().commits, 0U);
    EXPECT_EQ(rig.download.outcome().reason, "Form Download Cancel Button Click");
    EXPECT_FALSE(rig.bench.xfer_abort);
}

// Poll, version and announce are the first three; the table takes 141 frames, the constants 176.
INSTANTIATE_TEST_SUITE_P(Phases, frmDownloadCancelAt, testing::Values(4, 5, 144, 145, 146, 147, 320, 321, 322, 421));

namespace {

constexpr const char* kCancelled = "Form Download Cancel Button Click";

/// The frame, from 1, that gets no good answer any more while the user cancels, and the reason that stands then: that
/// of the frame's failure, where one would be told.
struct BadFrame {
    const char* name;
    std::size_t number;
    const char* reason;
};

class frmDownloadCancelOfBadFrame : public testing::TestWithParam<BadFrame> {};

}  // namespace

TEST_P(frmDownloadCancelOfBadFrame, SaysNothingAndSendsNoMore) {
    TransferRig rig;
    rig.place(5, "SCHEDULE");
    rig.controller.play(SimFaultPlan::from("bad-checksum", GetParam().number));
    rig.download.onProgress = [&] {
        if (rig.record.sends.size() + 1 != GetParam().number) return;
        rig.pump.at(rig.clock.now() + std::chrono::milliseconds(100), [&] { rig.download.Cancel_Click(); });
    };
    rig.runDownload();
    EXPECT_LE(rig.record.sends.size(), GetParam().number + 1);
    EXPECT_EQ(rig.controller.counters().commits, GetParam().number == kCommitFrame ? 1U : 0U);
    EXPECT_FALSE(rig.download.outcome().committed);
    EXPECT_EQ(rig.download.outcome().reason, GetParam().reason);
    EXPECT_FALSE(rig.bench.xfer_abort);
}

INSTANTIATE_TEST_SUITE_P(Phases, frmDownloadCancelOfBadFrame,
                         testing::Values(BadFrame{"table", 10, "Form Comm Download blocks fail"},
                                         BadFrame{"constants", 150, "Form Comm Download constant fail"},
                                         BadFrame{"aString", 330, kCancelled}, BadFrame{"stringsEnd", 421, kCancelled},
                                         BadFrame{"commit", kCommitFrame, kCancelled}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(frmDownload, ACancelInTheQuietTimeBeforeTheCommitKeepsItBack) {
    TransferRig rig;
    constexpr std::size_t kStringsEnd = 3 + 141 + 176 + 1;
    // The strings' end goes unanswered once, so that the line falls quiet before the commit.
    rig.controller.play(SimFaultPlan::at("silence", kStringsEnd));
    bool isSeen = false;
    rig.download.onProgress = [&] {
        if (isSeen || rig.record.sends.size() != kStringsEnd + 1) return;
        isSeen = true;
        rig.pump.at(rig.clock.now() + std::chrono::milliseconds(300), [&] { rig.download.Cancel_Click(); });
    };
    rig.runDownload();
    EXPECT_EQ(rig.record.sends.size(), kStringsEnd + 1);
    EXPECT_EQ(rig.controller.counters().commits, 0U);
    EXPECT_FALSE(rig.download.outcome().committed);
    EXPECT_EQ(rig.download.outcome().reason, "Form Download Cancel Button Click");
    EXPECT_EQ(rig.download.outcome().stage, DownloadStage::Sections) << "nobody need wonder whether it was done";
}

namespace {

/// The frame, from 1, whose first send goes unanswered. The line falls quiet before the next frame.
class frmDownloadCancelInTheQuietBehind : public testing::TestWithParam<std::size_t> {};

}  // namespace

TEST_P(frmDownloadCancelInTheQuietBehind, KeepsTheNextFrameBackWhichHasNotFailed) {
    TransferRig rig;
    rig.place(4, "AIN");
    rig.place(5, "AIN");
    rig.place(6, "OARESET");
    rig.place(7, "SCHEDULE");
    rig.controller.play(SimFaultPlan::at("silence", GetParam()));
    rig.controller.onTrace = [&, seen = std::size_t{0}](const SimTrace&) mutable {
        // The second send is answered, and a part of the quiet time goes by.
        if (++seen != GetParam() + 1) return;
        rig.pump.at(rig.clock.now() + std::chrono::milliseconds(300), [&] { rig.download.Cancel_Click(); });
    };
    rig.runDownload();
    EXPECT_EQ(rig.record.sends.size(), GetParam() + 1);
    EXPECT_EQ(rig.controller.counters().commits, 0U);
    EXPECT_EQ(rig.download.outcome().reason, "Form Download Cancel Button Click");
}

// Behind it comes the announcement, the table's first frame and a later one, the first frame of constants, which a
// hidden one fills, a later one, the first string, the strings' end.
INSTANTIATE_TEST_SUITE_P(Phases, frmDownloadCancelInTheQuietBehind, testing::Values(2, 3, 4, 144, 145, 320, 420));

// Constants that are out of step have their box, but not for a user who has cancelled; the reason is theirs all the
// same.
TEST(frmDownload, ACancelInTheBlockThatIsOutOfStepSaysNothingOfTheStep) {
    TransferRig rig;
    for (std::int16_t block = 4; block < 8; ++block) rig.place(block, "AIN");
    // The 40th row is missing: found out in the block whose second constant has filled the first frame.
    rig.bench.db.ConstantSeek(7, 9);
    rig.bench.db.ConstantDelete();
    rig.controller.onTrace = [&, seen = 0](const SimTrace&) mutable {
        if (++seen == 3 + 141 + 1) rig.pump.at(rig.clock.now(), [&] { rig.download.Cancel_Click(); });
    };
    rig.runDownload();
    EXPECT_EQ(rig.record.sends.size(), 3U + 141 + 1);
    EXPECT_EQ(rig.download.outcome().reason, "Form Comm Download blocks CloseIt");
}

TEST(frmDownload, ACommitWithoutAnAnswerIsOneThatWentOut) {
    TransferRig rig;
    rig.controller.play(SimFaultPlan::from("lost-answer", 3 + 141 + 176 + 1 + 1));
    rig.boxes.expect("UPDATE EEPROM COMMAND FAILED");
    rig.runDownload();
    EXPECT_FALSE(rig.download.outcome().committed);
    EXPECT_EQ(rig.download.outcome().stage, DownloadStage::Commit);
}

namespace {

/// The first frame of constants fails so often, and goes by its second round.
struct SecondRound {
    const char* name;
    const char* fault;
    int failures;
    std::chrono::milliseconds took;  ///< for the failures and the wait between the rounds
};

class frmDownloadSecondRound : public testing::TestWithParam<SecondRound> {};

}  // namespace

TEST_P(frmDownloadSecondRound, OfAFrameOfConstantsMakesItGood) {
    TransferRig rig;
    rig.place(4, "PID");
    rig.setConstant(4, 0, 1028);
    constexpr std::uint64_t kFirst = 3 + 141 + 1;
    SimFaultPlan plan = SimFaultPlan::at(GetParam().fault, kFirst);
    plan.last = kFirst + static_cast<std::uint64_t>(GetParam().failures) - 1;
    rig.controller.play(plan);
    rig.runDownload();
    EXPECT_TRUE(rig.download.outcome().committed);
    EXPECT_EQ(rig.download.outcome().unconfirmed, 0) << "it was confirmed in the end";
    EXPECT_EQ(rig.record.sends.size(), 3U + 141 + 176 + 1 + 1 + static_cast<std::size_t>(GetParam().failures));
    const auto start = rig.record.sentAt.at(kFirst - 1);
    EXPECT_EQ(rig.record.sentAt.at(kFirst - 1 + static_cast<std::size_t>(GetParam().failures)) - start,
              GetParam().took);
    EXPECT_EQ(rig.controller.committed().read(3, 0, 4), (std::vector<std::uint8_t>{4, 4, 0, 0}));
}

// A silence takes three ticks of 0.6 s, and behind ten of them the timer's time is up already; the line falls quiet for
// another 0.6 s. A bad sum is answered at once and followed by a sleep of 2 s, but for the tenth, which the timer's
// three ticks of 333 ms follow.
INSTANTIATE_TEST_SUITE_P(
    Rounds, frmDownloadSecondRound,
    testing::Values(SecondRound{"silence", "silence", 10, std::chrono::milliseconds(10 * 1800 + 600)},
                    SecondRound{"badSums", "bad-checksum", 10, std::chrono::milliseconds(9 * 2000 + 999)},
                    SecondRound{"nineteen", "silence", 19, std::chrono::milliseconds(19 * 1800 + 600)}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(frmDownload, ACancelBetweenTheRoundsKeepsTheSecondBack) {
    TransferRig rig;
    rig.controller.play(SimFaultPlan::from("bad-checksum", 3 + 141 + 1));
    // Nine sleeps of 2 s, and into the wait of 999 ms.
    bool isSeen = false;
    rig.download.onProgress = [&] {
        if (isSeen || rig.record.sends.size() != 3 + 141) return;
        isSeen = true;
        rig.pump.at(rig.clock.now() + std::chrono::milliseconds(9 * 2000 + 700), [&] { rig.download.Cancel_Click(); });
    };
    rig.runDownload();
    EXPECT_EQ(rig.record.sends.size(), 3U + 141 + 10);
    EXPECT_EQ(rig.download.outcome().reason, "Form Comm Download constant fail") << "the first round failed";
    EXPECT_EQ(rig.controller.counters().commits, 0U);
}

TEST(frmDownload, ACancelDuringTheCommitComesTooLate) {
    TransferRig rig;
    rig.download.onProgress = [&] {
        if (rig.record.sends.back() == Bytes{8, 0xFF, 0xF7}) rig.download.Cancel_Click();
    };
    rig.runDownload();
    EXPECT_EQ(rig.controller.counters().commits, 1U);
    EXPECT_TRUE(rig.download.outcome().committed);
    EXPECT_EQ(rig.download.outcome().reason, "");
}

}  // namespace qrv::test
