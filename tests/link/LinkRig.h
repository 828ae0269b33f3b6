// A frmComm under test: a line that a test plays byte by byte, or a simulated controller, under a false clock; and a
// record of all that went over the line.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "ScriptedLine.h"
#include "link/LinkObserver.h"
#include "link/frmComm.h"
#include "link/sim/SimulatedPort.h"
#include "platform/Platform.h"
#include "platform/SerialPort.h"
#include "store/Workbench.h"
#include "twins/MemorySettings.h"
#include "twins/ScriptedBox.h"
#include "twins/ScriptedFileDialog.h"
#include "twins/ScriptedHost.h"

namespace qrv::test {

/// The bytes with their checksum, summed here apart from the code under test.
[[nodiscard]] inline Bytes sealed(Bytes bytes) {
    unsigned sum = 0;
    for (const std::uint8_t byte : bytes) sum += byte;
    bytes.push_back(static_cast<std::uint8_t>(255 - sum / 256 % 256));
    bytes.push_back(static_cast<std::uint8_t>(255 - sum % 256));
    return bytes;
}

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
    void discarded(std::span<const std::uint8_t> bytes) override { drops.emplace_back(bytes.begin(), bytes.end()); }
    void resynchronised(std::span<const std::uint8_t> filler) override {
        fillers.emplace_back(filler.begin(), filler.end());
    }

    std::vector<Bytes> sends;
    std::vector<milliseconds> sentAt;
    std::vector<Bytes> drops;
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
