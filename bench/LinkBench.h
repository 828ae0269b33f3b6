// Transactions over a pseudo-terminal against the least that a program can do on the same pair: write, poll, read.
// Shared by the programs that measure it with the terminal's pump and with the desktop's.
#pragma once

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "Measure.h"
#include "link/LiveController.h"
#include "link/Transaction.h"
#include "platform/EventPump.h"
#include "platform/posix/PosixSerialPort.h"
#include "platform/posix/PseudoTerminal.h"

namespace qrv {

inline constexpr int kExchangesPerRound = 500;
inline constexpr std::array<std::uint8_t, 3> kPoll{0x01, 0xFF, 0xFE};
inline constexpr std::array<std::uint8_t, 5> kPollReply{0x10, 0x00, 0x00, 0xFF, 0xEF};

/// CPU time of this thread.
inline double threadSeconds() {
    timespec used{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

/// Prints what share of a core the action took. False where it is above `atMost`.
inline bool measureShare(const char* what, const std::function<void()>& action, double atMost) {
    const double before = threadSeconds();
    const double elapsed = secondsOf(action);
    const double share = (threadSeconds() - before) / elapsed;
    std::printf("%s: %.2f %% of a core over %.1f s (at most %.1f %%)%s\n", what, share * 100, elapsed, atMost * 100,
                share > atMost ? "  OVER" : "");
    std::fflush(stdout);
    return share <= atMost;
}

/// A far end that answers every so many bytes with the same reply, as fast as it can; a poll as a controller does.
class Answerer {
 public:
    Answerer() : thread_([this] { serve(); }) {}
    ~Answerer() {
        const std::uint64_t one = 1;
        static_cast<void>(::write(stop_, &one, sizeof one));
        thread_.join();
        ::close(stop_);
    }
    Answerer(const Answerer&) = delete;
    Answerer& operator=(const Answerer&) = delete;

    [[nodiscard]] const std::string& path() const { return terminal_.path(); }
    /// Only while no exchange is under way.
    void answer(std::size_t requestLength, std::vector<std::uint8_t> reply) {
        reply_ = std::move(reply);
        requestLength_ = requestLength;
    }

 private:
    void serve() {
        std::array<pollfd, 2> wanted{pollfd{.fd = stop_, .events = POLLIN, .revents = 0},
                                     pollfd{.fd = terminal_.descriptor(), .events = POLLIN, .revents = 0}};
        std::array<std::uint8_t, 512> request;
        std::size_t got = 0;
        while (true) {
            ::poll(wanted.data(), wanted.size(), -1);
            if (wanted[0].revents != 0) return;
            const auto count = ::read(terminal_.descriptor(), request.data() + got, request.size() - got);
            if (count > 0) got += static_cast<std::size_t>(count);
            const bool isPoll = std::ranges::equal(std::span(request).first(got), kPoll);
            if (got < requestLength_ && !isPoll) continue;
            got = 0;
            const std::span<const std::uint8_t> reply{isPoll ? kPollReply.data() : reply_.data(),
                                                      isPoll ? kPollReply.size() : reply_.size()};
            if (::write(terminal_.descriptor(), reply.data(), reply.size()) < 0) return;
        }
    }

    PseudoTerminal terminal_;
    int stop_ = ::eventfd(0, EFD_CLOEXEC);
    std::size_t requestLength_ = 3;
    std::vector<std::uint8_t> reply_;
    std::thread thread_;
};

struct ExchangeSize {
    std::size_t request;
    std::size_t reply;
};
inline constexpr std::array kExchangeSizes{ExchangeSize{5, 5}, ExchangeSize{135, 5}, ExchangeSize{7, 157}};

/// Bytes with a good checksum.
inline std::vector<std::uint8_t> frameOf(std::size_t length) {
    std::vector<std::uint8_t> frame(length, 1);
    const auto sum = static_cast<unsigned>(length - 2);
    frame[length - 2] = static_cast<std::uint8_t>(~(sum >> 8) & 0xFF);
    frame[length - 1] = static_cast<std::uint8_t>(~sum & 0xFF);
    return frame;
}

/// Write, poll, read until the reply is there.
inline void rawExchange(int descriptor, const std::vector<std::uint8_t>& frame, std::size_t replyLength) {
    std::array<std::uint8_t, 512> chunk;
    if (::write(descriptor, frame.data(), frame.size()) < 0) std::abort();
    for (std::size_t got = 0; got < replyLength;) {
        pollfd wanted{.fd = descriptor, .events = POLLIN, .revents = 0};
        if (::poll(&wanted, 1, 1800) <= 0) std::abort();
        const auto count = ::read(descriptor, chunk.data(), chunk.size());
        if (count > 0) got += static_cast<std::size_t>(count);
    }
}

inline std::string nameOf(const char* what, const ExchangeSize& size) {
    return std::string(what) + ", " + std::to_string(size.request) + "/" + std::to_string(size.reply) + " bytes";
}

/// One row for each size. False where a ratio is above `atMost`.
inline bool compareWithRawLoop(const char* what, EventPump& pump, double atMost) {
    Answerer answerer;
    SystemClock clock;
    PosixSerialPort port([&](std::int16_t) { return answerer.path(); });
    if (!port.open(1, "38400,O,8, 1")) std::abort();
    Transaction transaction(port, pump, clock);
    const bool aborted = false;
    std::vector<std::uint8_t> reply;
    bool isWithin = true;
    for (const ExchangeSize& size : kExchangeSizes) {
        const auto frame = frameOf(size.request);
        answerer.answer(size.request, frameOf(size.reply));
        const auto ours = [&] {
            for (int i = 0; i < kExchangesPerRound; ++i) {
                const Ending ending =
                    transaction.run({.frame = frame, .replyLength = size.reply, .reply = reply, .aborted = aborted});
                if (ending != Ending::Good || transaction.retryCount() != 0) std::abort();
            }
        };
        const auto theirs = [&] {
            for (int i = 0; i < kExchangesPerRound; ++i) rawExchange(port.descriptor(), frame, size.reply);
        };
        isWithin = compare(nameOf(what, size), ours, "write, poll, read", theirs, atMost) <= atMost && isWithin;
    }
    return isWithin;
}

/// CPU time of this thread, as a share of all time, while it reads a block table over a line of 38400 baud.
inline bool measureWaiting(const char* what, EventPump& pump, double atMost) {
    test::LiveController live;
    live.controller.setPace(SimPace{});
    live.start();
    SystemClock clock;
    PosixSerialPort port([&](std::int16_t) { return live.path(); });
    if (!port.open(1, "38400,O,8, 1")) std::abort();
    Transaction transaction(port, pump, clock);
    constexpr int kReads = 47;
    const bool aborted = false;
    std::vector<std::uint8_t> reply;
    const std::vector<std::uint8_t> read{0x04, 0x04, 0x96, 0x00, 0x00, 0xFF, 0x61};
    const auto readAll = [&] {
        for (int i = 0; i < kReads; ++i) {
            if (transaction.run({.frame = read, .replyLength = 157, .reply = reply, .aborted = aborted}) !=
                Ending::Good)
                std::abort();
        }
    };
    return measureShare(what, readAll, atMost);
}

/// The same while a poll is answered by the line's going away, to the end of the ten attempts.
inline bool measureVanished(const char* what, EventPump& pump, double atMost) {
    test::LiveController live;
    live.controller.play(SimFaultPlan::always("hang-up"));
    live.start();
    SystemClock clock;
    PosixSerialPort port([&](std::int16_t) { return live.path(); });
    if (!port.open(1, "38400,O,8, 1")) std::abort();
    Transaction transaction(port, pump, clock);
    const bool aborted = false;
    std::vector<std::uint8_t> reply;
    const auto poll = [&] {
        if (transaction.run({.frame = kPoll, .replyLength = 5, .reply = reply, .aborted = aborted}) != Ending::Failed ||
            port.fault() != SerialFault::Unplugged)
            std::abort();
    };
    return measureShare(what, poll, atMost);
}

}  // namespace qrv
