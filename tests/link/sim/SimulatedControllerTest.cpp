#include "link/sim/SimulatedController.h"

#include <gtest/gtest.h>

#include "link/sim/SimRig.h"

namespace qrv::test {

using namespace std::chrono_literals;

namespace {

Bytes blockRecords(std::uint8_t function, std::uint8_t kind) {
    Bytes data;
    for (int i = 0; i < 5; ++i) {
        const Bytes record{0, function, 0, 0, 0, 0, 0, 0, kind, 0};
        data.insert(data.end(), record.begin(), record.end());
    }
    return data;
}

const Bytes kCommit{0x08, 0xFF, 0xF7};

}  // namespace

TEST(SimulatedController, AnswersAPollWithStatus16) {
    SimRig rig;
    const auto answer = rig.send(kPoll);
    ASSERT_EQ(answer.size(), 5U);
    EXPECT_EQ(answer[0], 16);
    EXPECT_TRUE(hasGoodSum(answer));
}

TEST(SimulatedController, GivesItsVersionInTwentyFourBytes) {
    SimRig rig;
    const auto answer = rig.send({0x04, 0x00, 0x18, 0x00, 0x00, 0xFF, 0xE3});
    ASSERT_EQ(answer.size(), 31U);
    EXPECT_TRUE(hasGoodSum(answer));
    EXPECT_EQ(std::string(answer.begin() + 5, answer.end() - 2), "V6.73 SIMULATED QRV     ");
}

TEST(SimulatedController, TheVersionTextCanBeAnother) {
    SimRig rig({.versionText = "V4.38"});
    const auto data = rig.dataAt(0, 0, 24);
    EXPECT_EQ(std::string(data.begin(), data.end()), "V4.38                   ");
}

TEST(SimulatedController, BytesWithoutMeaningDifferFromAnswerToAnswer) {
    SimRig rig;
    const auto one = rig.send(kPoll);
    const auto two = rig.send(kPoll);
    EXPECT_NE(one, two);
    const Bytes read = readFrame(14, 0, 60);
    EXPECT_NE(rig.send(read), rig.send(read));
    SimRig same;
    EXPECT_EQ(same.send(kPoll), one);
}

TEST(SimulatedController, WhatIsWrittenIsReadBack) {
    SimRig rig;
    Bytes record(60, 0);
    record[0] = 0x35;
    record[59] = 0xFF;
    EXPECT_TRUE(hasGoodSum(rig.send(writeFrame(14, 180, record))));
    EXPECT_EQ(rig.dataAt(14, 180, 60), record);
    EXPECT_EQ(rig.dataAt(14, 120, 60), Bytes(60, 0));
}

TEST(SimulatedController, TheBlockTableWrittenIsReadThroughTheOtherSection) {
    SimRig rig;
    ASSERT_EQ(rig.send(writeFrame(1, 7000, blockRecords(92, 2))).size(), 5U);
    const auto data = rig.dataAt(4, 6900, 150);
    ASSERT_EQ(data.size(), 150U);
    EXPECT_EQ(data[10 * 9 + 1], 127);
    EXPECT_EQ(data[10 * 10 + 1], 92);
    EXPECT_EQ(data[10 * 14 + 1], 92);
}

TEST(SimulatedController, OnlyACommitOutlivesALossOfPower) {
    SimRig rig;
    (void)rig.send(writeFrame(1, 0, blockRecords(12, 1)));
    ASSERT_EQ(rig.send(kCommit).size(), 5U);
    (void)rig.send(writeFrame(1, 0, blockRecords(13, 1)));
    EXPECT_EQ(rig.controller.working().functionOf(0), 13);
    EXPECT_EQ(rig.controller.committed().functionOf(0), 12);
    rig.controller.restart();
    EXPECT_EQ(rig.controller.working().functionOf(0), 12);
    EXPECT_EQ(rig.controller.counters().commits, 1U);
}

TEST(SimulatedController, ACommitTellsWhatIsPermanentNow) {
    SimRig rig;
    std::optional<SimMemory> told;
    rig.controller.onCommit = [&](const SimMemory& memory) { told = memory; };
    (void)rig.send(writeFrame(1, 0, blockRecords(12, 1)));
    EXPECT_FALSE(told.has_value());
    (void)rig.send(kCommit);
    ASSERT_TRUE(told.has_value());
    EXPECT_EQ(told->functionOf(4), 12);
}

TEST(SimulatedController, FixedOutputsStandInTheirBytes) {
    SimRig rig;
    rig.controller.fixAnalog(5, -32768);
    rig.controller.fixAnalog(700, -1);
    rig.controller.fixDiscrete(6, true);
    auto answer = rig.send({0x20, 0x00, 0x05, 0xFF, 0xDA});
    ASSERT_EQ(answer.size(), 5U);
    EXPECT_EQ(answer[1], 0x80);
    EXPECT_EQ(answer[2], 0x00);
    answer = rig.send({0x20, 0x02, 0xBC, 0xFF, 0x21});
    EXPECT_EQ(answer[1], 0xFF);
    EXPECT_EQ(answer[2], 0xFF);
    answer = rig.send({0x20, 0x00, 0x06, 0xFF, 0xD9});
    EXPECT_EQ(answer[1], 0x01);
}

TEST(SimulatedController, NoOutputBehindTheLastBlock) {
    SimRig rig;
    EXPECT_EQ(rig.send(summed({0x20, 0x02, 0xC0})).size(), 5U);
    EXPECT_TRUE(rig.send(summed({0x20, 0x02, 0xC1})).empty());
}

TEST(SimulatedController, MovingOutputsFollowTheBlocksKind) {
    SimRig rig({.isMoving = true});
    (void)rig.send(writeFrame(1, 0, blockRecords(12, 1)));
    (void)rig.send(writeFrame(1, 50, blockRecords(92, 2)));
    std::uint8_t onesAndZeros = 0;
    Bytes firstAnalog;
    bool analogMoved = false;
    for (int i = 0; i < 240; ++i) {
        rig.pass(500ms);
        const auto analog = rig.send(summed({0x20, 0, 0}));
        const Bytes word{analog[1], analog[2]};
        if (firstAnalog.empty()) firstAnalog = word;
        analogMoved = analogMoved || word != firstAnalog;
        const auto discrete = rig.send(summed({0x20, 0, 5}))[1];
        ASSERT_LE(discrete, 1);
        onesAndZeros |= static_cast<std::uint8_t>(discrete == 1 ? 1 : 2);
        const auto nop = rig.send(summed({0x20, 0, 10}));
        ASSERT_EQ((Bytes{nop[1], nop[2]}), (Bytes{0, 0}));
    }
    EXPECT_TRUE(analogMoved);
    EXPECT_EQ(onesAndZeros, 3);
}

TEST(SimulatedController, ConstantsDoNotMove) {
    SimRig rig({.isMoving = true});
    // ZERO and FULL are analog, OFF and ON discrete.
    (void)rig.send(
        writeFrame(1, 0, Bytes{0, 0, 0, 0, 0, 0, 0,  0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 90, 0, 0, 0,
                               0, 0, 0, 2, 0, 0, 91, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0,  0, 1, 0}));
    for (int i = 0; i < 20; ++i) {
        rig.pass(10s);
        const auto zero = rig.send(summed({0x20, 0, 0}));
        const auto full = rig.send(summed({0x20, 0, 1}));
        ASSERT_EQ((Bytes{zero[1], zero[2], full[1], full[2]}), (Bytes{0x00, 0x00, 0x27, 0x10}));
        ASSERT_EQ(rig.send(summed({0x20, 0, 2}))[1], 0);
        ASSERT_EQ(rig.send(summed({0x20, 0, 3}))[1], 1);
    }
}

TEST(SimulatedController, KeepsTheKeysThatArePressed) {
    SimRig rig;
    EXPECT_EQ(rig.send({0x21, 0x0D, 0xFF, 0xD1}).size(), 5U);
    EXPECT_EQ(rig.controller.keys(), Bytes{0x0D});
}

TEST(SimulatedController, CountsWhatItObeys) {
    SimRig rig;
    for (const auto code : {31, 37, 39, 40, 48}) {
        EXPECT_EQ(rig.send(summed({static_cast<std::uint8_t>(code)})).size(), 5U) << code;
    }
    EXPECT_EQ(rig.controller.counters().frames, 5U);
    EXPECT_EQ(rig.controller.counters().announces, 1U);
    EXPECT_EQ(rig.controller.counters().obeyed.at(SimCommandCode::ActivateUnits), 1U);
    EXPECT_EQ(rig.controller.counters().refused, 0U);
}

TEST(SimulatedController, RefusesInSilenceAndSaysWhy) {
    SimRig rig;
    EXPECT_TRUE(rig.send({0x01, 0xFF, 0xFF}).empty());
    EXPECT_TRUE(rig.send(readFrame(1, 0, 50)).empty());
    EXPECT_TRUE(rig.send(writeFrame(14, 30, Bytes(60, 0))).empty());
    EXPECT_TRUE(rig.send({0x77}).empty());
    EXPECT_EQ(rig.controller.counters().refused, 4U);
    EXPECT_EQ(rig.remarks, (std::vector<std::string>{
                               "refused poll: bad checksum",
                               "refused read: section 1, offset 0, 50 bytes: the section is never read",
                               "refused write: section 14, offset 30, 60 bytes: no record of that size begins there",
                               "refused command 119: unknown command"}));
    EXPECT_EQ(rig.controller.working(), SimMemory());
}

TEST(SimulatedController, FillerLeadsBackToABeginning) {
    SimRig rig;
    (void)rig.send({0x77, 0x02, 0x03});
    (void)rig.send(Bytes(1025, 0));
    EXPECT_EQ(rig.send(kPoll).size(), 5U);
    EXPECT_GE(rig.controller.fillerCount(), 1025U - 262U);
}

TEST(SimulatedController, ASectionThatProvesItselfIsTakenWithoutAWord) {
    SimRig rig;
    // The smallest history: no pens. Its four bytes 00 04 00 00 add up to 4.
    (void)rig.send({0x02, 0x0B, 0x04, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0xFF, 0xEA});
    (void)rig.send({0x02, 0x0B, 0x02, 0x00, 0x04, 0x00, 0x04, 0xFF, 0xE8});
    EXPECT_EQ(rig.controller.counters().badSeals, 0U);
    EXPECT_TRUE(rig.remarks.empty());
}

TEST(SimulatedController, ASectionChecksumThatDoesNotFitIsTakenAndRemarked) {
    SimRig rig;
    (void)rig.send({0x02, 0x0B, 0x04, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0xFF, 0xEA});
    EXPECT_EQ(rig.send({0x02, 0x0B, 0x02, 0x00, 0x04, 0x00, 0x05, 0xFF, 0xE7}).size(), 5U);
    EXPECT_EQ(rig.controller.counters().badSeals, 1U);
    EXPECT_EQ(rig.remarks, std::vector<std::string>{"section 11: checksum 5 at offset 4, where the bytes before it "
                                                    "give 4 and the header names offset 4"});
}

struct GateRow {
    const char* name;
    const char* version;
    Bytes request;
    bool isTaken;
};

class SimFirmware : public testing::TestWithParam<GateRow> {};

TEST_P(SimFirmware, TakesWhatItKnows) {
    SimRig rig({.versionText = GetParam().version});
    EXPECT_EQ(!rig.send(GetParam().request).empty(), GetParam().isTaken);
}

INSTANTIATE_TEST_SUITE_P(Gates, SimFirmware,
                         testing::Values(GateRow{"announceAt439", "V4.39", summed({48}), false},
                                         GateRow{"announceAt440", "V4.40", summed({48}), true},
                                         GateRow{"pagerAt437", "V4.37", writeFrame(14, 0, Bytes(60, 0)), false},
                                         GateRow{"pagerAt438", "V4.38", writeFrame(14, 0, Bytes(60, 0)), true},
                                         GateRow{"pagerIsReadAtAnyVersion", "V4.00", readFrame(14, 0, 60), true},
                                         GateRow{"chartsAt437", "V4.37", writeFrame(10, 0, Bytes(144, 0)), false},
                                         GateRow{"chartsAt438", "V4.38", summed({37}), true},
                                         GateRow{"modbusAt409", "V4.09", summed({40}), false},
                                         GateRow{"modbusAt410", "V4.10", writeFrame(13, 0, Bytes(8, 0)), true},
                                         GateRow{"noNumberIsNoGate", "QRV", summed({48}), true}),
                         [](const auto& row) { return row.param.name; });

TEST(SimulatedController, TracesEachRequestWithWhatCameOfIt) {
    SimRig rig;
    std::vector<std::string> lines;
    rig.controller.onTrace = [&](const SimTrace& trace) {
        lines.push_back(std::to_string(trace.request.size()) + "/" + std::to_string(trace.answer.size()) + " " +
                        std::string(trace.fault) + "|" + std::string(trace.refusal));
    };
    rig.controller.play(SimFaultPlan::at("short", 2));
    (void)rig.send(kPoll);
    (void)rig.send(kPoll);
    (void)rig.send({0x01, 0x00, 0x00});
    EXPECT_EQ(lines, (std::vector<std::string>{"3/5 |", "3/4 short|", "3/0 |bad checksum"}));
}

TEST(SimulatedController, AnyBytesAreBorne) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        SimNoise noise(seed);
        SimRig rig;
        for (int i = 0; i < 40; ++i) {
            // Frames of known commands with a good checksum, whatever they ask for, and junk between them.
            Bytes frame{static_cast<std::uint8_t>(kSimCommands[noise.next() % kSimCommands.size()].code)};
            const auto* const command = simCommandOf(frame[0]);
            while (frame.size() < command->length - 2) frame.push_back(noise.nextByte());
            if (frame[0] == 2) frame.resize(frame.size() + frame[2], noise.nextByte());
            const auto answer = rig.send(summed(frame));
            EXPECT_TRUE(answer.empty() || hasGoodSum(answer));
            if (noise.chance(200)) {
                (void)rig.send({noise.nextByte(), noise.nextByte()});
                rig.pass(1s);
            }
        }
        rig.pass(1s);
        EXPECT_EQ(rig.send(kPoll).size(), 5U);
    }
}

}  // namespace qrv::test
