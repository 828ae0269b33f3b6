// Frames carry no number and a reply doesn't say what it answers: an answer that comes after its time-out must not be
// taken for that of the next read. A chain of 47 reads, one answer late at every place of it.
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

class LateAnswersTest : public testing::TestWithParam<LateRow> {};

// A controller works through its requests in turn: what is late holds up all that was asked behind it.
TEST_P(LateAnswersTest, OfAControllerThatAnswersInTurn) {
    const SimMemory memory = filledMemory();
    for (const auto pacing : {SimulatedPort::Pacing::None, SimulatedPort::Pacing::BySettings}) {
        for (std::uint64_t place = 1; place <= kReads; ++place) {
            ControllerRig rig({.lateBy = GetParam().lateBy}, pacing);
            rig.controller.load(memory);
            rig.controller.play(SimFaultPlan::at("late", place));
            for (int read = 0; read < kReads; ++read) {
                readBlockTable(rig.comm, read);
                ASSERT_TRUE(rig.bench.xfer_ok) << "late at " << place << ", read " << read;
                ASSERT_EQ(dataIn(rig.bench.rcv_bfr), dataOf(read)) << "late at " << place << ", read " << read;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, LateAnswersTest, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.name; });

// An answer that is late by itself, as one held back in a radio link, comes out of turn. Up to 0.6 s behind the second
// send it falls into the quiet.
TEST(LateAnswers, OutOfTurnFallIntoTheQuiet) {
    for (const milliseconds lateBy : {1700ms, 1850ms, 2000ms, 2300ms}) {
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
