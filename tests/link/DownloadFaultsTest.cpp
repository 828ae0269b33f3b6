// Every fault at every exchange of a whole block download: it commits everything or sends no commit, it says once what
// went wrong, and it leaves nothing open, locked or raised.
#include <gtest/gtest.h>

#include "TransferFaults.h"

namespace qrv::test {

namespace {

// The exchanges of a download, counted from 1.
constexpr int kPoll = 1;
constexpr int kVersion = 2;
constexpr int kAnnounce = 3;
constexpr int kTable = 4;                   // 141 frames
constexpr int kConstants = kTable + 141;    // 176 frames
constexpr int kStrings = kConstants + 176;  // 100 records
constexpr int kStringsEnd = kStrings + 100;
constexpr int kCommit = kStringsEnd + 1;

const Bytes kCommitFrame{0x08, 0xFF, 0xF7};

/// What is told of a fault that lasts from exchange `k` on.
Told toldOf(int k) {
    if (k == kPoll) {
        return {{"Could Not Connect To Target\nCheck Settings And Connection Cables"},
                "Form Download Form Load poll fail"};
    }
    if (k == kVersion) {
        return {{"Could not acquire ROM Version. Download Aborted"}, "Form Download Form Load bad version"};
    }
    // Without its answer no section begins; nobody is told.
    if (k == kAnnounce) return {};
    if (k < kConstants) return {{"ERROR DOWNLOADING BLOCKS"}, "Form Comm Download blocks fail"};
    if (k < kStrings) {
        // The first frame is filled by a hidden constant, which gives a reason of its own.
        const bool isHidden = k == kConstants;
        return {{"Error Downloading Constant # " + std::to_string(128 * (k - kConstants))},
                isHidden ? "Form Comm Download blocks CloseIt" : "Form Comm Download constant fail"};
    }
    // Nobody looks at a string's answer, nor tells of the end that was lost; but then no commit goes out.
    if (k < kCommit) return {};
    return {{"UPDATE EEPROM COMMAND FAILED"}, ""};
}

/// What is told where the user cancels while the answer to exchange `k` is awaited, and no good one comes: nothing. A
/// failure that would have been told gives its own reason all the same.
Told toldOfCancelled(int k) {
    const bool isFailure = k >= kTable && k < kStrings;
    return {{}, isFailure ? toldOf(k).reason : "Form Download Cancel Button Click"};
}

struct DownloadFaults : testing::TestWithParam<StrikeCase> {
    DownloadFaults() { struck.placeProgram(); }

    /// @param commits  how often the commit goes out where it is what was struck: as often as any frame does
    void expectNoCommit(int k, int commits = 10) {
        EXPECT_FALSE(struck.rig.download.outcome().committed);
        const bool isCommit = k == kCommit;
        EXPECT_EQ(struck.sendsOf(kCommitFrame), isCommit ? commits : 0);
        EXPECT_TRUE(isCommit || struck.rig.controller.committed() == before);
    }
    void expectWhole() {
        EXPECT_TRUE(struck.rig.download.outcome().committed);
        EXPECT_TRUE(struck.rig.controller.committed() == whole);
    }
    void strikeAt(const StrikeKind& kind, int k) {
        struck.download(before, &kind, k);
        const Told told{struck.box.said, struck.rig.download.outcome().reason};
        if (kind.cancels && kind.fault != nullptr) {
            EXPECT_EQ(told, toldOfCancelled(k));
            EXPECT_EQ(struck.rig.record.sends.size(), static_cast<std::size_t>(k)) << "no frame behind the Cancel";
            expectNoCommit(k, 1);
        } else if (kind.cancels) {
            // A commit that is under way when the user cancels has left already: the download went well.
            EXPECT_EQ(told, (Told{{}, k == kCommit ? "" : "Form Download Cancel Button Click"}));
            k == kCommit ? expectWhole() : expectNoCommit(k);
        } else if (kind.lasts == Lasts::Once) {
            EXPECT_EQ(told, Told{});
            EXPECT_EQ(struck.retries(), 1);
            expectWhole();
        } else {
            EXPECT_EQ(told, toldOf(k));
            expectNoCommit(k);
        }
        struck.expectAllCleared();
    }

    StruckRig struck;
    SimMemory before;
    SimMemory whole;
};

}  // namespace

TEST_P(DownloadFaults, CommitsAllOrNothingAndTellsOnce) {
    struck.download(before);
    whole = struck.rig.controller.committed();
    ASSERT_TRUE(struck.rig.download.outcome().committed);
    ASSERT_EQ(struck.rig.record.sends.size(), static_cast<std::size_t>(kCommit));
    ASSERT_EQ(struck.sendsOf(kCommitFrame), 1);
    const std::string program = programOf(struck.rig.bench);
    // Before the form is up there is nothing to click at.
    const int first = GetParam().kind.cancels ? kAnnounce : kPoll;
    for (int k = first + GetParam().slice; k <= kCommit; k += kSlices) {
        SCOPED_TRACE("at exchange " + std::to_string(k));
        strikeAt(GetParam().kind, k);
        if (HasFailure()) return;
    }
    EXPECT_EQ(programOf(struck.rig.bench), program);
}

INSTANTIATE_TEST_SUITE_P(EveryExchange, DownloadFaults, testing::ValuesIn(allStrikes()),
                         [](const auto& row) { return row.param.kind.name + std::to_string(row.param.slice); });

// Where the protocol lets a lost frame pass: nobody looks at the answer to a string record. All ten sends of the first
// one are lost here; the commit goes out, and the controller holds the download without it.
TEST(LostFrames, AStringRecordThatNeverArrivedIsCommittedWithout) {
    StruckRig struck;
    struck.placeProgram();
    struck.download({});
    const SimMemory whole = struck.rig.controller.committed();
    struck.prepare({});
    SimFaultPlan plan = SimFaultPlan::at("silence", kStrings);
    plan.last = kStrings + 9;
    struck.rig.controller.play(plan);
    struck.walkDownload();
    EXPECT_TRUE(struck.box.said.empty());
    EXPECT_TRUE(struck.rig.download.outcome().committed);
    const SimMemory& held = struck.rig.controller.committed();
    EXPECT_EQ(held.read(3, 22528, 20), Bytes(20, 0));
    EXPECT_EQ(held.read(3, 22548, 22528 + 2002 - 22548), whole.read(3, 22548, 22528 + 2002 - 22548));
    EXPECT_EQ(held.read(3, 0, 22528), whole.read(3, 0, 22528));
    EXPECT_EQ(held.read(4, 0, 7050), whole.read(4, 0, 7050));
}

}  // namespace qrv::test
