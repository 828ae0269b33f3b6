#include "platform/posix/PosixSerialPort.h"

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/RunTimeError.h"
#include "platform/posix/LineSettings.h"

#ifdef __linux__
#include <linux/serial.h>
#endif

namespace qrv {

namespace {

constexpr int kStalledWriteMilliseconds = 5000;
constexpr std::size_t kReadSize = 4096;

/// The name of the group that owns the device, or its number where it has no name.
std::string groupOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return "?";
    const struct group* entry = ::getgrgid(status.st_gid);
    return entry != nullptr ? std::string(entry->gr_name) : std::to_string(status.st_gid);
}

bool isPseudoTerminal(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return false;
    constexpr unsigned kFirstMajor = 136;
    constexpr unsigned kLastMajor = 143;
    const unsigned majorNumber = major(status.st_rdev);
    return majorNumber >= kFirstMajor && majorNumber <= kLastMajor;
}

/// A USB adapter holds short replies back for 16 ms unless it is asked not to. Where the driver doesn't know the
/// request nothing is lost.
void askForLowLatency([[maybe_unused]] int descriptor) {
#ifdef __linux__
    serial_struct line{};
    if (::ioctl(descriptor, TIOCGSERIAL, &line) != 0) return;
    line.flags |= ASYNC_LOW_LATENCY;
    static_cast<void>(::ioctl(descriptor, TIOCSSERIAL, &line));
#endif
}

}  // namespace

bool PosixSerialPort::open(std::int16_t comPort, const std::string& settings) {
    close();
    fault_ = SerialFault::None;
    faultText_.clear();
    path_ = pathOf_(comPort);
    name_ = "COM" + std::to_string(comPort);
    if (path_.empty()) {
        const std::string command = "qrv ports --map " + name_ + "=DEVICE";
        return refuse(SerialFault::Missing, name_ +
                                                " stands for no device: plug the adapter in, or give the number a "
                                                "device in the port list (" +
                                                command + ").");
    }
    name_ = naming_ == Naming::ByPath ? path_ : name_ + " (" + path_ + ")";
    const auto line = lineSettingsOf(settings);
    if (!line) return refuse(SerialFault::Other, name_ + ": the line settings \"" + settings + "\" can't be used.");
    if (!openDevice(path_) || !claim()) {
        close();
        return false;
    }
    if (!applyTo(descriptor_, *line)) {
        close();
        return refuse(SerialFault::Other, name_ + " doesn't take the line settings \"" + settings + "\".");
    }
    askForLowLatency(descriptor_);
    ::tcflush(descriptor_, TCIOFLUSH);
    return true;
}

bool PosixSerialPort::openDevice(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return refuseByErrno(errno);
    if (S_ISDIR(status.st_mode))
        return refuse(SerialFault::NotAPort, name_ + " is a folder: name the device within it.");
    if (!S_ISCHR(status.st_mode)) {
        return refuse(SerialFault::NotAPort, name_ + " is no serial port: name a terminal device.");
    }
    descriptor_ = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor_ < 0) return refuseByErrno(errno);
    if (::isatty(descriptor_) == 0) {
        return refuse(SerialFault::NotAPort, name_ + " is no serial port: name a terminal device.");
    }
    return true;
}

/// Makes the open device ours alone: a lock keeps out programs that ask, exclusive mode those that don't.
bool PosixSerialPort::claim() {
    if (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) return refuseByErrno(EBUSY);
        return refuseByErrno(errno);
    }
    // A pseudo-terminal keeps the mark of a program that was killed, and nobody could open it again: there the lock
    // alone tells.
    int exclusive = 0;
    if (!isPseudoTerminal(descriptor_) && ::ioctl(descriptor_, TIOCGEXCL, &exclusive) == 0 && exclusive != 0) {
        return refuseByErrno(EBUSY);
    }
    if (::ioctl(descriptor_, TIOCEXCL) != 0) return refuseByErrno(errno);
    isOurs_ = true;
    return true;
}

bool PosixSerialPort::refuse(SerialFault fault, std::string text) {
    fault_ = fault;
    faultText_ = std::move(text);
    return false;
}

bool PosixSerialPort::refuseByErrno(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
        case ENXIO:
        case ENODEV:
            return refuse(SerialFault::Missing, name_ + " is not there: plug the adapter in, or choose another port.");
        case EACCES:
        case EPERM:
            return refuse(SerialFault::Forbidden, name_ + " may not be opened by you: become a member of the group \"" +
                                                      groupOf(path_) + "\" and log in again.");
        case EBUSY: return refuse(SerialFault::InUse, name_ + " is held by another program: close that program first.");
        default: return refuse(SerialFault::Other, name_ + " can't be opened: " + std::strerror(error) + ".");
    }
}

void PosixSerialPort::close() {
    // The mark and the waiting bytes are the device's: where another program holds it they are that program's.
    if (isOurs_) {
        ::ioctl(descriptor_, TIOCNXCL);
        // What still waits to go out would hold the close up for as long as the far end doesn't take it.
        ::tcflush(descriptor_, TCIOFLUSH);
    }
    if (descriptor_ >= 0) ::close(descriptor_);
    descriptor_ = -1;
    isOurs_ = false;
    vanished_ = false;
    queue_.clear();
}

void PosixSerialPort::requireOpen() const {
    if (!isOpen()) throw RunTimeError(ErrorNumber::DeviceIoError, "Operation valid only when the port is open");
}

std::size_t PosixSerialPort::waitingCount() {
    requireOpen();
    drain();
    return queue_.size();
}

void PosixSerialPort::discardInput() {
    requireOpen();
    if (!vanished_) ::tcflush(descriptor_, TCIFLUSH);
    drain();
    queue_.clear();
}

std::vector<std::uint8_t> PosixSerialPort::readAll() {
    requireOpen();
    drain();
    return std::exchange(queue_, {});
}

void PosixSerialPort::drain() {
    std::array<std::uint8_t, kReadSize> chunk;
    while (!vanished_) {
        const ssize_t got = ::read(descriptor_, chunk.data(), chunk.size());
        if (got > 0) {
            queue_.insert(queue_.end(), chunk.begin(), chunk.begin() + got);
            if (static_cast<std::size_t>(got) < chunk.size()) return;
        } else if (got == 0) {
            vanish();
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            return;
        } else if (errno != EINTR) {
            vanish();
        }
    }
}

/// The far end is gone for good: from here on nothing arrives, no descriptor is ready, and nothing is tried again until
/// the port is opened anew.
void PosixSerialPort::vanish() {
    vanished_ = true;
    refuse(SerialFault::Unplugged, name_ + " went away while it was open: plug it in again and repeat the action.");
}

void PosixSerialPort::write(std::span<const std::uint8_t> bytes) {
    requireOpen();
    while (!bytes.empty() && !vanished_) {
        const ssize_t taken = ::write(descriptor_, bytes.data(), bytes.size());
        if (taken >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(taken));
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            pollfd wanted{.fd = descriptor_, .events = POLLOUT, .revents = 0};
            if (::poll(&wanted, 1, kStalledWriteMilliseconds) == 0) return;
            if ((wanted.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) vanish();
        } else if (errno != EINTR) {
            vanish();
        }
    }
}

}  // namespace qrv
