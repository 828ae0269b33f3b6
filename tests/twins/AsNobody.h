// A child process without privileges: what may not be opened can be opened by root all the same.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace qrv {

/// Runs `action` in a child that has no privileges, and gives the exit code that `action` returns there.
template <typename Action>
int asNobody(Action&& action) {
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t kNobody = 65534;
        if (::geteuid() == 0 && (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) ::_exit(99);
        ::_exit(action());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace qrv
