// A frmComm under test: a line that a test plays byte by byte, or a simulated controller, under a false clock; and a
// record of all that went over the line.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "link/LinkObserver.h"
#include "link/frmComm.h"
#include "link/sim/SimulatedPort.h"
#include "platform/Platform.h"
#include "platform/RunTimeError.h"
#include "platform/SerialPort.h"
#include "store/Workbench.h"
#include "twins/FalseClock.h"
#include "twins/MemorySettings.h"
#include "twins/ScriptedBox.h"
#include "twins/ScriptedFileDialog.h"
#include "twins/ScriptedHost.h"

namespace qrv::test {

using Bytes = std::vector<std::uint8_t>;
using std::chrono::milliseconds;

/// The bytes with their checksum, summed here apart from the code under test.
[[nodiscard]] inline Bytes sealed(Bytes bytes) {
    unsigned sum = 0;
    for (const std::uint8_t byte : bytes) sum += byte;
    bytes.push_back(static_cast<std::uint8_t>(255 - sum / 256 % 256));
    bytes.push_back(static_cast<std::uint8_t>(255 - sum % 256));
    return bytes;
}

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

/// What went over the line.
class LineRecord final : public LinkObserver {
 public:
    explicit LineRecord(const FalseClock& clock) : clock_(clock) {}

    void sent(std::span<const std::uint8_t> frame, int attempt) override {
        sends.emplace_back(frame.begin(), frame.end());
        sentAt.push_back(clock_.elapsed());
        lastAttempt = attempt;
    }
    void received(std::span<const std::uint8_t>, Verdict verdict) override { verdicts.push_back(verdict); }
    void resynchronised(std::span<const std::uint8_t> filler) override {
        fillers.emplace_back(filler.begin(), filler.end());
    }

    std::vector<Bytes> sends;
    std::vector<milliseconds> sentAt;
    std::vector<Bytes> fillers;
    std::vector<Verdict> verdicts;
    int lastAttempt = 0;

 private:
    const FalseClock& clock_;
};

/// The services of a machine without windows.
struct LinkServices {
    FalseClock clock;
    FalsePump pump{clock};
    ScriptedBox boxes;
    ScriptedFileDialog dialogs;
    ScriptedHost host;
    MemorySettings settings;
    LineRecord record{clock};

    [[nodiscard]] Platform platformWith(SerialPort& port) {
        return {boxes, dialogs, host, settings, clock, pump, port};
    }
};

/// frmComm on a line that the test plays.
struct LineRig : LinkServices {
    explicit LineRig(SerialPortList* ports = nullptr) : comm(bench, ports) {
        pump.nextArrival = [this] { return line.nextArrival(); };
        comm.observe(&record);
    }
    /// With the port open.
    LineRig& opened() {
        comm.Open_Comm_Port();
        return *this;
    }
    /// The far end answers every frame with these bytes.
    void answerAll(const Bytes& reply) {
        line.onWrite = [this, reply](const Bytes&) { line.send(reply); };
    }
    /// The far end answers every frame with these bytes and their checksum.
    void answerAllSealed(const Bytes& reply) { answerAll(sealed(reply)); }

    ScriptedLine line{clock};
    Workbench bench{platformWith(line), {}};
    frmComm comm;
};

/// frmComm and a simulated controller.
struct ControllerRig : LinkServices {
    explicit ControllerRig(SimSetup setup = {}, SimulatedPort::Pacing pacing = SimulatedPort::Pacing::None)
        : controller(std::move(setup)), port(controller, clock, pacing), comm(bench) {
        pump.nextArrival = [this] { return port.isOpen() ? port.nextArrival() : std::nullopt; };
        comm.observe(&record);
        comm.Open_Comm_Port();
    }

    SimulatedController controller;
    SimulatedPort port;
    Workbench bench{platformWith(port), {}};
    frmComm comm;
};

}  // namespace qrv::test
