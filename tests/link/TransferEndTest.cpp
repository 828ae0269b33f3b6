// What is said of a transfer when it has ended, in the place where the user reads it at leisure.
#include <gtest/gtest.h>

#include <vector>

#include "TransferRig.h"
#include "link/TransferWords.h"

namespace qrv::test {

namespace {

using Words = std::vector<std::string>;

/// Poll, version, announcement, table, constants, strings' end and commit of a download without strings.
constexpr std::size_t kCommitFrame = 3 + 141 + 176 + 1 + 1;
constexpr const char* kNotCompleted =
    "The download was not completed. Nothing was committed: after a loss of power the controller has what it had.";

/// Keeps what is said, also that the words of the transfer before go.
struct EndRig : TransferRig {
    EndRig() {
        window.tellEnd = [this](const std::string& words) { said.push_back(words); };
    }
    Words said;
};

/// "123 bytes in 4.5 s, 0 retries." with the bytes' and the time's digits left out.
std::string withoutDigits(std::string text) {
    std::erase_if(text, [](char letter) { return letter >= '0' && letter <= '9'; });
    return text;
}

}  // namespace

TEST(TransferEnd, ADownloadSaysWhatWent) {
    EndRig rig;
    rig.place(4, "PID");
    rig.runDownload();
    ASSERT_EQ(rig.said.size(), 2U);
    EXPECT_EQ(rig.said[0], "");
    EXPECT_EQ(rig.said[1],
              "a.mdb is in the controller: " + countsText(rig.download.progress(), rig.download.progress().taken()));
    EXPECT_EQ(withoutDigits(rig.said[1]), "a.mdb is in the controller:  bytes in . s,  retries.");
}

TEST(TransferEnd, CountsAndTimeAreOfTheTransfer) {
    TransferProgress progress;
    const Clock::TimePoint start = Clock::TimePoint{} + std::chrono::seconds(7);
    progress.start(1, start);
    progress.count(36240, 36240, start + std::chrono::milliseconds(10840));
    progress.setRetries(1);
    EXPECT_EQ(countsText(progress, progress.taken()), "36240 bytes in 10.8 s, 1 retry.");
}

TEST(TransferEnd, ACancelledDownloadSaysThatNothingWasCommitted) {
    EndRig rig;
    rig.place(4, "PID");
    rig.download.onProgress = [&] { rig.download.Cancel_Click(); };
    rig.runDownload();
    EXPECT_EQ(rig.said, (Words{"", kNotCompleted}));
}

TEST(TransferEnd, ACommitWithoutAnAnswerIsUncertain) {
    EndRig rig;
    rig.place(4, "PID");
    rig.controller.play(SimFaultPlan::from("silence", kCommitFrame));
    rig.boxes.expect("UPDATE EEPROM COMMAND FAILED");
    rig.runDownload();
    EXPECT_EQ(rig.said.back(),
              "All was written, but the commit was not confirmed: it may or may not have been done. Download again.");
}

TEST(TransferEnd, APortThatWontOpenAtTheStartWritesNothing) {
    EndRig rig;
    rig.boxes.expect("COM1: not available. Change the setting to another port.");
    rig.host.onModal("frmDownload", [&rig](Form&) {
        rig.port.refuseToOpen();
        rig.download.Download_Click();
    });
    rig.refusedDownload();
    EXPECT_EQ(rig.said.back(), "Nothing was written to the controller.");
}

TEST(TransferEnd, WithNothingTickedThereWasNothingToDownload) {
    EndRig rig;
    rig.host.load(rig.select);
    rig.select.Command1_Click();
    EXPECT_EQ(rig.said, (Words{"", "There was nothing to download."}));
}

TEST(TransferEnd, WhatADownloadLeftOutIsTold) {
    EXPECT_EQ(shortfallText({}), "");
    DownloadOutcome outcome;
    outcome.unconfirmed = 1;
    outcome.unsentStrings = 2;
    EXPECT_EQ(shortfallText(outcome),
              " 1 frame was not confirmed, and what it carried may be missing: qrv verify tells. 2 strings were not "
              "sent: qrv verify names them.");
}

TEST(TransferEnd, AnUploadSaysWhatCameAndThatNothingIsSavedYet) {
    EndRig rig;
    rig.place(4, "PID");
    rig.runDownload();
    rig.said.clear();
    rig.runUpload();
    ASSERT_EQ(rig.said.size(), 2U);
    EXPECT_EQ(rig.said[0], "");
    EXPECT_EQ(withoutDigits(rig.said[1]),
              "a.mdb has what the controller holds:  bytes in . s,  retries. Save keeps it.");
}

TEST(TransferEnd, AnUploadOfNothingSaysSo) {
    EndRig rig;
    rig.expectOverwriteQuestion();
    rig.host.onModal("frmUpload", [&rig](Form&) { rig.upload.Continue_Click(); });
    rig.host.showModal(rig.upload);
    EXPECT_EQ(rig.said, (Words{"", "There was nothing to upload."}));
}

TEST(TransferEnd, ACancelledUploadLeavesTheFileAsItWas) {
    EndRig rig;
    rig.upload.onProgress = [&] { rig.upload.Cancel_Click(); };
    rig.expectOverwriteQuestion();
    rig.boxes.expect(
        "The transfer was not completed successfully.  The open config file will be reverted to its last saved state.");
    rig.uploadBlocks();
    EXPECT_EQ(rig.said, (Words{"", "The upload was not completed: a.mdb is as it was last saved."}));
}

}  // namespace qrv::test
