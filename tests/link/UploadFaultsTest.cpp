// Every fault at every exchange of a whole block upload: it brings the controller's program or gives the saved file
// back, it says once what went wrong, and it leaves nothing open, locked or raised.
#include <gtest/gtest.h>

#include "TransferFaults.h"

namespace qrv::test {

namespace {

// The exchanges of an upload, counted from 1.
constexpr int kPoll = 1;
constexpr int kVersion = 2;
constexpr int kSectionPoll = 3;
constexpr int kTable = 4;                // 47 reads
constexpr int kConstants = kTable + 47;  // of 32 slots each; the last fetches what isn't full
constexpr int kConstantReads = 3;
constexpr int kStrings = kConstants + kConstantReads;  // 103 reads
constexpr int kLast = kStrings + 102;

constexpr const char* kConnect = "Could Not Connect To Target\nCheck Settings And Connection Cables";
constexpr const char* kReverted =
    "The transfer was not completed successfully.  The open config file will be reverted to its last saved state.";

/// What is told of a Cancel alone.
const Told kCancelled{{kReverted}, "Form Upload query unload"};

struct UploadFaults : testing::TestWithParam<StrikeCase> {
    UploadFaults() {
        struck.placeProgram();
        struck.download({});
        held = struck.rig.controller.committed();
        // Another program is the open one.
        for (std::int16_t block = 4; block < 9; ++block) assign_block_function(struck.rig.bench, block, 127);
        struck.rig.place(20, "PID");
        struck.rig.place(21, "SCHEDULE");
        struck.rig.save();
        saved = all();
    }

    [[nodiscard]] std::string all() { return programOf(struck.rig.bench) + boardsAndFunctionsOf(struck.rig.bench); }
    [[nodiscard]] std::string abortText() const {
        return "Error Occurred While Uploading - Please forward \n" + struck.rig.folder.file("QRVUploadLog.txt") +
               "\nto Tessaly Instruments";
    }

    /// What is told of a fault that lasts from exchange `k` on.
    [[nodiscard]] Told toldOf(const StrikeKind& kind, int k) const {
        if (k == kPoll) return {{"Could Not Connect"}, ""};
        // The port is opened anew for the section, which the line that went away refuses: the section ends at once.
        if (k == kVersion && std::string_view(kind.name) == "hangUp") {
            return {{"COM1: not available. Change the setting to another port."}, ""};
        }
        if (k <= kSectionPoll) return {{kConnect, abortText(), kReverted}, "Bad Response"};
        const bool isConstants = k >= kConstants && k < kStrings;
        // Nobody asks whether constants were read well. Where nothing came there is nothing to take them from; a reply
        // with a bad sum is taken, and the next read is found out - or does not go out, where the user cancelled.
        if (isConstants && kind.cancels && !kind.isDead) return kCancelled;
        return {{abortText(), kReverted}, isConstants && kind.isDead ? "Runtime Error" : "Bad Response"};
    }
    void expectSaved() {
        EXPECT_FALSE(struck.rig.upload.outcome().complete);
        EXPECT_EQ(all(), saved);
        // The work file holds all that the file holds, the tables that no upload of blocks touches among it.
        EXPECT_EQ(bytesOfFile(struck.rig.bench.WorkFileName), bytesOfFile(struck.rig.bench.CurrentFileName));
    }
    void strikeAt(const StrikeKind& kind, int k) {
        const std::string before = all();
        struck.upload(held, &kind, k);
        const Told told{struck.box.said, struck.rig.upload.outcome().reason};
        if (kind.cancels) {
            // A Cancel ends no more than what comes behind the answer: one that isn't good is told as ever.
            EXPECT_EQ(told, kind.fault == nullptr ? kCancelled : toldOf(kind, k));
            EXPECT_EQ(struck.rig.record.sends.size(), static_cast<std::size_t>(k)) << "no frame behind the Cancel";
            expectSaved();
        } else if (kind.lasts == Lasts::Once) {
            EXPECT_EQ(told, Told{});
            EXPECT_EQ(struck.retries(), 1);
            EXPECT_TRUE(struck.rig.upload.outcome().complete);
            EXPECT_EQ(all(), whole);
        } else {
            EXPECT_EQ(told, toldOf(kind, k));
            if (told.reason.empty()) {
                EXPECT_EQ(all(), before) << "nothing was begun";
            } else {
                expectSaved();
            }
        }
        struck.expectAllCleared();
    }

    StruckRig struck;
    SimMemory held;
    std::string saved;
    std::string whole;
};

}  // namespace

TEST_P(UploadFaults, BringsTheProgramOrTheSavedFileAndTellsOnce) {
    struck.upload(held);
    ASSERT_TRUE(struck.rig.upload.outcome().complete);
    ASSERT_EQ(struck.rig.record.sends.size(), static_cast<std::size_t>(kLast));
    whole = all();
    ASSERT_NE(whole, saved);
    // Before the form is up there is nothing to click at.
    const int first = GetParam().kind.cancels ? kSectionPoll : kPoll;
    for (int k = first + GetParam().slice; k <= kLast; k += kSlices) {
        SCOPED_TRACE("at exchange " + std::to_string(k));
        strikeAt(GetParam().kind, k);
        if (HasFailure()) return;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryExchange, UploadFaults, testing::ValuesIn(allStrikes()),
                         [](const auto& row) { return row.param.kind.name + std::to_string(row.param.slice); });

// Where the protocol lets a lost frame pass: nobody asks whether constants were read well. All ten answers to the
// second read of them are noise of the right length, and what the last of them held is taken for values. The log tells.
TEST(LostFrames, AReadOfConstantsThatFailedIsTakenForGood) {
    StruckRig struck;
    struck.placeProgram();
    struck.download({});
    const SimMemory held = struck.rig.controller.committed();
    struck.upload(held);
    const std::string whole = programOf(struck.rig.bench);
    struck.prepare(held);
    SimFaultPlan plan = SimFaultPlan::at("garbage", kConstants + 1);
    plan.last = kConstants + 10;
    struck.rig.controller.play(plan);
    struck.walkUpload();
    EXPECT_TRUE(struck.box.said.empty());
    EXPECT_TRUE(struck.rig.upload.outcome().complete);
    EXPECT_NE(programOf(struck.rig.bench), whole);
    const std::string log = bytesOfFile(struck.rig.folder.file("QRVUploadLog.txt"));
    const auto read = log.find("C_offset:  128 \r\n");
    ASSERT_NE(read, std::string::npos);
    EXPECT_EQ(log.find("Retries: 10 \r\n"), log.find("Retries:", read));
}

}  // namespace qrv::test
