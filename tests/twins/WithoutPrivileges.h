// A child process without privileges: what may not be opened can be opened by root all the same.
#pragma once

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace qrv {

/// Gives up all that root may do beyond what anybody may with his own files, for the programs it starts, too. The user
/// stays the same, so that what this user owns can still be reached. False: it can't be given up.
inline bool dropPrivileges() {
    if (::geteuid() != 0) return true;
    for (unsigned long privilege = 0; ::prctl(PR_CAPBSET_READ, privilege) >= 0; ++privilege) {
        if (::prctl(PR_CAPBSET_READ, privilege) == 1 && ::prctl(PR_CAPBSET_DROP, privilege) != 0) return false;
    }
    __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> none{};
    return ::syscall(SYS_capset, &header, none.data()) == 0;
}

/// Runs `action` in a child that has no privileges, and gives the exit code that `action` returns there.
template <typename Action>
int withoutPrivileges(Action&& action) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (!dropPrivileges()) ::_exit(99);
        ::_exit(action());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace qrv
