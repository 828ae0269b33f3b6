// How far, how fast and how much longer: what is shown of a transfer, held against how it really went on.
#include "link/TransferProgress.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "TransferRig.h"
#include "link/DownloadSections.h"

namespace qrv::test {

namespace {

using std::chrono::duration;

struct Told {
    int percent = 0;
    double left = 0;  ///< seconds, as told
    Clock::TimePoint at;
};

/// What is told at the first news at or behind 25, 50 and 75 per cent of a transfer on a line with its true pace.
class PacedTransfer {
 public:
    PacedTransfer() {
        rig.controller.setPace(SimPace{});
        rig.place(4, "PID");
    }

    void listenTo(const TransferProgress& progress) {
        for (const int percent : {25, 50, 75}) {
            const bool isDue = told.size() < static_cast<std::size_t>(percent / 25);
            if (!isDue || progress.percent() < percent || !progress.timeLeft()) continue;
            told.push_back({percent, duration<double>(*progress.timeLeft()).count(), rig.clock.now()});
        }
    }
    void expectToldTimesWithinAFifth() const {
        ASSERT_EQ(told.size(), 3U);
        for (const Told& one : told) {
            const double rest = duration<double>(rig.clock.now() - one.at).count();
            EXPECT_NEAR(one.left, rest, rest / 5) << "at " << one.percent << " %";
        }
    }

    TransferRig rig;
    std::vector<Told> told;
};

}  // namespace

TEST(TransferProgress, TimeLeftOfAPacedDownloadIsWithinAFifth) {
    PacedTransfer transfer;
    transfer.rig.download.onProgress = [&] { transfer.listenTo(transfer.rig.download.progress()); };
    transfer.rig.runDownload();
    ASSERT_TRUE(transfer.rig.download.outcome().committed);
    transfer.expectToldTimesWithinAFifth();
}

TEST(TransferProgress, TimeLeftOfAPacedDownloadWithStringsIsWithinAFifth) {
    PacedTransfer transfer;
    transfer.rig.place(5, "OARESET");
    transfer.rig.download.onProgress = [&] { transfer.listenTo(transfer.rig.download.progress()); };
    transfer.rig.runDownload();
    ASSERT_TRUE(transfer.rig.download.outcome().committed);
    transfer.expectToldTimesWithinAFifth();
}

TEST(TransferProgress, TimeLeftOfAPacedUploadIsWithinAFifth) {
    PacedTransfer transfer;
    transfer.rig.runDownload();
    transfer.rig.upload.onProgress = [&] { transfer.listenTo(transfer.rig.upload.progress()); };
    transfer.rig.runUpload();
    ASSERT_TRUE(transfer.rig.upload.outcome().complete);
    transfer.expectToldTimesWithinAFifth();
}

namespace {

// Answers to a poll, to a read of fifteen blocks, of constants, and of a string.
constexpr int kPoll = 5;
constexpr int kFifteenBlocks = 157;
constexpr int kConstants = 135;
constexpr int kString = 27;

/// What the file that is uploaded into holds.
enum class OverFile { Empty, Same };

struct UploadTold {
    std::vector<int> percents;
    std::vector<int> totals;
};

/// A controller with a program in its first hundred blocks.
void fillController(TransferRig& rig, OverFile over) {
    for (std::int16_t block = 4; block < 100; ++block) rig.place(block, "PID");
    rig.runDownload();
    if (over == OverFile::Same) return;
    CloseConfiguration(rig.bench, Answer::No);
    OpenConfiguration(rig.bench, rig.folder.file("a.mdb"));
}

UploadTold toldOfUpload(TransferRig& rig, OverFile over) {
    fillController(rig, over);
    UploadTold told;
    rig.upload.onProgress = [&] {
        told.percents.push_back(rig.upload.progress().percent());
        told.totals.push_back(rig.bench.bytes_total);
    };
    rig.runUpload();
    return told;
}

}  // namespace

TEST(TransferProgress, UploadsTotalIsExactOnceTheTableIsKnown) {
    TransferRig rig;
    rig.place(4, "PID");
    rig.runDownload();
    rig.runUpload();
    EXPECT_EQ(rig.bench.bytes_received, rig.bench.bytes_total);
    EXPECT_EQ(rig.upload.progress().percent(), 100);
}

TEST(TransferProgress, UploadIntoAnEmptyFileCountsOnWithWhatItReads) {
    TransferRig rig;
    const UploadTold told = toldOfUpload(rig, OverFile::Empty);
    // The empty file's own functions: one read of constants.
    EXPECT_EQ(told.totals.front(), kPoll + 47 * kFifteenBlocks + kConstants + 103 * kString);
    EXPECT_TRUE(std::ranges::is_sorted(told.totals));
    EXPECT_EQ(told.totals.back(), rig.bench.bytes_received);
    ASSERT_TRUE(std::ranges::is_sorted(told.percents));
    for (std::size_t i = 1; i < told.percents.size(); ++i) EXPECT_LE(told.percents[i] - told.percents[i - 1], 2) << i;
    EXPECT_EQ(told.percents.back(), 100);
}

TEST(TransferProgress, TimeLeftOfAPacedUploadIntoAnEmptyFileIsWithinAFifth) {
    PacedTransfer transfer;
    fillController(transfer.rig, OverFile::Empty);
    transfer.rig.upload.onProgress = [&] { transfer.listenTo(transfer.rig.upload.progress()); };
    transfer.rig.runUpload();
    ASSERT_TRUE(transfer.rig.upload.outcome().complete);
    transfer.expectToldTimesWithinAFifth();
}

TEST(TransferProgress, UploadOverTheSameProgramKnowsItsTotalFromTheStart) {
    TransferRig rig;
    const UploadTold told = toldOfUpload(rig, OverFile::Same);
    EXPECT_EQ(told.totals.front(), told.totals.back());
    EXPECT_EQ(told.totals.back(), rig.bench.bytes_received);
    EXPECT_EQ(told.percents.back(), 100);
}

TEST(TransferProgress, PercentWaitsWhereTheTotalGrows) {
    TransferProgress progress;
    progress.start(1, {});
    progress.count(500, 1000, {});
    EXPECT_EQ(progress.percent(), 50);
    progress.count(600, 2000, {});
    EXPECT_EQ(progress.percent(), 50);
    progress.count(1200, 2000, {});
    EXPECT_EQ(progress.percent(), 60);
    progress.start(1, {});
    EXPECT_EQ(progress.percent(), 0);
}

TEST(TransferProgress, DownloadEndsAtAHundredPerCentWithAndWithoutStrings) {
    for (const char* function : {"PID", "OARESET"}) {
        TransferRig rig;
        rig.place(4, function);
        int last = 0;
        rig.download.onProgress = [&] { last = rig.download.progress().percent(); };
        rig.runDownload();
        EXPECT_EQ(last, 100) << function;
    }
}

TEST(TransferProgress, CountsSectionsAndRetries) {
    TransferRig rig;
    rig.place(4, "PID");
    // Behind poll, version and announcement.
    rig.controller.play(SimFaultPlan::at("silence", 10));
    rig.controller.play(SimFaultPlan::at("bad-checksum", 20));
    rig.runDownload();
    const TransferProgress& progress = rig.download.progress();
    EXPECT_EQ(progress.section(), 1);
    EXPECT_EQ(progress.sectionCount(), 1);
    EXPECT_EQ(progress.name(), "Downloading Blocks");
    EXPECT_EQ(progress.retries(), 2);
}

TEST(TransferProgress, SentenceHasAllOfIt) {
    TransferProgress progress;
    const Clock::TimePoint start{};
    progress.start(3, start);
    progress.beginSection("Downloading Charts");
    progress.beginSection("Downloading Blocks");
    progress.count(2000, 8000, start + std::chrono::seconds(4));
    progress.setRetries(1);
    EXPECT_EQ(progress.sentence(), "Section 2 of 3, 500 bytes a second, 12 s left, 1 retry");
    EXPECT_EQ(progress.percent(), 25);
}

TEST(TransferProgress, TellsNoRateBeforeOneCanBeTold) {
    TransferProgress progress;
    progress.start(1, {});
    progress.beginSection("Blocks");
    progress.count(60, 36240, Clock::TimePoint{} + std::chrono::microseconds(16));
    EXPECT_FALSE(progress.bytesPerSecond());
    EXPECT_FALSE(progress.timeLeft());
    EXPECT_EQ(progress.sentence(), "Section 1 of 1, 0 retries");
    progress.count(1800, 36240, Clock::TimePoint{} + std::chrono::milliseconds(500));
    EXPECT_EQ(progress.sentence(), "Section 1 of 1, 3600 bytes a second, 10 s left, 0 retries");
}

TEST(TransferProgress, TellsNoTimeWithoutBytesOrTotal) {
    TransferProgress progress;
    progress.start(1, {});
    progress.beginSection("Blocks");
    EXPECT_FALSE(progress.timeLeft());
    progress.count(100, 0, Clock::TimePoint{} + std::chrono::seconds(1));
    EXPECT_FALSE(progress.timeLeft());
    EXPECT_EQ(progress.sentence(), "Section 1 of 1, 100 bytes a second, 0 retries");
}

TEST(DownloadEstimate, HasTheSectionsByteCounts) {
    TransferRig rig;
    struct Row {
        std::string_view word;
        std::int32_t bytes;
    };
    // A new file has one menu with a title, and neither titled charts and screens nor units of blocks.
    const Row rows[] = {{"alarms", 3040}, {"pager", 355}, {"modbus", 845},  {"charts", 290},
                        {"menus", 380},   {"egus", 2785}, {"blocks", 36240}};
    ASSERT_EQ(std::size(rows), kDownloadSections.size());
    for (std::size_t i = 0; i < kDownloadSections.size(); ++i) {
        EXPECT_EQ(kDownloadSections[i].word, rows[i].word);
        EXPECT_EQ(kDownloadSections[i].estimate(rig.bench), rows[i].bytes) << rows[i].word;
    }
}

}  // namespace qrv::test
