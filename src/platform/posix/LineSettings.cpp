#include "platform/posix/LineSettings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace qrv {

namespace {

struct Rate {
    int baud;
    speed_t code;
};

constexpr std::array kRates{
    Rate{300, B300},     Rate{600, B600},       Rate{1200, B1200},     Rate{2400, B2400},
    Rate{4800, B4800},   Rate{9600, B9600},     Rate{19200, B19200},   Rate{38400, B38400},
    Rate{57600, B57600}, Rate{115200, B115200}, Rate{230400, B230400},
};

const Rate* rateOf(int baud) {
    const auto* found = std::ranges::find(kRates, baud, &Rate::baud);
    return found == kRates.end() ? nullptr : found;
}

std::optional<Parity> parityOf(char letter) {
    switch (letter) {
        case 'O': return Parity::Odd;
        case 'E': return Parity::Even;
        case 'N': return Parity::None;
        default: return std::nullopt;
    }
}

tcflag_t parityFlags(Parity parity) {
    switch (parity) {
        case Parity::Odd: return PARENB | PARODD;
        case Parity::Even: return PARENB;
        case Parity::None: return 0;
    }
    return 0;
}

}  // namespace

std::optional<LineSettings> lineSettingsOf(std::string_view text) {
    int baud = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), baud);
    if (error != std::errc{} || rateOf(baud) == nullptr) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
    if (text.size() != 7 || text.front() != ',' || text.substr(2) != ",8, 1") return std::nullopt;
    const auto parity = parityOf(text[1]);
    if (!parity) return std::nullopt;
    return LineSettings{.baud = baud, .parity = *parity};
}

termios rawTermios(const LineSettings& settings) {
    termios line{};
    // No IGNPAR: it would drop a spoilt byte and shift those behind it.
    line.c_iflag = settings.parity == Parity::None ? 0 : INPCK;
    line.c_cflag = CS8 | CREAD | CLOCAL | parityFlags(settings.parity);
    line.c_cc[VMIN] = 1;
    line.c_cc[VTIME] = 0;
    const Rate* rate = rateOf(settings.baud);
    cfsetispeed(&line, rate->code);
    cfsetospeed(&line, rate->code);
    return line;
}

bool applyTo(int descriptor, const LineSettings& settings) {
    const termios wanted = rawTermios(settings);
    // The result says nothing: where parity is all that would change, a device without it answers "invalid" although
    // all else stands. What the device holds afterwards decides.
    static_cast<void>(tcsetattr(descriptor, TCSANOW, &wanted));
    termios held{};
    if (tcgetattr(descriptor, &held) != 0) return false;
    constexpr tcflag_t kLocalModes = ICANON | ECHO | ISIG | IEXTEN;
    constexpr tcflag_t kInputModes = ISTRIP | INLCR | IGNCR | ICRNL | IXON | IXOFF | IGNPAR | PARMRK;
    return cfgetospeed(&held) == cfgetospeed(&wanted) && (held.c_cflag & (CSIZE | CSTOPB)) == CS8 &&
           (held.c_lflag & kLocalModes) == 0 && (held.c_iflag & kInputModes) == 0 && (held.c_oflag & OPOST) == 0;
}

}  // namespace qrv
