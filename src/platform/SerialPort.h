// The five things that the protocol needs of a serial port. Homes: our own POSIX port, the simulated controller within
// the process, and the tests' doubles.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace qrv {

/// Why a port could not be opened or went away; one line of advice each.
enum class SerialFault { None, Missing, Forbidden, InUse, NotAPort, Unplugged, Other };

class SerialPort {
 public:
    virtual ~SerialPort() = default;

    /// Opens the port with a number, COM1 being 1, by the settings text "baud,parity,8, 1" (the blank included).
    /// Binary, every byte kept. Gives false where it can't be opened; fault() then tells why.
    virtual bool open(std::int16_t comPort, const std::string& settings) = 0;
    virtual void close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// Number of bytes that wait to be read. Raises RunTimeError on a port that isn't open.
    [[nodiscard]] virtual std::size_t waitingCount() = 0;
    /// Drops the bytes that wait.
    virtual void discardInput() = 0;
    /// Sends all bytes. A far end that vanished is no error here: nothing more will arrive. Raises RunTimeError on a
    /// port that isn't open.
    virtual void write(std::span<const std::uint8_t> bytes) = 0;
    /// All bytes that wait, in order.
    [[nodiscard]] virtual std::vector<std::uint8_t> readAll() = 0;

    [[nodiscard]] virtual SerialFault fault() const = 0;
    /// Cause and cure in one sentence, UTF-8; "" where there is no fault.
    [[nodiscard]] virtual std::string faultText() const = 0;
    /// What a poll can wait on, or -1 where there is no descriptor or the far end has vanished.
    [[nodiscard]] virtual int descriptor() const = 0;
};

}  // namespace qrv
