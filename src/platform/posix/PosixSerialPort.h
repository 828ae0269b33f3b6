// A serial port of a POSIX system: ours alone while it is open, with its own line settings, never blocking. Used by the
// desktop and by the terminal program; a pseudo-terminal serves as well as an adapter.
#pragma once

#include <functional>

#include "platform/SerialPort.h"

namespace qrv {

class PosixSerialPort final : public SerialPort {
 public:
    /// Gives the device path of a port number, "" where the number has no device.
    using PathOf = std::function<std::string(std::int16_t)>;
    /// What the fault texts call a port: "COM4 (/dev/ttyS0)", or the path alone where the user named that.
    enum class Naming { ByNumber, ByPath };

    explicit PosixSerialPort(PathOf pathOf) : pathOf_(std::move(pathOf)) {}
    ~PosixSerialPort() override { close(); }
    PosixSerialPort(const PosixSerialPort&) = delete;
    PosixSerialPort& operator=(const PosixSerialPort&) = delete;

    void setNaming(Naming naming) { naming_ = naming; }

    bool open(std::int16_t comPort, const std::string& settings) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override { return descriptor_ >= 0; }

    /// Takes what the system holds into our own queue, so that a wait on the descriptor ends for new bytes alone.
    [[nodiscard]] std::size_t waitingCount() override;
    void discardInput() override;
    /// Waits while the device takes no byte; where it takes none for five seconds the rest is dropped.
    void write(std::span<const std::uint8_t> bytes) override;
    [[nodiscard]] std::vector<std::uint8_t> readAll() override;

    [[nodiscard]] SerialFault fault() const override { return fault_; }
    [[nodiscard]] std::string faultText() const override { return faultText_; }
    [[nodiscard]] int descriptor() const override { return vanished_ ? -1 : descriptor_; }

 private:
    bool openDevice(const std::string& path);
    bool claim();
    bool refuse(SerialFault fault, std::string text);
    bool refuseByErrno(int error);
    void drain();
    void vanish();
    void requireOpen() const;

    PathOf pathOf_;
    int descriptor_ = -1;
    bool isOurs_ = false;  ///< claimed, not just open
    bool vanished_ = false;
    SerialFault fault_ = SerialFault::None;
    std::string faultText_;
    Naming naming_ = Naming::ByNumber;
    std::string name_;  ///< what the fault texts call the port
    std::string path_;
    std::vector<std::uint8_t> queue_;
};

}  // namespace qrv
