// An upload: what comes in, its log byte for byte, and the way back to the saved file.
#include "link/frmUpload.h"

#include <gtest/gtest.h>

#include <map>

#include "ProgramText.h"
#include "TransferRig.h"
#include "link/UploadSections.h"

namespace qrv::test {

namespace {

std::string logOf(const TransferRig& rig) { return bytesOfFile(rig.folder.file("QRVUploadLog.txt")); }

std::string repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

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

// The controller is empty but for the end of its strings, so that every exchange can be written down.
TEST(frmUpload, TheLogOfAnEmptyProgramByteForByte) {
    TransferRig rig;
    rig.runUpload();
    const std::string log = logOf(rig);
    const std::string head =
        "-----------------------------------------------------------------------------------------\r\n"
        "--------------------------------------BLOCKS---------------------------------------------\r\n"
        "-----------------------------------------------------------------------------------------\r\n"
        "Offset: 0 \r\n"
        "Sent:4 4 150 0 0 255 97 \r\n"
        "Expecting: 157 Bytes. Received 157 \r\n"
        "Received:";
    ASSERT_EQ(log.substr(0, head.size()), head);
    const std::string afterReply = "\r\nRetries: 0 \r\n \r\nOffset: 150 \r\nSent:4 4 150 0 150 254 203 \r\n";
    EXPECT_NE(log.find(afterReply), std::string::npos);
    const std::string constants =
        "\r\nRetries: 0 \r\n \r\n"
        "-----------------------------------------------------------------------------------------\r\n"
        "--------------------------------------CONSTANTS------------------------------------------\r\n"
        "-----------------------------------------------------------------------------------------\r\n"
        "Sent:4 3 128 0 0 255 120 \r\n"
        "Expecting: 135 Bytes. Received 135 \r\n"
        "Received:";
    const auto constantsAt = log.find(constants);
    ASSERT_NE(constantsAt, std::string::npos);
    std::string blocks = "\r\nRetries: 0 \r\n";
    for (int block = 0; block <= 704; ++block) blocks += "Block:  " + std::to_string(block) + " \r\n";
    const std::string strings =
        blocks +
        "-----------------------------------------------------------------------------------------\r\n"
        "--------------------------------------STRING PARAMS--------------------------------------\r\n"
        "-----------------------------------------------------------------------------------------\r\n"
        "Offset:  22528 \r\n"
        "Sent:4 3 20 88 0 255 140 \r\n"
        "Expecting: 27 Bytes. Received 27 \r\n"
        "Received:";
    EXPECT_NE(log.find(strings, constantsAt), std::string::npos);
    const std::string last = "Offset:  24568 \r\nSent:4 3 20 95 248 254 141 \r\nExpecting: 27 Bytes. Received 27 \r\n";
    const auto lastAt = log.find(last);
    ASSERT_NE(lastAt, std::string::npos);
    EXPECT_EQ(log.find("Offset:", lastAt + 8), std::string::npos) << "103 reads of strings and no more";
    const std::string end = "\r\nRetries: 0 \r\n \r\n";
    EXPECT_EQ(log.substr(log.size() - end.size()), end);
}

TEST(frmUpload, EveryReplyByteStandsInTheLog) {
    TransferRig rig;
    rig.runUpload();
    const std::string log = logOf(rig);
    // Blocks 0 to 14 of a fresh controller: function 127, all else 0. Before them five bytes that mean nothing.
    const auto received = log.find("Received:", log.find("Bytes. Received 157"));
    const std::string line = log.substr(received, log.find("\r\n", received) - received);
    EXPECT_NE(line.find(" " + repeated("0 127 0 0 0 0 0 0 0 0 ", 15)), std::string::npos) << line;
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
    rig.host.onModal("frmUpload", [&](Form&) {
        rig.upload.Blocks.value = true;
        rig.upload.Continue_Click();
    });
    rig.host.showModal(rig.upload);
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
    rig.host.onModal("frmUpload", [&](Form&) {
        rig.upload.Blocks.value = true;
        rig.upload.Continue_Click();
    });
    rig.host.showModal(rig.upload);
    EXPECT_EQ(programOf(rig.bench), saved);
    EXPECT_EQ(rig.upload.outcome().reason, "Form Upload query unload");
}

TEST(frmUpload, BoxesOfMissingSectionsAreDisabledAndStayClear) {
    TransferRig rig;
    rig.upload.btnAll_Click();
    for (const Choice* box : rig.upload.boxes()) {
        EXPECT_EQ(box->enabled, box == &rig.upload.Blocks) << box->caption;
        EXPECT_EQ(box->value, box == &rig.upload.Blocks) << box->caption;
    }
}

TEST(UploadSections, TheirOrderIsFixed) {
    const std::vector<std::string> order{"Blocks", "Modbus", "Alarms", "Pager", "EGUs", "Charts", "Menus", "Screens"};
    std::vector<std::string> found;
    for (const UploadSection& section : kUploadSections) found.emplace_back(section.shown);
    EXPECT_EQ(found, order);
}

}  // namespace qrv::test
