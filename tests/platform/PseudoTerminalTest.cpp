#include "platform/posix/PseudoTerminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>

namespace qrv {

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Another program with the device open.
class User {
 public:
    explicit User(const std::string& path) : descriptor_(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK)) {}
    ~User() { ::close(descriptor_); }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    [[nodiscard]] int descriptor() const { return descriptor_; }
    [[nodiscard]] termios line() const {
        termios line{};
        ::tcgetattr(descriptor_, &line);
        return line;
    }
    [[nodiscard]] bool send(const Bytes& bytes) const {
        return ::write(descriptor_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }
    /// What waits, as soon as anything does.
    [[nodiscard]] Bytes received() const {
        awaitInput(descriptor_);
        std::array<std::uint8_t, 512> chunk{};
        const auto got = ::read(descriptor_, chunk.data(), chunk.size());
        return got > 0 ? Bytes(chunk.begin(), chunk.begin() + got) : Bytes{};
    }

    static void awaitInput(int descriptor) { (void)isReadable(descriptor, 5000); }

 private:
    static bool isReadable(int descriptor, int milliseconds) {
        pollfd end{.fd = descriptor, .events = POLLIN, .revents = 0};
        return ::poll(&end, 1, milliseconds) == 1 && (end.revents & POLLIN) != 0;
    }

    int descriptor_;
};

}  // namespace

TEST(PseudoTerminal, CarriesAllBytesBothWays) {
    PseudoTerminal terminal;
    const User user(terminal.path());
    Bytes all;
    for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<std::uint8_t>(byte));
    ASSERT_TRUE(user.send(all));
    User::awaitInput(terminal.descriptor());
    EXPECT_EQ(terminal.readAll(), all);
    terminal.write(all);
    EXPECT_EQ(user.received(), all);
}

TEST(PseudoTerminal, WithoutAUserReadingIsEmptyAndNotAnError) {
    PseudoTerminal terminal;
    { const User user(terminal.path()); }
    EXPECT_TRUE(terminal.readAll().empty());
    pollfd end{.fd = terminal.descriptor(), .events = POLLIN, .revents = 0};
    EXPECT_EQ(::poll(&end, 1, 0), 0);
}

TEST(PseudoTerminal, WhatNobodyIsThereToTakeIsLost) {
    PseudoTerminal terminal;
    terminal.write(Bytes{1, 2, 3});
    const User user(terminal.path());
    // What was lost would come first.
    terminal.write(Bytes{9});
    EXPECT_EQ(user.received(), Bytes{9});
}

TEST(PseudoTerminal, WhatTheLastUserDidNotReadIsGone) {
    PseudoTerminal terminal;
    {
        const User user(terminal.path());
        terminal.write(Bytes{1, 2, 3});
    }
    terminal.heedUsers();
    const User next(terminal.path());
    terminal.write(Bytes{9});
    EXPECT_EQ(next.received(), Bytes{9});
}

TEST(PseudoTerminal, ItsDeviceIsAsNewWhenItsLastUserIsGone) {
    PseudoTerminal terminal;
    {
        const User user(terminal.path());
        ASSERT_EQ(::ioctl(user.descriptor(), TIOCEXCL), 0);
        auto line = user.line();
        line.c_lflag |= ECHO | ICANON;
        ASSERT_EQ(::tcsetattr(user.descriptor(), TCSANOW, &line), 0);
    }
    terminal.heedUsers();
    const User next(terminal.path());
    EXPECT_EQ(next.line().c_lflag & static_cast<tcflag_t>(ECHO | ICANON), 0U);
    int isExclusive = 1;
    ASSERT_EQ(::ioctl(next.descriptor(), TIOCGEXCL, &isExclusive), 0);
    EXPECT_EQ(isExclusive, 0);
}

TEST(PseudoTerminal, ItsDeviceStaysItsUsersWhileAnotherOneGoes) {
    PseudoTerminal terminal;
    const User stays(terminal.path());
    { const User goes(terminal.path()); }
    ASSERT_EQ(::ioctl(stays.descriptor(), TIOCEXCL), 0);
    terminal.heedUsers();
    int isExclusive = 0;
    ASSERT_EQ(::ioctl(stays.descriptor(), TIOCGEXCL, &isExclusive), 0);
    EXPECT_NE(isExclusive, 0);
}

TEST(PseudoTerminal, ALineThatHangsUpIsSeenByItsUser) {
    PseudoTerminal terminal;
    const User user(terminal.path());
    terminal.hangUp();
    pollfd end{.fd = user.descriptor(), .events = POLLIN, .revents = 0};
    ASSERT_EQ(::poll(&end, 1, 5000), 1);
    EXPECT_NE(end.revents & POLLHUP, 0);
}

}  // namespace qrv
