// One exchange with a controller: a frame out, its reply in, repeated on silence and on a bad checksum. The only retry
// loop of the program; everything that talks to a controller comes through here.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "link/TickTimer.h"
#include "platform/Clock.h"

namespace qrv {

class EventPump;
class LinkObserver;
class SerialPort;

/// How the attempts of a transaction ended. Aborted: the reply was bad, and the transfer is to stop; that counts as
/// finished. TurnedAway: another transaction was under way, and nothing was sent.
enum class Ending { Good, Aborted, Failed, TurnedAway };

/// What a transaction is about.
struct Exchange {
    std::span<const std::uint8_t> frame;  ///< whole, checksum included
    std::size_t replyLength = 0;          ///< bytes that end the wait, checksum included
    std::vector<std::uint8_t>& reply;     ///< takes exactly what arrived in the last attempt
    const bool& aborted;                  ///< read after each attempt that failed
};

class Transaction {
 public:
    // What the controller's line asks for.
    static constexpr std::int16_t kMostSends = 10;
    static constexpr std::chrono::milliseconds kTick{600};
    static constexpr std::size_t kFillerLength = 1025;
    static constexpr std::chrono::milliseconds kResynchronisingSleep{2000};
    /// How long no byte may come directly before a frame, where answers to earlier ones are owed ...
    static constexpr std::chrono::milliseconds kQuiet{600};
    /// ... and how long behind the last of what came: the whole time that an answer may take lies before that.
    static constexpr std::chrono::milliseconds kQuietBehindAnAnswer = TickTimer::kTicksToTimeOut * kTick + kQuiet;

    Transaction(SerialPort& port, EventPump& pump, Clock& clock) : port_(port), pump_(pump), clock_(clock) {}

    /// Sends the frame, and again on silence or a bad reply, 10 sends in all. Pumps events while it waits; a call from
    /// within such an event is turned away. Raises RunTimeError where the port isn't open or a reply's sum overflows.
    Ending run(const Exchange& exchange);

    /// Pumps events until the timer's third tick. Ends at once if the last attempt's time was up.
    void pumpUntilTimedOut(Clock::Milliseconds interval);

    [[nodiscard]] bool isRunning() const { return running_; }
    /// Attempts of the last transaction that failed.
    [[nodiscard]] std::int16_t retryCount() const { return retryCount_; }
    /// Whether the last transaction's frame went out at all: a Cancel may have come before.
    [[nodiscard]] bool frameLeft() const { return frameLeft_; }
    [[nodiscard]] const TickTimer& timer() const { return timer_; }
    /// `observer` may be null.
    void observe(LinkObserver* observer) { observer_ = observer; }

 private:
    class RunningMark;

    Ending attemptAll(const Exchange& exchange);
    bool attempt(const Exchange& exchange);
    void dropInput();
    void awaitReply(std::size_t replyLength);
    void resynchronise();
    bool waitForQuiet(const bool& aborted);

    SerialPort& port_;
    EventPump& pump_;
    Clock& clock_;
    LinkObserver* observer_ = nullptr;
    TickTimer timer_;
    std::int16_t retryCount_ = 0;
    bool running_ = false;
    bool frameLeft_ = false;
    std::int16_t lateReplies_ = 0;  ///< that may still come: one for each send since the line was quiet that timed out
    Clock::TimePoint lastOnTheLine_;  ///< the last send, or its answer if one came
};

}  // namespace qrv
