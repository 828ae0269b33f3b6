#include "platform/posix/PollPump.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "FarEnd.h"
#include "platform/posix/PosixSerialPort.h"

namespace qrv::test {
namespace {

using std::chrono::milliseconds;
constexpr std::chrono::hours kLong{1};

TEST(PollPump, SleepsToItsDeadlineAndNoLess) {
    const SystemClock clock;
    PollPump pump(clock);
    const auto deadline = clock.now() + milliseconds(20);
    pump.pumpUntil(deadline, nullptr);
    EXPECT_GE(clock.now(), deadline);
}

TEST(PollPump, ADeadlineThatHasPassedEndsAtOnce) {
    const SystemClock clock;
    PollPump pump(clock);
    pump.pumpUntil(clock.now() - kLong, nullptr);
}

TEST(PollPump, BytesEndAWait) {
    const SystemClock clock;
    PollPump pump(clock);
    const FarEnd device;
    PosixSerialPort port([&](std::int16_t) { return device.path(); });
    ASSERT_TRUE(port.open(1, "38400,O,8, 1"));
    std::thread sender([&] {
        std::this_thread::sleep_for(milliseconds(20));
        device.send({7});
    });
    pump.pumpUntil(clock.now() + kLong, &port);
    sender.join();
    EXPECT_EQ(port.readAll(), std::vector<std::uint8_t>{7});
}

TEST(PollPump, AHangUpEndsAWait) {
    const SystemClock clock;
    PollPump pump(clock);
    FarEnd device;
    PosixSerialPort port([&](std::int16_t) { return device.path(); });
    ASSERT_TRUE(port.open(1, "38400,O,8, 1"));
    device.hangUp();
    pump.pumpUntil(clock.now() + kLong, &port);
    EXPECT_EQ(port.waitingCount(), 0U);
    EXPECT_EQ(port.fault(), SerialFault::Unplugged);
}

TEST(PollPump, ASignalEndsAWaitAndIsToldWithinIt) {
    const SystemClock clock;
    PollPump pump(clock);
    std::vector<int> told;
    pump.catchSignals({SIGUSR1}, [&](int signal) { told.push_back(signal); });
    std::thread sender([] {
        std::this_thread::sleep_for(milliseconds(20));
        ::kill(::getpid(), SIGUSR1);
    });
    pump.pumpUntil(clock.now() + kLong, nullptr);
    sender.join();
    EXPECT_EQ(told, std::vector<int>{SIGUSR1});
}

TEST(PollPump, ASignalThatCameBeforeIsNotSleptOver) {
    const SystemClock clock;
    PollPump pump(clock);
    std::vector<int> told;
    pump.catchSignals({SIGUSR1, SIGUSR2}, [&](int signal) { told.push_back(signal); });
    ::raise(SIGUSR2);
    pump.pumpUntil(clock.now() + kLong, nullptr);
    EXPECT_EQ(told, std::vector<int>{SIGUSR2});
    ::raise(SIGUSR1);
    pump.pump();
    EXPECT_EQ(told, (std::vector<int>{SIGUSR2, SIGUSR1}));
}

TEST(PollPump, AHangUpOfTheTerminalThatIsIgnoredStaysIgnored) {
    const auto former = std::signal(SIGHUP, SIG_IGN);
    const SystemClock clock;
    std::vector<int> told;
    PollPump pump(clock);
    pump.catchSignals({SIGHUP, SIGUSR1}, [&](int signal) { told.push_back(signal); });
    ::raise(SIGHUP);
    ::raise(SIGUSR1);
    pump.pump();
    std::signal(SIGHUP, former);
    EXPECT_EQ(told, std::vector<int>{SIGUSR1});
}

TEST(PollPump, GivesTheSignalsBack) {
    struct sigaction before {};
    ::sigaction(SIGUSR1, nullptr, &before);
    const SystemClock clock;
    for (int round = 0; round < 2; ++round) {
        PollPump pump(clock);
        pump.catchSignals({SIGUSR1}, [](int) {});
    }
    struct sigaction after {};
    ::sigaction(SIGUSR1, nullptr, &after);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
}

}  // namespace
}  // namespace qrv::test
