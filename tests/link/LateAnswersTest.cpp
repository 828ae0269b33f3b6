// Frames carry no number and a reply doesn't say what it answers: an answer that comes after its time-out must not be
// taken for that of the next request. A chain of 47 reads or writes, one answer late at every place of it.
#include <gtest/gtest.h>

#include "LinkRig.h"

namespace qrv::test {
namespace {

using namespace std::chrono_literals;

constexpr int kReads = 47;
constexpr std::int16_t kCount = 150;

struct LateRow {
    const char* name;
    milliseconds lateBy;
};

constexpr std::array kRows{LateRow{"inTime", 1700ms}, LateRow{"justLate", 1850ms}, LateRow{"late", 2500ms},
                           LateRow{"veryLate", 3700ms}, LateRow{"latest", 6000ms}};

/// Each read's bytes differ from every other's. They are small: four late replies in one lump must not overflow a sum.
Bytes dataOf(int read) {
    Bytes data(kCount);
    for (int i = 0; i < kCount; ++i)
        data[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>((read * 37 + i) % 40);
    data[0] = static_cast<std::uint8_t>(read);
    return data;
}

SimMemory filledMemory() {
    SimMemory memory;
    for (int read = 0; read < kReads; ++read) {
        memory.write(1, static_cast<std::uint32_t>(read) * kCount, dataOf(read));
    }
    return memory;
}

void readBlockTable(frmComm& comm, int read) {
    comm.put_read(Section::BlockTableBack, kCount, read * kCount);
    comm.send_and_get(7, kCount + 7);
}

Bytes dataIn(const Bytes& reply) { return reply.size() < 7 ? Bytes{} : Bytes(reply.begin() + 5, reply.end() - 2); }

/// What a controller needs for every answer, below its time-out of 1.8 s.
constexpr std::array kAnswerTimes{45ms, 700ms, 1000ms, 1700ms};

/// Reads the whole chain; each read must bear its own bytes.
void expectOwnBytes(ControllerRig& rig, const std::string& what) {
    for (int read = 0; read < kReads; ++read) {
        readBlockTable(rig.comm, read);
        ASSERT_TRUE(rig.bench.xfer_ok) << what << ", read " << read;
        ASSERT_EQ(dataIn(rig.bench.rcv_bfr), dataOf(read)) << what << ", read " << read;
    }
}

class LateAnswersTest : public testing::TestWithParam<LateRow> {};

// A controller works through its requests in turn: what is late holds up all that was asked behind it.
TEST_P(LateAnswersTest, OfAControllerThatAnswersInTurn) {
    const SimMemory memory = filledMemory();
    for (std::uint64_t place = 1; place <= kReads; ++place) {
        ControllerRig atOnce({.lateBy = GetParam().lateBy});
        atOnce.controller.load(memory);
        atOnce.controller.play(SimFaultPlan::at("late", place));
        expectOwnBytes(atOnce, "late at " + std::to_string(place));
        for (const milliseconds answerTime : kAnswerTimes) {
            ControllerRig rig({.turnaround = answerTime, .lateBy = GetParam().lateBy},
                              SimulatedPort::Pacing::BySettings);
            rig.controller.load(memory);
            rig.controller.play(SimFaultPlan::at("late", place));
            expectOwnBytes(rig,
                           "late at " + std::to_string(place) + " of " + std::to_string(answerTime.count()) + " ms");
            if (HasFatalFailure()) return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, LateAnswersTest, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.name; });

// The second send of each request is answered, too, and that answer is owed when the first one's has been taken.
TEST(LateAnswers, OfAControllerThatIsAlwaysLate) {
    for (const milliseconds answerTime : {1850ms, 2300ms, 3500ms}) {
        ControllerRig rig({.turnaround = answerTime}, SimulatedPort::Pacing::BySettings);
        rig.controller.load(filledMemory());
        expectOwnBytes(rig, "always " + std::to_string(answerTime.count()) + " ms");
        EXPECT_GT(rig.record.sends.size(), std::size_t{kReads}) << "none came in time";
    }
}

// The belated answer to a write says nothing of the write behind it, which may have been lost.
TEST(LateAnswers, OfOneWriteDoNotConfirmAnother) {
    constexpr std::int16_t kWritten = 50;
    for (const milliseconds answerTime : kAnswerTimes) {
        for (std::uint64_t place = 1; place + 8 <= kReads; ++place) {
            ControllerRig rig({.turnaround = answerTime, .lateBy = 1850ms - answerTime},
                              SimulatedPort::Pacing::BySettings);
            rig.controller.play(SimFaultPlan::at("late", place));
            rig.controller.play(SimFaultPlan::at("silence", place + 6));
            for (int write = 0; write < kReads; ++write) {
                int index = rig.comm.put_write_head(Section::BlockTable, kWritten, write * kWritten);
                for (int i = 0; i < kWritten; ++i) rig.comm.put_byte(index, (write * 37 + i) % 200 + 1);
                rig.comm.send_section_frame(kWritten);
                ASSERT_TRUE(rig.bench.xfer_ok) << "late at " << place << ", write " << write;
            }
            rig.comm.put_bytes({8});
            rig.comm.sum_xmit_bfr(0);
            rig.comm.send_and_get(3, 5);
            for (int write = 0; write < kReads; ++write) {
                Bytes expected;
                for (int i = 0; i < kWritten; ++i)
                    expected.push_back(static_cast<std::uint8_t>((write * 37 + i) % 200 + 1));
                ASSERT_EQ(rig.controller.committed().read(1, static_cast<std::uint32_t>(write * kWritten), kWritten),
                          expected)
                    << answerTime.count() << " ms, late at " << place << ", write " << write;
            }
        }
    }
}

// A user who cancels a silent exchange and begins anew must not get its answer for another's.
TEST(LateAnswers, OfACancelledExchangeFallIntoTheQuiet) {
    ControllerRig rig({.lateBy = 2000ms}, SimulatedPort::Pacing::BySettings);
    rig.controller.load(filledMemory());
    rig.controller.play(SimFaultPlan::at("late", 1));
    rig.pump.at(rig.clock.now() + 1000ms, [&] { rig.bench.xfer_abort = true; });
    readBlockTable(rig.comm, 0);
    EXPECT_EQ(rig.record.sends.size(), 1U);
    rig.bench.xfer_abort = false;
    readBlockTable(rig.comm, 1);
    EXPECT_TRUE(rig.bench.xfer_ok);
    EXPECT_EQ(dataIn(rig.bench.rcv_bfr), dataOf(1));
}

// An answer that is late by itself, as one held back in a radio link, comes out of turn. Up to 2.4 s behind the answer
// that was taken it falls into the quiet.
TEST(LateAnswers, OutOfTurnFallIntoTheQuiet) {
    for (const milliseconds lateBy : {1700ms, 1850ms, 2000ms, 2300ms, 3600ms, 4200ms}) {
        for (int place = 0; place < kReads; ++place) {
            LineRig rig;
            rig.opened();
            bool wasLate = false;
            rig.line.onWrite = [&](const Bytes& frame) {
                if (frame.size() != 7) return;
                const int read = (frame[3] * 256 + frame[4]) / kCount;
                Bytes reply{9, 8, 7, 6, 5};
                const Bytes data = dataOf(read);
                reply.insert(reply.end(), data.begin(), data.end());
                const bool isLate = read == place && !wasLate;
                wasLate = wasLate || isLate;
                rig.line.send(sealed(reply), isLate ? lateBy : 45ms);
            };
            for (int read = 0; read < kReads; ++read) {
                readBlockTable(rig.comm, read);
                ASSERT_TRUE(rig.bench.xfer_ok);
                ASSERT_EQ(dataIn(rig.bench.rcv_bfr), dataOf(read)) << lateBy.count() << " ms late at " << place;
            }
        }
    }
}

// What nothing on this line can catch: the answers to four sends in one lump, each of them sound, whose bytes add up to
// more than a 16-bit sum holds.
TEST(LateAnswers, InOneLumpOfLargeBytesOverflowTheSum) {
    ControllerRig rig({.lateBy = 6000ms});
    SimMemory memory;
    memory.write(1, 0, Bytes(kCount, 60));
    rig.controller.load(memory);
    readBlockTable(rig.comm, 0);
    ASSERT_TRUE(rig.bench.xfer_ok);
    rig.controller.play(SimFaultPlan::at("late", 1));
    try {
        readBlockTable(rig.comm, 0);
        FAIL() << "no error was raised";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number(), ErrorNumber::Overflow);
    }
    EXPECT_FALSE(rig.bench.xfer_ok);
    EXPECT_EQ(rig.record.verdicts.back(), Verdict::Overflow);
    EXPECT_EQ(rig.record.lastAttempt, 4);
}

}  // namespace
}  // namespace qrv::test
