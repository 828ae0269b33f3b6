// A serial line whose far end is the test, byte by byte and moment by moment, under a false clock.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/RunTimeError.h"
#include "platform/SerialPort.h"
#include "twins/FalseClock.h"

namespace qrv::test {

using Bytes = std::vector<std::uint8_t>;
using std::chrono::milliseconds;

/// A line whose far end is the test: it sees what is written, and sends what it likes when it likes.
class ScriptedLine final : public SerialPort {
 public:
    struct Write {
        milliseconds at;
        Bytes bytes;
    };

    explicit ScriptedLine(const FalseClock& clock) : clock_(clock) {}

    /// Called for every write, after it was recorded.
    std::function<void(const Bytes&)> onWrite = [](const Bytes&) {};
    std::vector<Write> writes;
    bool opens = true;
    bool closes = true;
    std::vector<std::pair<std::int16_t, std::string>> opened;

    /// Sends bytes that arrive after a while.
    void send(Bytes bytes, milliseconds delay = milliseconds(0)) {
        coming_.push_back({clock_.now() + delay, std::move(bytes)});
    }
    [[nodiscard]] std::optional<Clock::TimePoint> nextArrival() const {
        std::optional<Clock::TimePoint> next;
        for (const auto& [at, bytes] : coming_) {
            if (at > clock_.now() && (!next || at < *next)) next = at;
        }
        return next;
    }

    bool open(std::int16_t comPort, const std::string& settings) override {
        opened.emplace_back(comPort, settings);
        isOpen_ = opens;
        return opens;
    }
    void close() override {
        if (closes) isOpen_ = false;
    }
    [[nodiscard]] bool isOpen() const override { return isOpen_; }
    [[nodiscard]] std::size_t waitingCount() override {
        fetch();
        return waiting_.size();
    }
    void discardInput() override {
        fetch();
        waiting_.clear();
    }
    void write(std::span<const std::uint8_t> bytes) override {
        if (!isOpen_) throw RunTimeError(ErrorNumber::DeviceIoError);
        writes.push_back({.at = clock_.elapsed(), .bytes = Bytes(bytes.begin(), bytes.end())});
        onWrite(writes.back().bytes);
    }
    [[nodiscard]] Bytes readAll() override {
        fetch();
        return std::exchange(waiting_, {});
    }
    [[nodiscard]] SerialFault fault() const override { return opens ? SerialFault::None : SerialFault::Missing; }
    [[nodiscard]] std::string faultText() const override { return ""; }
    [[nodiscard]] int descriptor() const override { return -1; }

 private:
    struct Coming {
        Clock::TimePoint at;
        Bytes bytes;
    };

    void fetch() {
        if (!isOpen_) throw RunTimeError(ErrorNumber::DeviceIoError);
        std::erase_if(coming_, [this](const Coming& lump) {
            if (lump.at > clock_.now()) return false;
            waiting_.insert(waiting_.end(), lump.bytes.begin(), lump.bytes.end());
            return true;
        });
    }

    const FalseClock& clock_;
    std::vector<Coming> coming_;
    Bytes waiting_;
    bool isOpen_ = false;
};

}  // namespace qrv::test
