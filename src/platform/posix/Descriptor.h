// An open file descriptor that closes itself, and the loops that carry a read or write through interruptions and short
// counts to its end.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

namespace qrv {

class Descriptor {
 public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int number() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    /// Closes and tells whether the system agreed; a delayed write error shows here.
    bool closeChecked() { return ::close(std::exchange(number_, -1)) == 0 || errno == EINTR; }

 private:
    int number_;
};

/// Repeats a call that a signal interrupted; gives its result.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

/// False with errno set where not all of `bytes` could be written.
inline bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (count < 0) return false;
        if (count == 0) {
            errno = ENOSPC;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace qrv
