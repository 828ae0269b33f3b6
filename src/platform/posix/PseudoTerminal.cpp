#include "platform/posix/PseudoTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/RunTimeError.h"

#ifdef __linux__
#include <sys/inotify.h>
#endif

namespace qrv {

namespace {

constexpr std::size_t kTakenAtOnce = 4096;
constexpr int kOpenFlags = O_RDWR | O_NOCTTY | O_CLOEXEC;

void closeAndForget(int& descriptor) {
    if (descriptor >= 0) ::close(descriptor);
    descriptor = -1;
}

}  // namespace

PseudoTerminal::PseudoTerminal() {
    const auto fail = [this](const char* what) {
        const std::string why = std::strerror(errno);
        hangUp();
        throw RunTimeError(ErrorNumber::DeviceIoError, std::string(what) + ": " + why);
    };
    master_ = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (master_ < 0) fail("no pseudo-terminal");
    if (::grantpt(master_) != 0 || ::unlockpt(master_) != 0) fail("no device for the pseudo-terminal");
    ::fcntl(master_, F_SETFD, FD_CLOEXEC);
    ::fcntl(master_, F_SETFL, ::fcntl(master_, F_GETFL) | O_NONBLOCK);
    std::array<char, 128> name{};
    if (::ptsname_r(master_, name.data(), name.size()) != 0) fail("no name for the pseudo-terminal");
    path_ = name.data();
    ownEnd_ = ::open(path_.c_str(), kOpenFlags);
    if (ownEnd_ < 0) fail("the pseudo-terminal's device can't be opened");
    makeAsNew();
#ifdef __linux__
    watch_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    watch();
#endif
}

void PseudoTerminal::makeAsNew() const {
    ::ioctl(ownEnd_, TIOCNXCL);
    termios line{};
    if (::tcgetattr(ownEnd_, &line) == 0) {
        ::cfmakeraw(&line);
        ::tcsetattr(ownEnd_, TCSANOW, &line);
    }
    ::tcflush(ownEnd_, TCIFLUSH);
}

void PseudoTerminal::watch() {
#ifdef __linux__
    watched_ = ::inotify_add_watch(watch_, path_.c_str(), IN_OPEN | IN_CLOSE);
#endif
}

void PseudoTerminal::unwatch() {
#ifdef __linux__
    if (watched_ >= 0) ::inotify_rm_watch(watch_, watched_);
    (void)takeSigns();
#endif
}

PseudoTerminal::Signs PseudoTerminal::takeSigns() const {
    Signs signs;
#ifdef __linux__
    std::array<char, kTakenAtOnce> events{};
    for (ssize_t got = 0; (got = ::read(watch_, events.data(), events.size())) > 0;) {
        for (ssize_t at = 0; at < got;) {
            inotify_event event{};
            std::memcpy(&event, events.data() + at, sizeof event);
            at += static_cast<ssize_t>(sizeof event + event.len);
            signs.hasCome = signs.hasCome || (event.mask & IN_OPEN) != 0;
            signs.hasGone = signs.hasGone || (event.mask & IN_CLOSE) != 0;
        }
    }
#endif
    return signs;
}

// The system tells of a device that nobody has open, and so we let go of it for a moment. A user's mark of exclusive
// use would keep us from taking hold again: it is lifted and set anew. A device keeps that mark when its user is
// killed, and nobody but us could lift it then.
bool PseudoTerminal::isDeserted() {
    int isExclusive = 0;
    ::ioctl(ownEnd_, TIOCGEXCL, &isExclusive);
    ::ioctl(ownEnd_, TIOCNXCL);
    closeAndForget(ownEnd_);
    pollfd end{.fd = master_, .events = 0, .revents = 0};
    const bool isAlone = ::poll(&end, 1, 0) == 1 && (end.revents & POLLHUP) != 0;
    ownEnd_ = ::open(path_.c_str(), kOpenFlags);
    if (!isAlone && isExclusive != 0) ::ioctl(ownEnd_, TIOCEXCL);
    return isAlone;
}

void PseudoTerminal::heedUsers() {
    const auto signs = takeSigns();
    if (signs.hasGone) return lookForUsers();
    // A user that has just come is about to make the device its own: no moment to let go of it.
    if (signs.hasCome) hasUser_ = true;
}

void PseudoTerminal::lookForUsers() {
    // Our own letting go and taking hold are no signs of users.
    unwatch();
    hasUser_ = !isDeserted();
    watch();
    if (!hasUser_) makeAsNew();
}

std::vector<std::uint8_t> PseudoTerminal::readAll() {
    std::vector<std::uint8_t> bytes;
    std::array<std::uint8_t, kTakenAtOnce> chunk{};
    for (ssize_t got = 0; (got = ::read(master_, chunk.data(), chunk.size())) > 0;) {
        bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + got);
    }
    return bytes;
}

void PseudoTerminal::write(std::span<const std::uint8_t> bytes) {
    if (watch_ >= 0) {
        heedUsers();
        if (!hasUser_) lookForUsers();
        if (!hasUser_) return;
    }
    while (!bytes.empty()) {
        const ssize_t taken = ::write(master_, bytes.data(), bytes.size());
        if (taken < 0 && errno == EINTR) continue;
        if (taken <= 0) return;
        bytes = bytes.subspan(static_cast<std::size_t>(taken));
    }
}

void PseudoTerminal::hangUp() {
    closeAndForget(watch_);
    closeAndForget(ownEnd_);
    closeAndForget(master_);
}

}  // namespace qrv
