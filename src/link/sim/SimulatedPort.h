// A serial port with a simulated controller at its far end, within the process. Under a false clock an event pump asks
// nextArrival() how far it may let time go on before bytes come.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "link/sim/SimulatedController.h"
#include "platform/Clock.h"
#include "platform/SerialPort.h"

namespace qrv {

class SimulatedPort final : public SerialPort {
 public:
    /// How fast bytes travel: at once, or as the settings say that the port was opened with.
    enum class Pacing { None, BySettings };

    SimulatedPort(SimulatedController& controller, const Clock& clock, Pacing pacing = Pacing::None)
        : controller_(controller), clock_(clock), pacing_(pacing) {}

    bool open(std::int16_t comPort, const std::string& settings) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override { return isOpen_; }
    [[nodiscard]] std::size_t waitingCount() override;
    void discardInput() override;
    void write(std::span<const std::uint8_t> bytes) override;
    [[nodiscard]] std::vector<std::uint8_t> readAll() override;
    /// A port that was refused says why; a line that hung up is Unplugged.
    [[nodiscard]] SerialFault fault() const override;
    [[nodiscard]] std::string faultText() const override;
    /// There is none: nothing to poll, time alone brings bytes.
    [[nodiscard]] int descriptor() const override { return -1; }

    /// From now on open() fails for this reason; SerialFault::None lets it open again.
    void refuseToOpen(SerialFault why = SerialFault::InUse) { refusal_ = why; }

    /// When the next bytes come that aren't waiting already.
    [[nodiscard]] std::optional<Clock::TimePoint> nextArrival();

    [[nodiscard]] std::int16_t comPort() const { return comPort_; }
    [[nodiscard]] const std::string& settings() const { return settings_; }
    [[nodiscard]] std::uint64_t openCount() const { return openCount_; }

 private:
    /// Brings in what has arrived by now; what arrives while the port is closed is lost.
    void fetch();
    void mustBeOpen() const;

    SimulatedController& controller_;
    const Clock& clock_;
    Pacing pacing_;
    SerialFault refusal_ = SerialFault::None;
    bool isOpen_ = false;
    bool failedToOpen_ = false;
    std::int16_t comPort_ = 0;
    std::string settings_;
    std::uint64_t openCount_ = 0;
    std::vector<std::uint8_t> waiting_;
};

}  // namespace qrv
