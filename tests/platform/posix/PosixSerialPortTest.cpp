#include "platform/posix/PosixSerialPort.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>

#include <array>
#include <csignal>
#include <fstream>
#include <thread>

#include "FarEnd.h"
#include "platform/RunTimeError.h"
#include "platform/posix/PollPump.h"
#include "platform/posix/PseudoTerminal.h"
#include "twins/TemporaryFolder.h"
#include "twins/WithoutPrivileges.h"

namespace qrv::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr const char* kUsual = "38400,O,8, 1";

struct PortRig {
    FarEnd device;
    std::string path = device.path();
    PosixSerialPort port{[this](std::int16_t number) { return number == 4 ? path : std::string(); }};

    bool open(const std::string& settings = kUsual) { return port.open(4, settings); }
    /// Waits until `count` bytes have come, and gives all that have.
    Bytes receive(std::size_t count) {
        const SystemClock clock;
        PollPump pump(clock);
        const auto end = clock.now() + std::chrono::seconds(5);
        while (port.waitingCount() < count && clock.now() < end) pump.pumpUntil(end, &port);
        return port.readAll();
    }
    [[nodiscard]] termios lineSettings() const {
        termios held{};
        ::tcgetattr(device.master(), &held);
        return held;
    }
};

/// A second descriptor of the device, as another program would have it.
class OtherProgram {
 public:
    explicit OtherProgram(const std::string& path) : descriptor_(::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {}
    ~OtherProgram() { ::close(descriptor_); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
    int descriptor_;
};

TEST(PosixSerialPort, CarriesAllByteValuesBothWays) {
    PortRig rig;
    ASSERT_TRUE(rig.open());
    Bytes all(256);
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::uint8_t>(i);
    rig.port.write(all);
    EXPECT_EQ(rig.device.receive(all.size()), all);
    rig.device.send(all);
    EXPECT_EQ(rig.receive(all.size()), all);
    EXPECT_EQ(rig.port.waitingCount(), 0U);
}

TEST(PosixSerialPort, DropsWhatWaits) {
    PortRig rig;
    ASSERT_TRUE(rig.open());
    rig.device.send({1, 2, 3});
    EXPECT_EQ(rig.receive(3), (Bytes{1, 2, 3}));
    rig.device.send({4, 5, 6});
    rig.port.discardInput();
    EXPECT_EQ(rig.port.waitingCount(), 0U);
    rig.device.send({7});
    EXPECT_EQ(rig.receive(1), Bytes{7});
}

TEST(PosixSerialPort, DropsWhatCameBeforeItWasOpened) {
    PortRig rig;
    const OtherProgram keepsTheLine(rig.path);
    rig.device.send({9, 9, 9});
    ASSERT_TRUE(rig.open());
    EXPECT_EQ(rig.port.waitingCount(), 0U);
}

TEST(PosixSerialPort, BearsWithADeviceWithoutParityTimeAndAgain) {
    PortRig rig;
    for (const char* settings : {kUsual, kUsual, "38400,E,8, 1", "38400,E,8, 1", "38400,N,8, 1", "9600,O,8, 1"}) {
        ASSERT_TRUE(rig.open(settings)) << settings << ": " << rig.port.faultText();
    }
    const termios held = rig.lineSettings();
    EXPECT_EQ(cfgetospeed(&held), B9600);
}

TEST(PosixSerialPort, PutsItsOwnSettingsOnTheDevice) {
    PortRig rig;
    ASSERT_TRUE(rig.open("1200,N,8, 1"));
    const termios held = rig.lineSettings();
    EXPECT_EQ(cfgetospeed(&held), B1200);
    EXPECT_EQ(held.c_cflag & (CSIZE | CSTOPB), static_cast<tcflag_t>(CS8));
    EXPECT_EQ(held.c_lflag & (ICANON | ECHO | ISIG), 0U);
    EXPECT_EQ(held.c_oflag & OPOST, 0U);
}

TEST(PosixSerialPort, KeepsOthersOut) {
    PortRig rig;
    ASSERT_TRUE(rig.open());
    int exclusive = 0;
    EXPECT_EQ(::ioctl(rig.port.descriptor(), TIOCGEXCL, &exclusive), 0);
    EXPECT_NE(exclusive, 0);
    PosixSerialPort second([&](std::int16_t) { return rig.path; });
    EXPECT_FALSE(second.open(1, kUsual));
    EXPECT_EQ(second.fault(), SerialFault::InUse);
    EXPECT_EQ(second.faultText(), "COM1 (" + rig.path + ") is held by another program: close that program first.");
    rig.port.close();
    EXPECT_TRUE(second.open(1, kUsual));
}

TEST(PosixSerialPort, TellsAPortThatIsHeldByAnotherProcess) {
    PortRig rig;
    const OtherProgram other(rig.path);
    ASSERT_EQ(::flock(other.descriptor(), LOCK_EX), 0);
    EXPECT_FALSE(rig.open());
    EXPECT_EQ(rig.port.fault(), SerialFault::InUse);
}

/// A program in the midst of a transfer: the device marked as its own, three bytes waiting for it.
struct Transfer {
    explicit Transfer(const PortRig& rig) : program(rig.path) {
        termios raw{};
        ::tcgetattr(program.descriptor(), &raw);
        ::cfmakeraw(&raw);
        ::tcsetattr(program.descriptor(), TCSANOW, &raw);
        EXPECT_EQ(::ioctl(program.descriptor(), TIOCEXCL), 0);
        rig.device.send({1, 2, 3});
        pollfd wanted{.fd = program.descriptor(), .events = POLLIN, .revents = 0};
        EXPECT_EQ(::poll(&wanted, 1, 5000), 1);
    }
    void expectUntouched() const {
        int exclusive = 0;
        EXPECT_EQ(::ioctl(program.descriptor(), TIOCGEXCL, &exclusive), 0);
        EXPECT_NE(exclusive, 0);
        int waiting = 0;
        EXPECT_EQ(::ioctl(program.descriptor(), FIONREAD, &waiting), 0);
        EXPECT_EQ(waiting, 3);
    }

    OtherProgram program;
};

TEST(PosixSerialPort, ARefusedOpenLeavesTheHoldersTransferAlone) {
    PortRig rig;
    const Transfer transfer(rig);
    ASSERT_EQ(::flock(transfer.program.descriptor(), LOCK_EX), 0);
    EXPECT_FALSE(rig.open());
    EXPECT_EQ(rig.port.fault(), SerialFault::InUse);
    rig.port.close();
    transfer.expectUntouched();
}

TEST(PosixSerialPort, ARefusedOpenLeavesTheTransferOfAHolderWithoutLockAlone) {
    PortRig rig;
    const Transfer transfer(rig);
    ASSERT_EQ(::chmod(rig.path.c_str(), 0666), 0);
    // Root is let in past the mark.
    EXPECT_EQ(withoutPrivileges([&] { return !rig.open() && rig.port.fault() == SerialFault::InUse ? 0 : 1; }), 0);
    transfer.expectUntouched();
}

TEST(PosixSerialPort, TellsADeviceThatIsMissing) {
    PortRig rig;
    rig.path = "/dev/there-is-no-such-device";
    EXPECT_FALSE(rig.open());
    EXPECT_EQ(rig.port.fault(), SerialFault::Missing);
    EXPECT_EQ(rig.port.faultText(),
              "COM4 (/dev/there-is-no-such-device) is not there: plug the adapter in, or choose another port.");
    EXPECT_FALSE(rig.port.isOpen());
}

TEST(PosixSerialPort, APortThatTheUserNamedByItsPathIsCalledSo) {
    PortRig rig;
    rig.path = "/dev/there-is-no-such-device";
    rig.port.setNaming(PosixSerialPort::Naming::ByPath);
    EXPECT_FALSE(rig.open());
    EXPECT_EQ(rig.port.faultText(),
              "/dev/there-is-no-such-device is not there: plug the adapter in, or choose another port.");
}

TEST(PosixSerialPort, TellsANumberWithoutDevice) {
    PortRig rig;
    EXPECT_FALSE(rig.port.open(5, kUsual));
    EXPECT_EQ(rig.port.fault(), SerialFault::Missing);
    EXPECT_EQ(rig.port.faultText(),
              "COM5 stands for no device: plug the adapter in, or give the number a device in the port list "
              "(qrv ports --map COM5=DEVICE).");
}

TEST(PosixSerialPort, TellsWhatIsNoTerminal) {
    PortRig rig;
    rig.path = "/dev/null";
    EXPECT_FALSE(rig.open());
    EXPECT_EQ(rig.port.fault(), SerialFault::NotAPort);
    EXPECT_EQ(rig.port.faultText(), "COM4 (/dev/null) is no serial port: name a terminal device.");
    rig.path = "/dev";
    EXPECT_FALSE(rig.open());
    EXPECT_EQ(rig.port.fault(), SerialFault::NotAPort);
    EXPECT_EQ(rig.port.faultText(), "COM4 (/dev) is a folder: name the device within it.");
}

TEST(PosixSerialPort, TellsAPlainFile) {
    const TemporaryFolder folder;
    PortRig rig;
    rig.path = folder.file("file");
    std::ofstream(rig.path) << "text";
    EXPECT_FALSE(rig.open());
    EXPECT_EQ(rig.port.fault(), SerialFault::NotAPort);
}

TEST(PosixSerialPort, NamesTheGroupOfADeviceThatIsForbidden) {
    PortRig rig;
    ASSERT_EQ(::chmod(rig.path.c_str(), 0), 0);
    struct stat status {};
    ASSERT_EQ(::stat(rig.path.c_str(), &status), 0);
    const std::string group = ::getgrgid(status.st_gid)->gr_name;
    EXPECT_EQ(withoutPrivileges([&] {
                  if (rig.open() || rig.port.fault() != SerialFault::Forbidden) return 1;
                  const std::string wanted = "COM4 (" + rig.path +
                                             ") may not be opened by you: become a member of the group \"" + group +
                                             "\" and log in again.";
                  return rig.port.faultText() == wanted ? 0 : 2;
              }),
              0);
}

TEST(PosixSerialPort, ExclusiveModeKeepsOutAProgramThatAsksForNoLock) {
    PortRig rig;
    ASSERT_TRUE(rig.open());
    ASSERT_EQ(::chmod(rig.path.c_str(), 0666), 0);
    const int code = withoutPrivileges([&] {
        const int descriptor = ::open(rig.path.c_str(), O_RDWR | O_NOCTTY);
        return descriptor < 0 && errno == EBUSY ? 0 : 1;
    });
    EXPECT_EQ(code, 0);
}

struct SettingsRow {
    const char* name;
    const char* settings;
};

class PosixSerialPortSettingsTest : public testing::TestWithParam<SettingsRow> {};

TEST_P(PosixSerialPortSettingsTest, RefusesOtherTexts) {
    PortRig rig;
    EXPECT_FALSE(rig.open(GetParam().settings));
    EXPECT_EQ(rig.port.fault(), SerialFault::Other);
    EXPECT_FALSE(rig.port.isOpen());
}

INSTANTIATE_TEST_SUITE_P(Texts, PosixSerialPortSettingsTest,
                         testing::Values(SettingsRow{"empty", ""}, SettingsRow{"noSuchRate", "12345,O,8, 1"},
                                         SettingsRow{"noSuchParity", "9600,X,8, 1"},
                                         SettingsRow{"noBlank", "9600,O,8,1"}, SettingsRow{"sevenBits", "9600,O,7, 1"},
                                         SettingsRow{"wordForRate", "fast,O,8, 1"}),
                         [](const auto& row) { return row.param.name; });

TEST(PosixSerialPort, ADeviceThatVanishesIsOneEvent) {
    PortRig rig;
    ASSERT_TRUE(rig.open());
    rig.device.send({1, 2});
    EXPECT_EQ(rig.receive(2), (Bytes{1, 2}));
    rig.device.hangUp();
    EXPECT_EQ(rig.port.waitingCount(), 0U);
    EXPECT_EQ(rig.port.descriptor(), -1);
    EXPECT_EQ(rig.port.fault(), SerialFault::Unplugged);
    EXPECT_EQ(rig.port.faultText(),
              "COM4 (" + rig.path + ") went away while it was open: plug it in again and repeat the action.");
    EXPECT_TRUE(rig.port.isOpen());
    rig.port.write(Bytes{1, 2, 3});
    rig.port.discardInput();
    EXPECT_EQ(rig.port.readAll(), Bytes{});
}

/// A wait that something keeps awake comes back many thousand times in its 200 ms.
constexpr int kFarBelowAStorm = 100;

TEST(PosixSerialPort, AWaitOnAVanishedDeviceLastsToItsDeadline) {
    PortRig rig;
    ASSERT_TRUE(rig.open());
    rig.device.hangUp();
    const SystemClock clock;
    PollPump pump(clock);
    const auto deadline = clock.now() + std::chrono::milliseconds(200);
    int wakes = 0;
    while (clock.now() < deadline) {
        static_cast<void>(rig.port.waitingCount());
        pump.pumpUntil(deadline, &rig.port);
        ++wakes;
    }
    EXPECT_LE(wakes, kFarBelowAStorm);
}

TEST(PosixSerialPort, HalfAReplyDoesNotKeepAWaitAwake) {
    PortRig rig;
    ASSERT_TRUE(rig.open());
    rig.device.send({1, 2, 3});
    const SystemClock clock;
    PollPump pump(clock);
    const auto deadline = clock.now() + std::chrono::milliseconds(200);
    int wakes = 0;
    while (rig.port.waitingCount() < 5 && clock.now() < deadline) {
        pump.pumpUntil(deadline, &rig.port);
        ++wakes;
    }
    EXPECT_LE(wakes, kFarBelowAStorm);
    EXPECT_EQ(rig.port.readAll(), (Bytes{1, 2, 3}));
}

TEST(PosixSerialPort, IsUsableAgainWhenTheDeviceIsBack) {
    PortRig rig;
    ASSERT_TRUE(rig.open());
    rig.device.hangUp();
    EXPECT_EQ(rig.port.waitingCount(), 0U);
    EXPECT_FALSE(rig.open());
    EXPECT_EQ(rig.port.fault(), SerialFault::Missing);
    const FarEnd pluggedAgain;
    rig.path = pluggedAgain.path();
    ASSERT_TRUE(rig.open());
    EXPECT_EQ(rig.port.fault(), SerialFault::None);
    pluggedAgain.send({5});
    EXPECT_EQ(rig.receive(1), Bytes{5});
}

TEST(PosixSerialPort, WritesFillerToASlowReaderWithoutLoss) {
    PortRig rig;
    ASSERT_TRUE(rig.open());
    // Far more than a pseudo-terminal holds, so that the port must wait for its reader.
    constexpr std::size_t kFillers = 200;
    Bytes received;
    std::thread reader([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        received = rig.device.receive(kFillers * 1025);
    });
    Bytes sent;
    for (std::size_t i = 0; i < kFillers; ++i) {
        const Bytes filler(1025, static_cast<std::uint8_t>(i));
        rig.port.write(filler);
        sent.insert(sent.end(), filler.begin(), filler.end());
    }
    reader.join();
    EXPECT_EQ(received, sent);
}

/// A process that opens the port and holds it until it is killed.
class KilledHolder {
 public:
    explicit KilledHolder(PortRig& rig) {
        if (::pipe(pipe_.data()) != 0) return;
        child_ = ::fork();
        if (child_ != 0) return;
        const char isOpen = rig.open() ? 1 : 0;
        static_cast<void>(::write(pipe_[1], &isOpen, 1));
        ::pause();
        ::_exit(0);
    }
    ~KilledHolder() {
        for (const int end : pipe_) ::close(end);
    }
    KilledHolder(const KilledHolder&) = delete;
    KilledHolder& operator=(const KilledHolder&) = delete;

    [[nodiscard]] bool holds() const {
        char isOpen = 0;
        return child_ > 0 && ::read(pipe_[0], &isOpen, 1) == 1 && isOpen == 1;
    }
    void kill() const {
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
    }

 private:
    std::array<int, 2> pipe_{-1, -1};
    pid_t child_ = -1;
};

TEST(PosixSerialPort, FiftyOpensOfAPortThatAKilledProcessLeftRaw) {
    PseudoTerminal device;
    PortRig rig;
    rig.path = device.path();
    const KilledHolder holder(rig);
    ASSERT_TRUE(holder.holds());
    EXPECT_FALSE(rig.open());
    holder.kill();
    // A device forgets its user's mark with the last close, a pseudo-terminal only when it is told.
    device.heedUsers();
    for (int round = 0; round < 50; ++round) {
        ASSERT_TRUE(rig.open()) << "round " << round << ": " << rig.port.faultText();
        device.write(Bytes{42});
        EXPECT_EQ(rig.receive(1), Bytes{42});
        rig.port.close();
    }
}

TEST(PosixSerialPort, AClosedPortIsAnError) {
    PortRig rig;
    EXPECT_THROW((void)rig.port.waitingCount(), RunTimeError);
    EXPECT_THROW((void)rig.port.readAll(), RunTimeError);
    EXPECT_THROW(rig.port.discardInput(), RunTimeError);
    EXPECT_THROW(rig.port.write(Bytes{1}), RunTimeError);
    EXPECT_EQ(rig.port.descriptor(), -1);
}

}  // namespace
}  // namespace qrv::test
