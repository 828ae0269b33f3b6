// The frames of a block program, written by hand from the layouts.
#include "link/DownloadBlocks.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "TransferRig.h"
#include "store/Sqlite.h"

namespace qrv::test {

namespace {

struct DownloadBlocksTest : testing::Test {
    TransferRig rig;

    void send() {
        rig.comm.Open_Comm_Port();
        rig.record.sends.clear();
        rig.bench.xfer_abort = false;
        DownloadBlocks(rig.bench, rig.comm);
    }
    [[nodiscard]] const Bytes& tableFrame(int i) const { return rig.record.sends.at(static_cast<std::size_t>(i)); }
    [[nodiscard]] const Bytes& constantsFrame(int i) const { return tableFrame(141 + i); }
    [[nodiscard]] const Bytes& stringFrame(int i) const { return tableFrame(141 + 176 + i); }
};

Bytes bytesAt(const Bytes& frame, std::size_t from, std::size_t count) {
    const auto start = frame.begin() + static_cast<std::ptrdiff_t>(from);
    return {start, start + static_cast<std::ptrdiff_t>(count)};
}

}  // namespace

TEST_F(DownloadBlocksTest, ANewFileIsTableConstantsAndTheEndOfTheStrings) {
    send();
    EXPECT_TRUE(rig.bench.xfer_ok);
    EXPECT_FALSE(rig.bench.xfer_abort);
    ASSERT_EQ(rig.record.sends.size(), 141U + 176U + 1U);
    EXPECT_EQ(stringFrame(0), (Bytes{0x02, 0x03, 0x02, 0x58, 0x00, 0xFF, 0xFF, 0xFD, 0xA2}));
}

TEST_F(DownloadBlocksTest, TableFramesGoUpByFiftyBytes) {
    send();
    EXPECT_EQ(bytesAt(tableFrame(0), 0, 5), (Bytes{2, 1, 50, 0, 0}));
    EXPECT_EQ(bytesAt(tableFrame(1), 0, 5), (Bytes{2, 1, 50, 0, 50}));
    EXPECT_EQ(bytesAt(tableFrame(140), 0, 5), (Bytes{2, 1, 50, 0x1B, 0x58}));  // 7000
    for (int i = 0; i < 141; ++i) EXPECT_EQ(tableFrame(i).size(), 57U);
}

TEST_F(DownloadBlocksTest, ConstantsFramesGoUpTo22400) {
    send();
    EXPECT_EQ(bytesAt(constantsFrame(0), 0, 5), (Bytes{2, 3, 128, 0, 0}));
    EXPECT_EQ(bytesAt(constantsFrame(175), 0, 5), (Bytes{2, 3, 128, 0x57, 0x80}));
    for (int i = 0; i < 176; ++i) EXPECT_EQ(constantsFrame(i).size(), 135U);
}

// As catalogue/functions.csv sizes them, in temporary bytes, slots and retentive bytes: ZERO, FULL, OFF and ON of
// blocks 0 to 3 take 1, 0, 0 each; TOTAL (53) takes 6, 2 + 3 + 0, 4; PID (43) takes 9, 4 + 8 + 2, 0.
TEST_F(DownloadBlocksTest, ARecordTellsWhereTheBlocksBeforeItEnd) {
    rig.place(4, "TOTAL");
    rig.place(5, "PID");
    rig.place(6, "TOTAL");
    send();
    EXPECT_EQ(bytesAt(tableFrame(0), 5 + 30, 10), (Bytes{0, 91, 0, 3, 0, 0, 0, 0, 2, 0})) << "ON";
    EXPECT_EQ(bytesAt(tableFrame(0), 5 + 40, 10), (Bytes{0, 53, 0, 4, 0, 0, 0, 0, 1, 0})) << "TOTAL";
    EXPECT_EQ(bytesAt(tableFrame(1), 5, 10), (Bytes{0, 43, 0, 10, 0, 5, 0, 4, 1, 0})) << "PID";
    EXPECT_EQ(bytesAt(tableFrame(1), 5 + 10, 10), (Bytes{0, 53, 0, 19, 0, 19, 0, 4, 1, 0})) << "TOTAL";
    EXPECT_EQ(bytesAt(tableFrame(1), 5 + 20, 10), (Bytes{0, 127, 0, 25, 0, 24, 0, 8, 0, 0})) << "NOP";
}

TEST_F(DownloadBlocksTest, InputsGoInTheHighHalfAndNegativeOnesAsTheirSixteenBits) {
    rig.place(4, "PID");
    rig.setConstant(4, 0, 704);
    rig.setConstant(4, 1, -31742);  // bit 15, ordinal 1, block 2: 8402
    send();
    EXPECT_EQ(bytesAt(constantsFrame(0), 5, 8), (Bytes{0x02, 0xC0, 0, 0, 0x84, 0x02, 0, 0}));
}

// OARESET has three inputs, a text, and parameters of the types 2, 4, 4 and 1; AOUT's last two constants are hidden.
TEST_F(DownloadBlocksTest, EachTypeOfParameterHasItsFormOfSlot) {
    rig.place(10, "OARESET");
    rig.place(11, "AOUT");
    rig.setConstant(10, 3, 77);
    rig.setConstant(10, 4, 3);
    rig.setConstant(10, 5, -2);
    rig.setConstant(10, 6, 32767);
    rig.setConstant(10, 7, -65537);
    rig.setConstant(11, 7, 65536);
    rig.setConstant(11, 8, 17);
    rig.setConstant(11, 9, -1);
    send();
    EXPECT_EQ(bytesAt(constantsFrame(0), 5 + 3 * 4, 20),
              (Bytes{0, 0, 0, 0, 0, 3, 0, 0, 0xFF, 0xFE, 0, 0, 0x7F, 0xFF, 0, 0, 0xFF, 0xFE, 0xFF, 0xFF}));
    EXPECT_EQ(bytesAt(constantsFrame(0), 5 + (12 + 7) * 4, 12), (Bytes{0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

// No function of the shipped catalogue has such a parameter: here ACONST's only one is, and OARESET's sixth.
TEST_F(DownloadBlocksTest, AParameterOfAnotherTypeSendsWhatTheSlotBeforeLeft) {
    const std::string catalogue = rig.made("catalogue");
    std::filesystem::copy_file(QRV_CATALOGUE_FOLDER "/QRVDATA.DAT", catalogue + "/QRVDATA.DAT");
    Sqlite(catalogue + "/QRVDATA.DAT", Sqlite::Mode::ReadWrite)
        .execute("UPDATE Params SET type = 9 WHERE (fn = 3 AND pn = 1) OR (fn = 12 AND pn = 6)");
    rig.bench.db.open_database(catalogue);
    rig.place(4, "ACONST");
    rig.place(10, "OARESET");
    rig.place(11, "ACONST");
    rig.setConstant(4, 0, 5);
    rig.setConstant(10, 7, -65537);
    rig.setConstant(10, 8, 5);
    rig.setConstant(10, 11, 0x12345);
    rig.setConstant(11, 0, 5);
    send();
    EXPECT_EQ(bytesAt(constantsFrame(0), 5, 4), (Bytes{0, 0, 0, 0})) << "nothing was before";
    EXPECT_EQ(bytesAt(constantsFrame(0), 5 + 8 * 4, 8), (Bytes{0xFF, 0xFE, 0xFF, 0xFF, 0, 0, 0xFF, 0xFF}));
    EXPECT_EQ(bytesAt(constantsFrame(0), 5 + 12 * 4, 8), (Bytes{0, 1, 0x23, 0x45, 0, 0, 0x23, 0x45}))
        << "from block to block";
}

TEST_F(DownloadBlocksTest, ConstantsThatEndWithinABlockAreOutOfStep) {
    rig.place(10, "OARESET");
    db1& db = rig.bench.db;
    for (std::int16_t block = 11; block <= 704; ++block) {
        for (std::int16_t slot = 0; db.ConstantSeek(block, slot), !db.ConstantNoMatch(); ++slot) db.ConstantDelete();
    }
    db.ConstantSeek(10, 11);
    db.ConstantDelete();
    rig.boxes.expect(
        {.text = "Block = 10\n Constant = \nDatabase Sync Error\nDOWNLOAD ABORTED", .icon = Icon::Warning});
    send();
    EXPECT_TRUE(rig.bench.xfer_abort);
    EXPECT_EQ(rig.bench.xfer_abort_reason, "Form Comm Download blocks CloseIt");
}

TEST_F(DownloadBlocksTest, AnInputBeyondSixteenBitsIsAnOverflow) {
    rig.place(4, "PID");
    rig.setConstant(4, 0, 32768);
    EXPECT_THROW(send(), RunTimeError);
}

TEST_F(DownloadBlocksTest, ARowTooManyStopsAtTheNextBlock) {
    rig.place(4, "PID");
    rig.place(6, "PID");
    rig.bench.db.BlockSeek(4);
    rig.bench.db.BlockEdit();
    rig.bench.db.BlockConstant(0);
    rig.bench.db.BlockUpdate();
    rig.boxes.expect(
        {.text = "Block = 6\n Constant = 4\nDatabase Sync Error\nDOWNLOAD ABORTED", .icon = Icon::Warning});
    send();
    EXPECT_TRUE(rig.bench.xfer_abort);
    EXPECT_EQ(rig.bench.xfer_abort_reason, "Form Comm Download blocks CloseIt");
}

TEST_F(DownloadBlocksTest, AFunctionThatTheCatalogueLacksStopsBeforeTheFirstFrame) {
    int unknown = 0;
    rig.bench.db.FuncSetIndex("FN");
    do {
        rig.bench.db.FuncSeekI(++unknown);
    } while (!rig.bench.db.FuncNoMatch());
    rig.bench.db.BlockSeek(10);
    rig.bench.db.BlockEdit();
    rig.bench.db.BlockFn(unknown);
    rig.bench.db.BlockUpdate();
    rig.boxes.expect("ERROR DOWNLOADING BLOCKS");
    send();
    EXPECT_TRUE(rig.record.sends.empty());
    EXPECT_EQ(rig.bench.xfer_abort_reason, "Form Comm Download blocks fail");
}

TEST_F(DownloadBlocksTest, OneStringIsPaddedToAHundredRecords) {
    db1& db = rig.bench.db;
    rig.place(4, "SCHEDULE");
    db.ParmstrMoveFirst();
    ASSERT_FALSE(db.ParmstrEOF());
    db.ParmstrEdit();
    db.ParmstrStr("NIGHT");
    db.ParmstrUpdate();
    const int number = db.ParmstrOffset();
    db.FuncSetIndex("Fname");
    db.FuncSeekS("SCHEDULE");
    const auto constant = static_cast<std::uint8_t>(number - db.FuncInputs() + 1);
    send();
    ASSERT_EQ(rig.record.sends.size(), 141U + 176U + 101U);
    Bytes first{2, 3, 20, 0x58, 0x00, 0, 4, constant, 'N', 'I', 'G', 'H', 'T'};
    first.resize(25, 0);
    EXPECT_EQ(stringFrame(0), sealed(first));
    Bytes unused{2, 3, 20, 0x58, 0x14, 0, 0, 0};
    unused.resize(8 + 16, ' ');
    unused.push_back(0);
    EXPECT_EQ(stringFrame(1), sealed(unused));
    EXPECT_EQ(stringFrame(100), sealed({2, 3, 2, 0x5F, 0xD0, 0xFF, 0xFF}));  // 22528 + 100 x 20
}

TEST_F(DownloadBlocksTest, TheHundredAndFirstStringIsLeftOut) {
    for (std::int16_t block = 4; block < 4 + 101; ++block) rig.place(block, "SCHEDULE");
    send();
    ASSERT_EQ(rig.record.sends.size(), 141U + 176U + 101U);
    EXPECT_EQ(bytesAt(stringFrame(99), 0, 8), (Bytes{2, 3, 20, 0x5F, 0xBC, 0, 103, 1}));  // 22528 + 99 x 20
    EXPECT_EQ(stringFrame(100), sealed({2, 3, 2, 0x5F, 0xD0, 0xFF, 0xFF}));
    EXPECT_EQ(rig.comm.unsentStrings, 1);
}

TEST_F(DownloadBlocksTest, AStaleStringEndsTheRecordsAndNotTheDownload) {
    db1& db = rig.bench.db;
    db.ParmstrAddNew();
    db.ParmstrBlockNumber(9);
    db.ParmstrOffset(3);
    db.ParmstrStr("LEFT OVER");
    db.ParmstrUpdate();
    rig.boxes.expect("Block 9 has no string parameters");
    send();
    EXPECT_TRUE(rig.bench.xfer_ok);
    EXPECT_FALSE(rig.bench.xfer_abort);
    ASSERT_EQ(rig.record.sends.size(), 141U + 176U + 1U);
    EXPECT_EQ(stringFrame(0), sealed({2, 3, 2, 0x58, 0, 0xFF, 0xFF}));
    EXPECT_EQ(rig.comm.unsentStrings, 1);
}

TEST_F(DownloadBlocksTest, AFrameOfConstantsIsSentTwentyTimesAtMost) {
    rig.controller.play(SimFaultPlan::from("silence", 142));
    rig.boxes.expect("Error Downloading Constant # 0");
    send();
    EXPECT_EQ(rig.record.sends.size(), 141U + 20U);
    EXPECT_EQ(rig.bench.xfer_abort_reason, "Form Comm Download constant fail");
}

}  // namespace qrv::test
