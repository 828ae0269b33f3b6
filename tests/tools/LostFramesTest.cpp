// The places where the protocol lets a lost frame pass, and what a comparison with the controller shows of each.
// Nothing else of a transfer passes unnoticed.
#include <gtest/gtest.h>

#include "link/TransferRig.h"
#include "store/ConfigurationContent.h"
#include "tools/HeldByController.h"

namespace qrv::test {
namespace {

// On the wire, down: poll, version, announcement, 141 frames of the table, 176 of constants, and then the strings.
constexpr std::uint64_t kFirstString = 3 + 141 + 176 + 1;
// Up: poll, version, the section's poll, 47 reads of the table, and then the constants.
constexpr std::uint64_t kFirstConstants = 3 + 47 + 1;
constexpr std::uint64_t kAttempts = 10;

/// Fails every attempt of one exchange.
SimFaultPlan wholly(const char* fault, std::uint64_t exchange) {
    SimFaultPlan plan = SimFaultPlan::at(fault, exchange);
    plan.last = exchange + kAttempts - 1;
    return plan;
}

/// Two blocks with a text each, and more constants than a frame holds.
struct Plant : TransferRig {
    Plant() {
        place(10, "OARESET");
        place(11, "OARESET");
        for (std::int16_t block = 20; block < 26; ++block) place(block, "PID");
        setString(10, "FIRST");
        setString(11, "SECOND");
        setConstant(25, 4, 77);
        save();
    }
    /// The text that the block has already becomes this one.
    void setString(std::int16_t block, const std::string& text) {
        db1& db = bench.db;
        db.ParmstrMoveFirst();
        while (db.ParmstrBlockNumber() != block) db.ParmstrMoveNext();
        db.ParmstrEdit();
        db.ParmstrStr(text);
        db.ParmstrUpdate();
    }
    /// The controller strikes the exchanges that come.
    void strike(const SimFaultPlan& plan) {
        controller.stopFaults();
        controller.play(plan);
    }
    /// What an upload without a fault brings into a new file.
    ConfigurationContent held() {
        controller.stopFaults();
        CloseConfiguration(bench, Answer::Yes);
        bench.db.create_new_database(folder.file("found.mdb"));
        OpenConfiguration(bench, folder.file("found.mdb"));
        runUpload();
        EXPECT_TRUE(upload.outcome().complete);
        EXPECT_EQ(upload.outcome().failedReads, 0);
        CloseConfiguration(bench, Answer::Yes);
        return contentOfWorkFile(folder.file("found.mdb"));
    }
    /// What a comparison of the open file with the controller shows.
    std::vector<std::string> shown() {
        const ConfigurationContent found = held();
        const ConfigurationContent file = contentOfWorkFile(folder.file("a.mdb"));
        std::vector<std::string> lines;
        for (const RowDifference& difference : heldDifferences(file, found, bench.db).differing) {
            for (std::string& line : linesOf(difference, {.a = "the file", .b = "the controller"})) {
                lines.push_back(std::move(line));
            }
        }
        return lines;
    }
};

TEST(LostFrames, WithNoneLostNothingIsShown) {
    Plant plant;
    plant.runDownload();
    EXPECT_EQ(plant.shown(), std::vector<std::string>{});
}

TEST(LostFrames, AStringThatIsLostIsCommittedWithoutAndShownAsMissing) {
    Plant plant;
    plant.strike(wholly("silence", kFirstString));
    plant.runDownload();
    ASSERT_TRUE(plant.download.outcome().committed);
    EXPECT_EQ(plant.shown(),
              std::vector<std::string>{"ParmString BlockNumber=10 Offset=3: only in the file: Pstring=\"FIRST\""});
}

TEST(LostFrames, AStringThatIsLostIsShownAsTheOldOneWhereThereWasOne) {
    Plant plant;
    plant.runDownload();
    plant.setString(10, "NEWER");
    plant.save();
    plant.strike(wholly("silence", kFirstString));
    plant.runDownload();
    ASSERT_TRUE(plant.download.outcome().committed);
    EXPECT_EQ(plant.shown(),
              std::vector<std::string>{"ParmString BlockNumber=10 Offset=3 Pstring: \"NEWER\" -> \"FIRST\""});
}

TEST(LostFrames, FillerThatIsLostLeavesAnOldTextWhichIsToldAsASecondOne) {
    Plant plant;
    plant.runDownload();
    // The texts move up by one: what stood in the second place stands in the first, and filler goes where it was.
    plant.bench.db.ParmstrMoveFirst();
    plant.bench.db.ParmstrDelete();
    plant.save();
    plant.strike(wholly("silence", kFirstString + 1));
    plant.runDownload();
    ASSERT_TRUE(plant.download.outcome().committed);
    EXPECT_EQ(plant.download.outcome().unconfirmed, 1);
    EXPECT_EQ(plant.shown(), std::vector<std::string>{});
    const auto& repeated = plant.comm.uploadFindings.repeatedStrings;
    ASSERT_EQ(repeated.size(), 1U);
    EXPECT_EQ(repeated[0].block, 11);
    EXPECT_EQ(repeated[0].offset, 3);
}

TEST(LostFrames, TheLastStringFrameIsAskedFor) {
    Plant plant;
    plant.strike(wholly("silence", kFirstString + 100));
    plant.runDownload();
    EXPECT_FALSE(plant.download.outcome().committed);
    EXPECT_EQ(plant.controller.counters().commits, 0U);
}

TEST(LostFrames, GarbledConstantsAreTakenCountedAndShown) {
    Plant plant;
    plant.runDownload();
    plant.strike(wholly("garbage", kFirstConstants + 1));
    plant.runUpload();
    ASSERT_TRUE(plant.upload.outcome().complete);
    EXPECT_EQ(plant.upload.outcome().failedReads, 1);
    const std::vector<std::string> lines = plant.shown();
    ASSERT_FALSE(lines.empty());
    // The slots 32 to 63: the CPU's and the later blocks have theirs elsewhere.
    for (const std::string& line : lines) {
        EXPECT_TRUE(line.starts_with("Constants BlockNumber=2")) << line;
    }
}

TEST(LostFrames, ConstantsThatNeverCameEndTheUpload) {
    Plant plant;
    plant.runDownload();
    plant.strike(wholly("silence", kFirstConstants + 1));
    plant.expectOverwriteQuestion();
    plant.boxes.expect("Error Occurred While Uploading - Please forward \n" + plant.folder.file("QRVUploadLog.txt") +
                       "\nto Tessaly Instruments");
    plant.boxes.expect(
        "The transfer was not completed successfully.  The open config file will be reverted to its last saved state.");
    plant.host.onModal("frmUpload", [&](Form&) {
        plant.upload.Blocks.value = true;
        plant.upload.Continue_Click();
    });
    plant.host.showModal(plant.upload);
    EXPECT_FALSE(plant.upload.outcome().complete);
    EXPECT_EQ(plant.upload.outcome().reason, "Runtime Error");
}

}  // namespace
}  // namespace qrv::test
