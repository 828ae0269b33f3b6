// The far end of a pseudo-terminal, as a device would hold it.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace qrv::test {

class FarEnd {
 public:
    FarEnd() : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        ::grantpt(master_);
        ::unlockpt(master_);
        path_ = ::ptsname(master_);
    }
    ~FarEnd() { hangUp(); }
    FarEnd(const FarEnd&) = delete;
    FarEnd& operator=(const FarEnd&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] int master() const { return master_; }

    void send(std::span<const std::uint8_t> bytes) const {
        while (!bytes.empty()) {
            const auto taken = ::write(master_, bytes.data(), bytes.size());
            if (taken <= 0) return;
            bytes = bytes.subspan(static_cast<std::size_t>(taken));
        }
    }
    void send(std::initializer_list<std::uint8_t> bytes) const { send(std::span(bytes.begin(), bytes.size())); }

    /// Waits for `count` bytes, five seconds at most.
    [[nodiscard]] std::vector<std::uint8_t> receive(std::size_t count) const {
        std::vector<std::uint8_t> bytes;
        while (bytes.size() < count) {
            pollfd wanted{.fd = master_, .events = POLLIN, .revents = 0};
            if (::poll(&wanted, 1, 5000) <= 0) break;
            std::uint8_t chunk[256];
            const auto got = ::read(master_, chunk, std::min(sizeof chunk, count - bytes.size()));
            if (got <= 0) break;
            bytes.insert(bytes.end(), chunk, chunk + got);
        }
        return bytes;
    }

    /// The device goes away.
    void hangUp() {
        if (master_ >= 0) ::close(master_);
        master_ = -1;
    }

 private:
    int master_;
    std::string path_;
};

}  // namespace qrv::test
