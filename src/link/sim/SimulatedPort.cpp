#include "link/sim/SimulatedPort.h"

#include <utility>

#include "platform/RunTimeError.h"

namespace qrv {

bool SimulatedPort::open(std::int16_t comPort, const std::string& settings) {
    failedToOpen_ = refusal_ != SerialFault::None || controller_.hasHungUp();
    if (failedToOpen_) return false;
    comPort_ = comPort;
    settings_ = settings;
    if (pacing_ == Pacing::BySettings) controller_.setPace(SimPace::ofSettings(settings));
    fetch();
    waiting_.clear();
    isOpen_ = true;
    ++openCount_;
    return true;
}

void SimulatedPort::close() {
    isOpen_ = false;
    waiting_.clear();
}

std::size_t SimulatedPort::waitingCount() {
    mustBeOpen();
    fetch();
    return waiting_.size();
}

void SimulatedPort::discardInput() {
    mustBeOpen();
    fetch();
    waiting_.clear();
}

void SimulatedPort::write(std::span<const std::uint8_t> bytes) {
    mustBeOpen();
    controller_.feed(bytes, clock_.now());
}

std::vector<std::uint8_t> SimulatedPort::readAll() {
    mustBeOpen();
    fetch();
    return std::exchange(waiting_, {});
}

SerialFault SimulatedPort::fault() const {
    if (isOpen_) return controller_.hasHungUp() ? SerialFault::Unplugged : SerialFault::None;
    if (!failedToOpen_) return SerialFault::None;
    return refusal_ != SerialFault::None ? refusal_ : SerialFault::Missing;
}

std::string SimulatedPort::faultText() const {
    switch (fault()) {
        case SerialFault::None: return "";
        case SerialFault::Missing: return "The simulated device is missing: restart the controller.";
        case SerialFault::Forbidden: return "The simulated device may not be used: let the port open.";
        case SerialFault::InUse: return "The simulated device is in use: let the port open.";
        case SerialFault::NotAPort: return "The simulated device is no serial port: let the port open.";
        case SerialFault::Unplugged: return "The simulated device was unplugged: restart the controller.";
        case SerialFault::Other: return "The simulated device fails: let the port open.";
    }
    return "";
}

std::optional<Clock::TimePoint> SimulatedPort::nextArrival() {
    fetch();
    return controller_.nextArrival();
}

void SimulatedPort::fetch() {
    const auto bytes = controller_.take(clock_.now());
    waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
}

void SimulatedPort::mustBeOpen() const {
    if (!isOpen_) throw RunTimeError(ErrorNumber::DeviceIoError);
}

}  // namespace qrv
