// Programs down and up again: equal in all that a controller holds.
#include <gtest/gtest.h>

#include "ProgramText.h"
#include "RandomProgram.h"
#include "TransferRig.h"
#include "tools/TextForm.h"
#include "twins/Seed.h"

namespace qrv::test {

namespace {

constexpr int kPrograms = 200;
constexpr int kShares = 4;
constexpr int kSmallest = 40;  // functions of a program
constexpr int kMostConstants = 5632;

/// Two tools at one controller after the other: what the first sends the second reads, into a file that holds another
/// program already.
struct RoundTripRig {
    void expectTheSameComesBack() {
        sender.controller = SimulatedController();
        sender.runDownload();
        ASSERT_TRUE(sender.download.outcome().committed);
        reader.controller = SimulatedController();
        reader.controller.load(sender.controller.committed());
        reader.runUpload();
        ASSERT_TRUE(reader.upload.outcome().complete);
        ASSERT_EQ(programOf(reader.bench), heldPartOf(sender.bench));
        ASSERT_EQ(reader.bench.FnOfBlock, sender.bench.FnOfBlock);
        for (TransferRig* rig : {&sender, &reader}) {
            rig->record.sends.clear();
            rig->host.happened.clear();
        }
    }
    static void setComment(TransferRig& rig, std::int16_t block, const std::string& text) {
        rig.bench.db.BlockSeek(block);
        rig.bench.db.BlockEdit();
        rig.bench.db.BlockComment(text);
        rig.bench.db.BlockUpdate();
    }
    [[nodiscard]] static std::string commentOf(TransferRig& rig, std::int16_t block) {
        rig.bench.db.BlockSeek(block);
        return rig.bench.db.BlockComment();
    }

    TransferRig sender;
    TransferRig reader;
};

struct RoundTrip : RoundTripRig, testing::TestWithParam<int> {};
struct WholeFileRoundTrip : RoundTripRig, testing::Test {};

}  // namespace

TEST_P(RoundTrip, RandomProgramsComeBackAsTheyWent) {
    const unsigned seed = seedOfRun(static_cast<unsigned>(GetParam()));
    SCOPED_TRACE("seed " + std::to_string(seed));
    ProgramDrawer drawer(sender.bench, seed);
    // A controller holds no comments: those of the file that is read into stay.
    setComment(sender, 9, "SENDER");
    setComment(reader, 9, "READER");
    for (int i = 0; i < kPrograms / kShares; ++i) {
        SCOPED_TRACE("program " + std::to_string(i));
        i % 10 == 5 ? drawer.drawFull(kMostConstants) : drawer.draw(kSmallest + i);
        expectTheSameComesBack();
        if (HasFatalFailure()) return;
    }
    EXPECT_EQ(drawer.placedCount(), drawer.functionCount()) << "every function of the catalogue has gone both ways";
    EXPECT_EQ(commentOf(reader, 9), "READER");
}

INSTANTIATE_TEST_SUITE_P(Shares, RoundTrip, testing::Range(0, kShares));

TEST_F(WholeFileRoundTrip, AProgramWithoutConstants) {
    ProgramDrawer(sender.bench, 1).drawEmpty();
    // The window that is shown behind an upload puts the CPU's functions back.
    reader.window.showGeneral = [] {};
    expectTheSameComesBack();
    EXPECT_EQ(programOf(reader.bench).find("constant"), std::string::npos);
}

TEST_F(WholeFileRoundTrip, TheSample) {
    const TextFormResult sample = readTextForm(bytesOfFile(QRV_SAMPLES "/boiler_house.txt"), "boiler_house.txt");
    ASSERT_EQ(sample.refusal, "");
    makeConfigurationFile(sender.folder.file("boiler_house.qrv"), *sample.content);
    CloseConfiguration(sender.bench, Answer::No);
    OpenConfiguration(sender.bench, sender.folder.file("boiler_house.qrv"));
    expectTheSameComesBack();
    EXPECT_EQ(boardsAndFunctionsOf(reader.bench), boardsAndFunctionsOf(sender.bench));
}

}  // namespace qrv::test
