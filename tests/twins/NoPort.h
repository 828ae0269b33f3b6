// A machine without a serial port.
#pragma once

#include "platform/RunTimeError.h"
#include "platform/SerialPort.h"

namespace qrv {

class NoPort final : public SerialPort {
 public:
    bool open(std::int16_t, const std::string&) override { return false; }
    void close() override {}
    [[nodiscard]] bool isOpen() const override { return false; }
    [[nodiscard]] std::size_t waitingCount() override { throw RunTimeError(ErrorNumber::DeviceIoError); }
    void discardInput() override { throw RunTimeError(ErrorNumber::DeviceIoError); }
    void write(std::span<const std::uint8_t>) override { throw RunTimeError(ErrorNumber::DeviceIoError); }
    [[nodiscard]] std::vector<std::uint8_t> readAll() override { throw RunTimeError(ErrorNumber::DeviceIoError); }
    [[nodiscard]] SerialFault fault() const override { return SerialFault::Missing; }
    [[nodiscard]] std::string faultText() const override { return "There is no serial port."; }
    [[nodiscard]] int descriptor() const override { return -1; }
};

}  // namespace qrv
