// A terminal at which a user sits: types in advance, and keeps what was shown.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

namespace qrv::test {

class UserTerminal {
 public:
    /// What is typed waits for the program that reads it.
    explicit UserTerminal(std::string_view typed) {
        ::grantpt(master_);
        ::unlockpt(master_);
        path_ = ::ptsname(master_);
        // Held open, so that nothing typed is lost before the program comes.
        device_ = ::open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        termios settings{};
        ::tcgetattr(device_, &settings);
        ::cfmakeraw(&settings);
        ::tcsetattr(device_, TCSANOW, &settings);
        type(typed);
        thread_ = std::thread([this] { read(); });
    }
    ~UserTerminal() {
        stop();
        for (const int descriptor : {stop_, device_, master_}) ::close(descriptor);
    }
    UserTerminal(const UserTerminal&) = delete;
    UserTerminal& operator=(const UserTerminal&) = delete;

    /// Does this, in a thread of its own, as soon as the text has been shown. Before the program comes.
    void whenShown(std::string text, std::function<void()> action) {
        const std::lock_guard lock(mutex_);
        awaited_ = std::move(text);
        action_ = std::move(action);
    }
    void type(std::string_view text) const { static_cast<void>(::write(master_, text.data(), text.size())); }
    /// What a shell's command needs to have this terminal for its questions and words.
    [[nodiscard]] std::string redirections() const { return " <" + path_ + " 2>" + path_; }
    /// All that was shown; after the program's end.
    [[nodiscard]] const std::string& shown() {
        stop();
        return shown_;
    }

 private:
    void take() {
        std::array<char, 4096> bytes{};
        for (ssize_t count = 0; (count = ::read(master_, bytes.data(), bytes.size())) > 0;) {
            shown_.append(bytes.data(), static_cast<std::size_t>(count));
        }
        const std::lock_guard lock(mutex_);
        if (action_ && shown_.find(awaited_) != std::string::npos) std::exchange(action_, nullptr)();
    }
    void read() {
        std::array<pollfd, 2> wanted{pollfd{.fd = stop_, .events = POLLIN, .revents = 0},
                                     pollfd{.fd = master_, .events = POLLIN, .revents = 0}};
        while (wanted[0].revents == 0) {
            ::poll(wanted.data(), wanted.size(), -1);
            take();
        }
    }
    void stop() {
        if (!thread_.joinable()) return;
        const std::uint64_t one = 1;
        static_cast<void>(::write(stop_, &one, sizeof one));
        thread_.join();
        take();
    }

    int master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    int device_ = -1;
    int stop_ = ::eventfd(0, EFD_CLOEXEC);
    std::string path_;
    std::string shown_;
    std::mutex mutex_;
    std::string awaited_;
    std::function<void()> action_;
    std::thread thread_;
};

}  // namespace qrv::test
