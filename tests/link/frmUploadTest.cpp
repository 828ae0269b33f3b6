// An upload: what comes in, its log byte for byte, and the way back to the saved file.
#include "link/frmUpload.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <map>
#include <optional>

#include "ProgramText.h"
#include "TransferRig.h"
#include "link/UploadSections.h"

namespace qrv::test {

namespace {

std::string logOf(const TransferRig& rig) { return bytesOfFile(rig.folder.file("QRVUploadLog.txt")); }

constexpr const char* kReverted =
    "The transfer was not completed successfully.  The open config file will be reverted to its last saved state.";

std::string abortText(const TransferRig& rig) {
    return "Error Occurred While Uploading - Please forward \n" + rig.folder.file("QRVUploadLog.txt") +
           "\nto Tessaly Instruments";
}

}  // namespace

TEST(frmUpload, NothingTickedStillWritesALogAndShowsWhatIsThere) {
    TransferRig rig;
    rig.expectOverwriteQuestion();
    rig.host.onModal("frmUpload", [&](Form&) { rig.upload.Continue_Click(); });
    rig.host.showModal(rig.upload);
    EXPECT_EQ(logOf(rig), "");
    EXPECT_TRUE(std::filesystem::exists(rig.folder.file("QRVUploadLog.txt")));
    EXPECT_EQ(rig.generalShown, 1);
}

TEST(frmUpload, ANoLeavesAndClosesThePort) {
    TransferRig rig;
    rig.expectOverwriteQuestion(Answer::No);
    rig.host.showModal(rig.upload);
    EXPECT_FALSE(rig.host.isVisible(rig.upload));
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_TRUE(rig.command1);
}

TEST(frmUpload, NoControllerIsTold) {
    TransferRig rig;
    rig.controller.play(SimFaultPlan::always("silence"));
    rig.boxes.expect("Could Not Connect");
    rig.expectOverwriteQuestion();
    rig.host.showModal(rig.upload);
    EXPECT_FALSE(rig.host.isVisible(rig.upload));
}

TEST(frmUpload, FiveCharactersOfTheVersionAreRead) {
    TransferRig good(SimSetup{.versionText = "V6.73 QRV"});
    good.bench.rom_version = 1;
    good.expectOverwriteQuestion(Answer::No);
    good.host.showModal(good.upload);
    EXPECT_EQ(good.bench.rom_version, 6.73F);
    TransferRig close(SimSetup{.versionText = "V6.73QRV"});
    close.bench.rom_version = 1;
    close.expectOverwriteQuestion(Answer::No);
    close.host.showModal(close.upload);
    EXPECT_EQ(close.bench.rom_version, 1.0F) << "stays as it was";
}

TEST(frmUpload, AProgramComesBackAsItWent) {
    TransferRig rig;
    rig.place(4, "PID");
    rig.setConstant(4, 0, 1028);
    rig.setConstant(4, 1, -31742);
    rig.place(20, "SCHEDULE");
    rig.runDownload();
    ASSERT_TRUE(rig.download.outcome().committed);
    const std::string sent = programOf(rig.bench);
    rig.place(30, "PID");
    rig.runUpload();
    EXPECT_TRUE(rig.upload.outcome().complete);
    EXPECT_EQ(programOf(rig.bench), sent);
}

TEST(frmUpload, SlotsFollowFromTheFunctions) {
    TransferRig rig;
    const std::map<int, std::string> wanted{{1, "ANALOG INPUT      610014"}, {2, "AUTO MANUAL       610021"},
                                            {3, "TRIAC OUTPUT      610033"}, {4, "DISCRETE INPUT   610012"},
                                            {5, "RELAY OUTPUT     610027"},  {6, "HOA ROUT              610018"}};
    const auto set = [&](std::int16_t block, std::int16_t function) {
        assign_block_function(rig.bench, block, function);
    };
    set(615, 2);
    set(630, 81);
    set(645, 84);
    set(660, 92);
    set(675, 125);
    set(681, 125);
    set(690, 125);
    rig.runDownload();
    rig.runUpload();
    db1& db = rig.bench.db;
    db.SlotMoveFirst();
    for (const auto& [slot, text] : wanted) {
        db.SlotMoveNext();
        EXPECT_EQ(db.SlotDescription(), text) << slot;
    }
}

TEST(frmUpload, ADeadControllerGivesTwoBoxesAndTheSavedFile) {
    TransferRig rig;
    rig.place(4, "PID");
    rig.save();
    const std::string saved = programOf(rig.bench);
    // Poll, version, poll, ten records.
    rig.controller.play(SimFaultPlan::from("silence", 14));
    rig.expectOverwriteQuestion();
    rig.boxes.expect(abortText(rig));
    rig.boxes.expect(kReverted);
    rig.uploadBlocks();
    EXPECT_EQ(programOf(rig.bench), saved);
    EXPECT_EQ(rig.upload.outcome().reason, "Bad Response");
    const std::string log = logOf(rig);
    const std::string end = "----------CANCEL--------------\r\nBad Response\r\n";
    EXPECT_EQ(log.substr(log.size() - end.size()), end);
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_FALSE(rig.bench.in_upload);
    EXPECT_FALSE(rig.bench.xfer_abort);
    EXPECT_TRUE(rig.command1);
}

TEST(frmUpload, CancelGivesTheSavedFileBack) {
    TransferRig rig;
    rig.place(4, "PID");
    rig.save();
    const std::string saved = programOf(rig.bench);
    rig.expectOverwriteQuestion();
    rig.boxes.expect(kReverted);
    rig.upload.onProgress = [&] {
        if (rig.bench.bytes_received > 5000) rig.upload.Cancel_Click();
    };
    rig.uploadBlocks();
    EXPECT_EQ(programOf(rig.bench), saved);
    EXPECT_EQ(rig.upload.outcome().reason, "Form Upload query unload");
    EXPECT_FALSE(rig.bench.isHalfUploaded) << "it is the saved file's again";
}

// At a logout what came whole is the user's unsaved work; a half of it is nobody's.
TEST(frmUpload, OnlyAWholeOneIsWorkThatASignalKeeps) {
    TransferRig rig;
    rig.place(4, "PID");
    rig.save();
    rig.expectOverwriteQuestion();
    bool isSeen = false;
    rig.upload.onProgress = [&] {
        EXPECT_TRUE(rig.bench.isHalfUploaded);
        isSeen = true;
    };
    rig.window.showGeneral = [&] {
        EXPECT_TRUE(isSeen);
        EXPECT_FALSE(rig.bench.isHalfUploaded);
        ++rig.generalShown;
    };
    rig.uploadBlocks();
    EXPECT_EQ(rig.generalShown, 1);
    EXPECT_FALSE(rig.bench.isHalfUploaded);
}

// The section has the port opened anew. Where that fails it ends at once, having read nothing: there is nothing to
// revert, and what is open is shown as behind any upload.
TEST(frmUpload, APortThatWontOpenAgainEndsTheSectionAndRevertsNothing) {
    TransferRig rig;
    rig.place(4, "PID");
    const std::string before = programOf(rig.bench);
    rig.expectOverwriteQuestion();
    rig.boxes.expect("COM1: not available. Change the setting to another port.");
    rig.host.onModal("frmUpload", [&](Form&) {
        rig.port.refuseToOpen();
        rig.upload.Blocks.value = true;
        rig.upload.Continue_Click();
    });
    rig.host.showModal(rig.upload);
    EXPECT_EQ(logOf(rig),
              "-----------------------------------------------------------------------------------------\r\n"
              "--------------------------------------BLOCKS---------------------------------------------\r\n"
              "-----------------------------------------------------------------------------------------\r\n");
    EXPECT_EQ(programOf(rig.bench), before);
    EXPECT_EQ(rig.generalShown, 1);
    EXPECT_FALSE(rig.upload.outcome().complete) << "nothing came";
    EXPECT_EQ(rig.upload.outcome().reason, "");
    EXPECT_FALSE(rig.bench.in_upload);
    EXPECT_FALSE(rig.bench.xfer_abort);
    EXPECT_TRUE(rig.command1);
    EXPECT_EQ(rig.record.sends.size(), 2U);
}

// A record's text is kept for what can be printed of it; an empty text is no row, and a parameter that is no string's
// is passed over.
TEST(frmUpload, StringsKeepWhatCanBePrinted) {
    TransferRig rig;
    SimMemory memory;
    memory.write(1, 100, Bytes{0, 114, 0, 0, 0, 0, 0, 0, 2, 0, 0, 114, 0, 0, 0, 20, 0, 0, 2, 0});
    memory.write(3, 22528, Bytes{0, 10, 1, 'N', 31, 'I', 127, 'G', 200, 'H', 'T', ' '});
    memory.write(3, 22548, Bytes{0, 11, 1, 0, 31, 127});
    memory.write(3, 22568, Bytes{0, 11, 2, 'N', 'O'});
    memory.write(3, 22588, Bytes{32, 32, 1, 'N', 'O'});
    memory.write(3, 22608, Bytes{255, 255});
    rig.controller.load(memory);
    rig.runUpload();
    db1& db = rig.bench.db;
    db.ParmstrMoveFirst();
    ASSERT_FALSE(db.ParmstrEOF());
    EXPECT_EQ(db.ParmstrBlockNumber(), 10);
    EXPECT_EQ(db.ParmstrOffset(), 2);
    EXPECT_EQ(db.ParmstrStr(), "NIGHT ");
    db.ParmstrMoveNext();
    EXPECT_TRUE(db.ParmstrEOF());
}

TEST(frmUpload, OfTwoTextsForAParameterTheFirstStaysAndTheSecondIsTold) {
    TransferRig rig;
    SimMemory memory;
    memory.write(1, 100, Bytes{0, 114, 0, 0, 0, 0, 0, 0, 2, 0});
    memory.write(3, 22528, Bytes{0, 10, 1, 'D', 'A', 'Y'});
    memory.write(3, 22588, Bytes{0, 10, 1, 'O', 'L', 'D'});
    rig.controller.load(memory);
    rig.runUpload();
    EXPECT_TRUE(rig.upload.outcome().complete);
    const auto& repeated = rig.comm.uploadFindings.repeatedStrings;
    ASSERT_EQ(repeated.size(), 1U);
    EXPECT_EQ(repeated[0].block, 10);
    EXPECT_EQ(repeated[0].offset, 2);
    rig.bench.db.ParmstrMoveFirst();
    EXPECT_EQ(rig.bench.db.ParmstrStr(), "DAY");
    rig.runUpload();
    EXPECT_EQ(rig.comm.uploadFindings.repeatedStrings.size(), 1U) << "each upload counts its own";
}

TEST(frmUpload, AVersionThatCantBeReadIsNoControllerThatCantBeReached) {
    TransferRig rig;
    rig.controller.play(SimFaultPlan::from("silence", 2));
    rig.expectOverwriteQuestion(Answer::No);
    rig.host.showModal(rig.upload);
    EXPECT_EQ(rig.upload.outcome().stage, UploadStage::Asking);
    rig.boxes.expect("Could Not Connect");
    rig.expectOverwriteQuestion(Answer::No);
    rig.host.showModal(rig.upload);
    EXPECT_EQ(rig.upload.outcome().stage, UploadStage::Reaching);
}

TEST(frmUpload, ALogThatIsSomebodyElsesIsLeftAloneAndAnotherPlaceTaken) {
    TransferRig rig;
    std::ofstream(rig.folder.file("theirs")) << "theirs";
    std::filesystem::create_symlink("theirs", rig.folder.file("QRVUploadLog.txt"));
    frmUpload upload{rig.bench, rig.comm, rig.window, {rig.folder.path(), rig.folder.file("own/logs")}};
    rig.expectOverwriteQuestion();
    rig.host.onModal("frmUpload", [&](Form&) {
        upload.Blocks.value = true;
        upload.Continue_Click();
    });
    rig.host.showModal(upload);
    EXPECT_TRUE(upload.outcome().complete);
    EXPECT_EQ(upload.logPath(), rig.folder.file("own/logs/QRVUploadLog.txt"));
    EXPECT_TRUE(bytesOfFile(upload.logPath()).starts_with(std::string(89, '-') + "\r\n"));
    EXPECT_EQ(bytesOfFile(rig.folder.file("theirs")), "theirs");
}

TEST(frmUpload, WithoutAPlaceForItsLogNoUploadBegins) {
    TransferRig rig;
    rig.place(4, "PID");
    const std::string before = programOf(rig.bench);
    std::filesystem::create_directory(rig.folder.file("QRVUploadLog.txt"));
    rig.expectOverwriteQuestion();
    rig.host.onModal("frmUpload", [&](Form&) {
        rig.upload.Blocks.value = true;
        EXPECT_THROW(rig.upload.Continue_Click(), RunTimeError);
        EXPECT_FALSE(rig.bench.in_upload);
        rig.upload.Cancel_Click();
    });
    rig.host.showModal(rig.upload);
    EXPECT_EQ(programOf(rig.bench), before);
    EXPECT_EQ(rig.record.sends.size(), 2U);
}

namespace {

/// No file of this process grows any more, as if the disk were full, until this goes.
class FullDisk {
 public:
    FullDisk() {
        ::getrlimit(RLIMIT_FSIZE, &former_);
        rlimit none = former_;
        none.rlim_cur = 1;
        ::setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &former_);
        static_cast<void>(std::signal(SIGXFSZ, formerAction_));
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

 private:
    rlimit former_{};
    void (*formerAction_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

}  // namespace

TEST(frmUpload, ALogThatTheDiskCutShortIsToldAndTheUploadStands) {
    TransferRig rig;
    rig.place(4, "PID");
    rig.runDownload();
    const std::string program = programOf(rig.bench);
    rig.record.sends.clear();
    // While strings are read, of which there are none, nothing but the log is written.
    std::optional<FullDisk> full;
    rig.upload.onProgress = [&] {
        if (rig.record.sends.size() == 70) full.emplace();
        if (rig.record.sends.size() == 150) full.reset();
    };
    rig.expectOverwriteQuestion();
    rig.boxes.expect("The upload's log could not be written whole:\n" + rig.folder.file("QRVUploadLog.txt"));
    rig.uploadBlocks();
    EXPECT_TRUE(rig.upload.outcome().complete);
    EXPECT_EQ(programOf(rig.bench), program);
    EXPECT_EQ(rig.upload.outcome().reason, "");
    EXPECT_FALSE(rig.bench.in_upload);
}

TEST(frmUpload, WhereNoneIsWantedNoLogIsKept) {
    TransferRig rig;
    frmUpload upload{rig.bench, rig.comm, rig.window, {}};
    rig.expectOverwriteQuestion();
    rig.host.onModal("frmUpload", [&](Form&) {
        upload.Blocks.value = true;
        upload.Continue_Click();
    });
    rig.host.showModal(upload);
    EXPECT_TRUE(upload.outcome().complete);
    EXPECT_EQ(upload.logPath(), "");
    EXPECT_FALSE(std::filesystem::exists(rig.folder.file("QRVUploadLog.txt")));
}

namespace {

/// The number of the frame, from 1, in which the user cancels: into the block table, the constants, the strings.
class frmUploadCancelAt : public testing::TestWithParam<std::size_t> {};

}  // namespace

TEST_P(frmUploadCancelAt, NoFurtherFrameLeavesAndOnlyTheRevertIsTold) {
    TransferRig rig;
    for (std::int16_t block = 4; block < 30; ++block) rig.place(block, "LIMIT10");
    rig.runDownload();
    rig.save();
    const std::string saved = programOf(rig.bench);
    rig.record.sends.clear();
    rig.upload.onProgress = [&] {
        if (rig.record.sends.size() == GetParam()) rig.upload.Cancel_Click();
    };
    rig.expectOverwriteQuestion();
    rig.boxes.expect(kReverted);
    rig.uploadBlocks();
    EXPECT_EQ(rig.record.sends.size(), GetParam());
    EXPECT_EQ(rig.upload.outcome().reason, "Form Upload query unload");
    EXPECT_EQ(programOf(rig.bench), saved);
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_FALSE(rig.bench.xfer_abort);
    EXPECT_NE(logOf(rig).find("----------CANCEL--------------\r\nForm Upload query unload\r\n"), std::string::npos);
}

// Two polls and the version are the first three; the table takes 47 reads, the constants of 26 blocks of 51 slots
// 1326 div 32 + 1 = 42, the strings 103.
INSTANTIATE_TEST_SUITE_P(Phases, frmUploadCancelAt, testing::Values(4, 5, 50, 51, 52, 60, 92, 93, 194, 195));

// The sleep behind a bad reply is followed by another send, which the Cancel keeps back: the reply was the last.
TEST(frmUpload, ACancelInTheSleepBehindABadReplySendsNoMoreAndTheReplyIsTold) {
    TransferRig rig;
    rig.save();
    rig.controller.play(SimFaultPlan::from("bad-checksum", 10));
    rig.pump.at(rig.clock.now() + std::chrono::milliseconds(500), [&] { rig.upload.Cancel_Click(); });
    rig.expectOverwriteQuestion();
    rig.boxes.expect(abortText(rig));
    rig.boxes.expect(kReverted);
    rig.uploadBlocks();
    EXPECT_EQ(rig.record.sends.size(), 10U);
    EXPECT_EQ(rig.upload.outcome().reason, "Bad Response");
    EXPECT_TRUE(logOf(rig).ends_with("----------CANCEL--------------\r\nBad Response\r\n"));
}

namespace {

/// The number of the request, from 1, whose first send goes unanswered. The line falls quiet before the next request.
struct QuietBefore {
    const char* name;
    std::size_t struck;
};

class frmUploadCancelInTheQuietBefore : public testing::TestWithParam<QuietBefore> {};

}  // namespace

TEST_P(frmUploadCancelInTheQuietBefore, KeepsTheRequestBackAndNothingHasFailed) {
    TransferRig rig;
    for (std::int16_t block = 4; block < 8; ++block) rig.place(block, "LIMIT10");
    rig.runDownload();
    rig.save();
    const std::string saved = programOf(rig.bench);
    rig.record.sends.clear();
    rig.controller.play(SimFaultPlan::at("silence", GetParam().struck));
    rig.controller.onTrace = [&, seen = std::size_t{0}](const SimTrace&) mutable {
        // The second send is answered, and a part of the quiet time goes by.
        if (++seen != GetParam().struck + 1) return;
        rig.pump.at(rig.clock.now() + std::chrono::milliseconds(300), [&] { rig.upload.Cancel_Click(); });
    };
    rig.expectOverwriteQuestion();
    rig.boxes.expect(kReverted);
    rig.uploadBlocks();
    EXPECT_EQ(rig.record.sends.size(), GetParam().struck + 1);
    EXPECT_EQ(rig.upload.outcome().reason, "Form Upload query unload");
    EXPECT_EQ(programOf(rig.bench), saved);
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_TRUE(logOf(rig).ends_with("----------CANCEL--------------\r\nForm Upload query unload\r\n"));
}

// The version is the second request, the section's poll the third; the table takes 47 reads, the constants of 4 blocks
// of 51 slots 204 div 32 + 1 = 7.
INSTANTIATE_TEST_SUITE_P(Phases, frmUploadCancelInTheQuietBefore,
                         testing::Values(QuietBefore{"poll", 2}, QuietBefore{"table", 3},
                                         QuietBefore{"secondRecord", 4}, QuietBefore{"constants", 50},
                                         QuietBefore{"moreConstants", 51}, QuietBefore{"strings", 57},
                                         QuietBefore{"secondString", 58}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(frmUpload, BoxesOfMissingSectionsAreDisabledAndStayClear) {
    TransferRig rig;
    rig.upload.btnAll_Click();
    for (const auto& [name, box] : rig.upload.boxes()) {
        EXPECT_EQ(box->enabled, box == &rig.upload.Blocks) << box->caption;
        EXPECT_EQ(box->value, box == &rig.upload.Blocks) << box->caption;
    }
}

TEST(frmUpload, EnterContinues) {
    TransferRig rig;
    EXPECT_TRUE(rig.upload.Continue.isDefault);
    EXPECT_FALSE(rig.upload.Cancel.isDefault);
}

TEST(frmUpload, ItsBoxesStandInTheirOrderEachUnderItsName) {
    TransferRig rig;
    std::vector<std::string> shown;
    for (const auto& [name, box] : rig.upload.boxes()) shown.push_back(name + std::string(": ") + box->caption);
    EXPECT_EQ(shown, (std::vector<std::string>{"Blocks: Blocks", "Modbus: Modbus Registers + Coils", "Alarms: Alarms",
                                               "Pager: Pager Information", "Egus: Engineering Units", "Charts: Charts",
                                               "Menus: Menus + Screens"}));
}

TEST(UploadSections, PagersAloneAskForAFirmware) {
    for (const UploadSection& section : kUploadSections) {
        EXPECT_EQ(section.leastFirmware, section.shown == "Pager" ? 4.38F : 0.0F) << section.shown;
    }
}

TEST(UploadSections, TheirOrderIsFixed) {
    const std::vector<std::string> order{"Blocks", "Modbus", "Alarms", "Pager", "EGUs", "Charts", "Menus", "Screens"};
    std::vector<std::string> found;
    found.reserve(kUploadSections.size());
    for (const UploadSection& section : kUploadSections) found.emplace_back(section.shown);
    EXPECT_EQ(found, order);
}

}  // namespace qrv::test
