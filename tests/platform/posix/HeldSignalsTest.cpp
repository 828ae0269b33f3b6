// Signals that wait until what they would interrupt is done. Each case runs in a process of its own, which the signal
// ends.
#include "platform/posix/HeldSignals.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>

namespace qrv {
namespace {

class HeldSignalsOf : public testing::TestWithParam<int> {};

/// What a child wrote until its end, and the signal that ended it.
struct Child {
    std::string written;
    int signal = 0;
};

template <typename Action>
Child childThat(Action&& action) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) return {};
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        // As a shell leaves them: none ignored.
        for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_DFL);
        action([&](char letter) { static_cast<void>(::write(ends[1], &letter, 1)); });
        ::_exit(0);
    }
    ::close(ends[1]);
    Child ended;
    for (char letter = 0; ::read(ends[0], &letter, 1) == 1;) ended.written.push_back(letter);
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) ended.signal = WTERMSIG(status);
    return ended;
}

TEST_P(HeldSignalsOf, TakeEffectBehindTheLastHold) {
    const Child child = childThat([](auto write) {
        {
            const HeldSignals held;
            {
                const HeldSignals heldOnceMore;
                ::raise(GetParam());
                write('a');
            }
            write('b');
        }
        write('c');
    });
    EXPECT_EQ(child.written, "ab");
    EXPECT_EQ(child.signal, GetParam());
}

TEST_P(HeldSignalsOf, StayIgnoredWhereTheyWere) {
    const Child child = childThat([](auto write) {
        std::signal(GetParam(), SIG_IGN);
        {
            const HeldSignals held;
            ::raise(GetParam());
            write('a');
        }
        write('b');
    });
    EXPECT_EQ(child.written, "ab");
    EXPECT_EQ(child.signal, 0);
}

INSTANTIATE_TEST_SUITE_P(Signals, HeldSignalsOf, testing::Values(SIGINT, SIGTERM, SIGHUP));

}  // namespace
}  // namespace qrv
