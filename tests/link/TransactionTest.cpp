// The retry loop, attempt by attempt, on a line that the test plays.
#include "link/Transaction.h"

#include <gtest/gtest.h>

#include "LinkRig.h"

namespace qrv::test {
namespace {

using namespace std::chrono_literals;

const Bytes kPollFrame{0x01, 0xFF, 0xFE};
const Bytes kGoodReply{0x10, 0x00, 0x00, 0xFF, 0xEF};
const Bytes kBadReply{0x10, 0x00, 0x00, 0xFF, 0xEE};

struct TransactionRig {
    FalseClock clock;
    FalsePump pump{clock};
    ScriptedLine line{clock};
    LineRecord record{clock};
    Transaction transaction{line, pump, clock};
    Bytes reply;
    bool aborted = false;

    TransactionRig() {
        pump.nextArrival = [this] { return line.nextArrival(); };
        transaction.observe(&record);
        line.open(1, "");
    }
    Ending run(const Bytes& frame = kPollFrame, std::size_t replyLength = 5) {
        return transaction.run({.frame = frame, .replyLength = replyLength, .reply = reply, .aborted = aborted});
    }
    void answerAll(const Bytes& bytes, milliseconds delay = 0ms) {
        line.onWrite = [this, bytes, delay](const Bytes&) { line.send(bytes, delay); };
    }
    /// Answers the sends in turn; an empty answer is silence.
    void answerInTurn(std::vector<Bytes> answers) {
        line.onWrite = [this, answers, next = std::size_t{0}](const Bytes& frame) mutable {
            if (frame == kPollFrame && next < answers.size()) line.send(answers[next++]);
        };
    }
};

TEST(Transaction, AGoodReplyTakesOneSend) {
    TransactionRig rig;
    rig.answerAll(kGoodReply);
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.record.sends, std::vector<Bytes>{kPollFrame});
    EXPECT_EQ(rig.reply, kGoodReply);
    EXPECT_EQ(rig.transaction.retryCount(), 0);
    EXPECT_EQ(rig.clock.elapsed(), 0ms);
}

TEST(Transaction, SilenceCostsTenSendsAndNoFiller) {
    TransactionRig rig;
    EXPECT_EQ(rig.run(), Ending::Failed);
    EXPECT_EQ(rig.record.sentAt, (std::vector<milliseconds>{0ms, 1800ms, 3600ms, 5400ms, 7200ms, 9000ms, 10800ms,
                                                            12600ms, 14400ms, 16200ms}));
    EXPECT_EQ(rig.clock.elapsed(), 18000ms);
    EXPECT_EQ(rig.line.writes.size(), 10U);
    EXPECT_TRUE(rig.clock.sleeps.empty());
    EXPECT_TRUE(rig.transaction.timer().timedOut());
    EXPECT_EQ(rig.transaction.timer().ticks(), 3);
    EXPECT_EQ(rig.transaction.retryCount(), 10);
    EXPECT_TRUE(rig.reply.empty());
}

TEST(Transaction, GarbageDrawsFillerAndASleepAfterAllSendsButTheLast) {
    TransactionRig rig;
    rig.line.onWrite = [&](const Bytes& frame) {
        if (frame == kPollFrame) rig.line.send(kBadReply);
    };
    EXPECT_EQ(rig.run(), Ending::Failed);
    EXPECT_EQ(rig.record.sends.size(), 10U);
    EXPECT_EQ(rig.record.fillers, std::vector<Bytes>(9, Bytes(1025, 0)));
    EXPECT_EQ(rig.clock.sleeps, std::vector<milliseconds>(9, 2000ms));
    EXPECT_EQ(rig.clock.elapsed(), 18000ms);
    ASSERT_EQ(rig.line.writes.size(), 19U);
    for (std::size_t i = 0; i < rig.line.writes.size(); ++i) {
        EXPECT_EQ(rig.line.writes[i].bytes, i % 2 == 0 ? kPollFrame : Bytes(1025, 0));
    }
    EXPECT_EQ(rig.reply, kBadReply);
}

TEST(Transaction, AReplyMayTakeUntilTheThirdTick) {
    TransactionRig rig;
    rig.answerAll(kGoodReply, 1799ms);
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.record.sends.size(), 1U);
    EXPECT_EQ(rig.clock.elapsed(), 1799ms);
}

TEST(Transaction, TheWholeReplyHasOneDeadline) {
    TransactionRig rig;
    rig.line.onWrite = [&](const Bytes&) {
        for (std::size_t i = 0; i < kGoodReply.size(); ++i) {
            rig.line.send({kGoodReply[i]}, static_cast<int>(i + 1) * 400ms);  // the last byte 2 s after the send
        }
    };
    rig.aborted = true;
    EXPECT_EQ(rig.run(), Ending::Aborted);
    EXPECT_EQ(rig.reply, (Bytes{0x10, 0x00, 0x00, 0xFF}));
    EXPECT_EQ(rig.clock.elapsed(), 1800ms);
}

TEST(Transaction, AShortReplyWhoseLastBytesMatchPasses) {
    TransactionRig rig;
    rig.answerAll({0x05, 0xFF, 0xFA});
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.clock.elapsed(), 1800ms);
    EXPECT_EQ(rig.reply, (Bytes{0x05, 0xFF, 0xFA}));
    EXPECT_EQ(rig.transaction.retryCount(), 0);
}

TEST(Transaction, ASurplusByteFailsTheReplyAndTheFrameGoesOutAgain) {
    TransactionRig rig;
    Bytes surplus = kGoodReply;
    surplus.push_back(0x00);
    rig.answerInTurn({surplus, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.record.sends, std::vector<Bytes>(2, kPollFrame));
    EXPECT_EQ(rig.record.fillers.size(), 1U);
    EXPECT_EQ(rig.clock.elapsed(), 2000ms);
    EXPECT_EQ(rig.transaction.retryCount(), 1);
}

TEST(Transaction, BytesThatWaitAreDroppedBeforeEachSend) {
    TransactionRig rig;
    rig.line.send({1, 2, 3});
    rig.answerInTurn({{}, kGoodReply});
    rig.line.send({9, 9}, 1500ms);
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.reply, kGoodReply);
}

TEST(Transaction, WhatIsDroppedIsSeen) {
    TransactionRig rig;
    rig.line.send({1, 2, 3});
    rig.line.send({9, 9}, 1500ms);
    rig.answerInTurn({Bytes(6, 0), kGoodReply, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.record.drops, (std::vector<Bytes>{{1, 2, 3}, {9, 9}}));
}

TEST(Transaction, WhatIsDroppedWhileTheLineFallsQuietIsSeen) {
    TransactionRig rig;
    rig.answerInTurn({{}, kGoodReply, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Good);
    rig.line.send({7});
    rig.line.send({1, 2, 3}, 400ms);
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.record.drops, (std::vector<Bytes>{{7}, {1, 2, 3}}));
}

TEST(Transaction, AnAbortEndsTheAttemptsAfterTheCurrentOne) {
    TransactionRig rig;
    rig.pump.at(rig.clock.now() + 700ms, [&] { rig.aborted = true; });
    EXPECT_EQ(rig.run(), Ending::Aborted);
    EXPECT_EQ(rig.record.sends.size(), 1U);
    EXPECT_EQ(rig.clock.elapsed(), 1800ms);
    EXPECT_EQ(rig.transaction.retryCount(), 0);
}

TEST(Transaction, AnAbortDoesNotSpoilAGoodReply) {
    TransactionRig rig;
    rig.aborted = true;
    rig.answerAll(kGoodReply);
    EXPECT_EQ(rig.run(), Ending::Good);
}

TEST(Transaction, AnAbortWithABadReplyDrawsNoFiller) {
    TransactionRig rig;
    rig.aborted = true;
    rig.answerAll(kBadReply);
    EXPECT_EQ(rig.run(), Ending::Aborted);
    EXPECT_EQ(rig.line.writes.size(), 1U);
    EXPECT_TRUE(rig.clock.sleeps.empty());
}

TEST(Transaction, TheFrameStaysTheSameThroughAllSends) {
    TransactionRig rig;
    const Bytes frame(135, 7);
    EXPECT_EQ(rig.run(frame), Ending::Failed);
    EXPECT_EQ(rig.record.sends, std::vector<Bytes>(10, frame));
    EXPECT_EQ(rig.record.lastAttempt, 10);
}

TEST(Transaction, ASecondOneIsTurnedAway) {
    TransactionRig rig;
    std::vector<Ending> inner;
    Bytes innerReply{1, 2, 3};
    rig.pump.at(rig.clock.now() + 100ms, [&] {
        EXPECT_TRUE(rig.transaction.isRunning());
        inner.push_back(rig.transaction.run(
            {.frame = Bytes{9, 9, 9}, .replyLength = 5, .reply = innerReply, .aborted = rig.aborted}));
    });
    rig.answerAll(kGoodReply, 200ms);
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(inner, std::vector<Ending>{Ending::TurnedAway});
    EXPECT_EQ(innerReply, (Bytes{1, 2, 3}));
    EXPECT_EQ(rig.record.sends, std::vector<Bytes>{kPollFrame});
    EXPECT_FALSE(rig.transaction.isRunning());
}

TEST(Transaction, AnOverflowInAReplyIsNotRetried) {
    TransactionRig rig;
    rig.answerAll(Bytes(157, 0xFF));
    EXPECT_THROW(rig.run(kPollFrame, 157), RunTimeError);
    EXPECT_EQ(rig.record.sends.size(), 1U);
    EXPECT_EQ(rig.record.verdicts, std::vector<Verdict>{Verdict::Overflow});
    EXPECT_EQ(rig.reply, Bytes(157, 0xFF));
    EXPECT_FALSE(rig.transaction.isRunning());
}

TEST(Transaction, APortThatIsNotOpenIsAFailureAtOnce) {
    TransactionRig rig;
    rig.line.close();
    EXPECT_THROW(rig.run(), RunTimeError);
    EXPECT_EQ(rig.clock.elapsed(), 0ms);
    EXPECT_FALSE(rig.transaction.isRunning());
}

// --- the quiet line after a send that timed out ---

TEST(Transaction, AfterATimeOutTheNextOneWaitsForQuiet) {
    TransactionRig rig;
    rig.answerInTurn({{}, kGoodReply, kGoodReply, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.clock.elapsed(), 1800ms);
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.clock.elapsed(), 1800ms + 2400ms) << "the answer to the first send may still come";
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.clock.elapsed(), 1800ms + 2400ms);
}

TEST(Transaction, AfterABadReplyTheNextOneDoesNotWait) {
    TransactionRig rig;
    rig.answerInTurn({kBadReply, kGoodReply, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.clock.elapsed(), 2000ms);
}

TEST(Transaction, BytesLengthenTheQuietAndAreDropped) {
    TransactionRig rig;
    rig.answerInTurn({{}, {}, kGoodReply, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Good);
    rig.line.send({1, 2, 3}, 400ms);
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.clock.elapsed(), 3600ms + 400ms + 2400ms);
    EXPECT_EQ(rig.reply, kGoodReply);
}

TEST(Transaction, TheTimeSinceTheLastAnswerCountsAsQuiet) {
    TransactionRig rig;
    rig.answerInTurn({{}, kGoodReply, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Good);
    rig.clock.advanceTo(rig.clock.now() + 1500ms);
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.clock.elapsed(), 1800ms + 2400ms);
}

TEST(Transaction, ALineThatIsNeverQuietHoldsUpForAsLongAsTheAnswersMayTake) {
    TransactionRig rig;
    rig.answerInTurn({{}, {}, kGoodReply, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Good);
    for (int i = 1; i <= 100; ++i) rig.line.send({0x55}, i * 100ms);
    rig.aborted = true;
    static_cast<void>(rig.run());
    EXPECT_EQ(rig.record.sentAt.at(3), 3600ms + 2 * 2400ms);
}

TEST(Transaction, TheLineFallsQuietBehindALastSendThatWasNotAnsweredEither) {
    TransactionRig rig;
    const Bytes bad{1, 2, 3, 4, 5};
    rig.answerInTurn({bad, bad, bad, bad, bad, bad, bad, bad, bad, {}, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Failed);
    const auto before = rig.clock.elapsed();
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.record.sentAt.at(10), before + 600ms);
}

TEST(Transaction, AFrameThatACancelKeptBackHasNotLeft) {
    TransactionRig rig;
    rig.answerInTurn({{}, kGoodReply, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_TRUE(rig.transaction.frameLeft());
    rig.pump.at(rig.clock.now() + 300ms, [&] { rig.aborted = true; });
    EXPECT_EQ(rig.run(), Ending::Aborted);
    EXPECT_FALSE(rig.transaction.frameLeft());
    EXPECT_EQ(rig.clock.elapsed(), 1800ms + 300ms) << "nobody waits for the rest of it";
    rig.aborted = false;
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(rig.clock.elapsed(), 1800ms + 2400ms) << "the late answer may come all the same";
}

TEST(Transaction, EventsArePumpedWhileTheLineFallsQuiet) {
    TransactionRig rig;
    rig.answerInTurn({{}, kGoodReply, kGoodReply});
    EXPECT_EQ(rig.run(), Ending::Good);
    std::vector<Ending> inner;
    rig.pump.at(rig.clock.now() + 100ms, [&] { inner.push_back(rig.run()); });
    EXPECT_EQ(rig.run(), Ending::Good);
    EXPECT_EQ(inner, std::vector<Ending>{Ending::TurnedAway});
}

// --- the timer outside a transaction ---

TEST(Transaction, TheTimerCanBeWaitedOnWithAnotherInterval) {
    TransactionRig rig;
    rig.answerAll(kGoodReply);
    EXPECT_EQ(rig.run(), Ending::Good);
    rig.transaction.pumpUntilTimedOut(333ms);
    EXPECT_EQ(rig.clock.elapsed(), 999ms);
    EXPECT_EQ(rig.transaction.timer().ticks(), 3);
}

TEST(Transaction, AfterATimeOutThatWaitIsNil) {
    TransactionRig rig;
    EXPECT_EQ(rig.run(), Ending::Failed);
    const auto before = rig.clock.elapsed();
    rig.transaction.pumpUntilTimedOut(333ms);
    EXPECT_EQ(rig.clock.elapsed(), before);
}

}  // namespace
}  // namespace qrv::test
