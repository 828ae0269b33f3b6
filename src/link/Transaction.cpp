#include "link/Transaction.h"

#include <algorithm>
#include <array>

#include "link/Frame.h"
#include "link/LinkObserver.h"
#include "platform/EventPump.h"
#include "platform/SerialPort.h"

namespace qrv {

namespace {

Verdict verdictOf(std::span<const std::uint8_t> reply) {
    if (reply.empty()) return Verdict::Silent;
    if (overflows(reply)) return Verdict::Overflow;
    return isSound(reply) ? Verdict::Good : Verdict::BadChecksum;
}

}  // namespace

class Transaction::RunningMark {
 public:
    explicit RunningMark(Transaction& owner) : owner_(owner) { owner_.running_ = true; }
    ~RunningMark() {
        owner_.timer_.stop();
        owner_.running_ = false;
    }
    RunningMark(const RunningMark&) = delete;
    RunningMark& operator=(const RunningMark&) = delete;

 private:
    Transaction& owner_;
};

Ending Transaction::run(const Exchange& exchange) {
    if (running_) return Ending::TurnedAway;
    const RunningMark mark(*this);
    retryCount_ = 0;
    frameLeft_ = false;
    if (lateReplies_ > 0 && !waitForQuiet(exchange.aborted)) {
        exchange.reply.clear();
        return Ending::Aborted;
    }
    return attemptAll(exchange);
}

Ending Transaction::attemptAll(const Exchange& exchange) {
    while (true) {
        if (attempt(exchange)) return Ending::Good;
        // The next frame, be it this one again, goes out while the answer to this send may still be on its way.
        if (timer_.timedOut()) ++lateReplies_;
        if (exchange.aborted) return Ending::Aborted;
        if (++retryCount_ == kMostSends) return Ending::Failed;
        if (!timer_.timedOut()) {
            const bool wasAborted = exchange.aborted;
            resynchronise();
            // So long a sleep has events behind it, and a Cancel among them comes before the next attempt.
            pump_.pump();
            if (exchange.aborted && !wasAborted) return Ending::Aborted;
        }
    }
}

bool Transaction::attempt(const Exchange& exchange) {
    dropInput();
    timer_.clearTimedOut();
    lastOnTheLine_ = clock_.now();
    timer_.start(kTick, lastOnTheLine_);
    frameLeft_ = true;
    port_.write(exchange.frame);
    if (observer_ != nullptr) observer_->sent(exchange.frame, retryCount_ + 1);
    awaitReply(exchange.replyLength);
    timer_.stop();
    exchange.reply = port_.readAll();
    if (!exchange.reply.empty()) lastOnTheLine_ = clock_.now();
    if (observer_ != nullptr) observer_->received(exchange.reply, verdictOf(exchange.reply));
    return isSound(exchange.reply);
}

/// An observer is told what is dropped, as far as the program has it in hand.
void Transaction::dropInput() {
    if (observer_ != nullptr) {
        const auto waiting = port_.readAll();
        if (!waiting.empty()) observer_->discarded(waiting);
    }
    port_.discardInput();
}

void Transaction::awaitReply(std::size_t replyLength) {
    pump_.pump();
    timer_.look(clock_.now());
    while (port_.waitingCount() < replyLength && !timer_.timedOut()) {
        pump_.pumpUntil(timer_.timeOut(), &port_);
        timer_.look(clock_.now());
    }
}

void Transaction::resynchronise() {
    static constexpr std::array<std::uint8_t, kFillerLength> kFiller{};
    port_.write(kFiller);
    if (observer_ != nullptr) observer_->resynchronised(kFiller);
    clock_.sleep(kResynchronisingSleep);
}

/// A frame carries no number and a reply doesn't say what it answers: a reply to the former transaction that comes now
/// would be taken for this one's. A controller works off its requests in turn, so that each of the replies that are
/// owed has an answer's whole time behind the one before it; a line that never falls quiet is given no more than that.
/// False where a Cancel came meanwhile: the frame must not go out any more, and the next one waits anew.
bool Transaction::waitForQuiet(const bool& aborted) {
    const bool wasAborted = aborted;
    const auto began = clock_.now();
    const auto end = began + lateReplies_ * kQuietBehindAnAnswer;
    auto quietAt = std::max(began + kQuiet, lastOnTheLine_ + kQuietBehindAnAnswer);
    if (port_.waitingCount() > 0) quietAt = began + kQuietBehindAnAnswer;
    dropInput();
    while (clock_.now() < std::min(quietAt, end)) {
        pump_.pumpUntil(std::min(quietAt, end), &port_);
        if (aborted && !wasAborted) return false;
        if (port_.waitingCount() == 0) continue;
        dropInput();
        quietAt = clock_.now() + kQuietBehindAnAnswer;
    }
    lateReplies_ = 0;
    return true;
}

void Transaction::pumpUntilTimedOut(Clock::Milliseconds interval) {
    timer_.start(interval, clock_.now());
    while (!timer_.timedOut()) {
        pump_.pumpUntil(timer_.timeOut(), nullptr);
        timer_.look(clock_.now());
    }
    timer_.stop();
}

}  // namespace qrv
