// What the settings text of a serial port means, and how a terminal device is told of it.
#pragma once

#include <termios.h>

#include <optional>
#include <string_view>

namespace qrv {

enum class Parity { None, Odd, Even };

struct LineSettings {
    int baud = 0;  ///< bits a second
    Parity parity = Parity::None;
    friend bool operator==(const LineSettings&, const LineSettings&) = default;
};

/// Reads "baud,parity,8, 1". Nothing where the text is another, or the rate is none that a terminal device knows.
[[nodiscard]] std::optional<LineSettings> lineSettingsOf(std::string_view text);

/// The device settings that carry raw bytes, 8 data bits, 1 stop bit. A byte of bad parity arrives as a zero, which
/// spoils the checksum.
[[nodiscard]] termios rawTermios(const LineSettings& settings);

/// Puts the settings on the device. A device without parity (a pseudo-terminal) is borne with; one that keeps another
/// rate or another width of a byte is not: false.
[[nodiscard]] bool applyTo(int descriptor, const LineSettings& settings);

}  // namespace qrv
