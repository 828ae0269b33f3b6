// A transaction with a controller, against a raw loop on the same pseudo-terminal and against a Modbus library's frames
// of like size.
#include "LinkBench.h"
#include "platform/posix/PollPump.h"

#ifdef QRV_WITH_MODBUS
#include <modbus.h>
#endif

namespace qrv {
namespace {

#ifdef QRV_WITH_MODBUS

using Bytes = std::vector<std::uint8_t>;

Bytes withCrc(Bytes frame) {
    unsigned crc = 0xFFFF;
    for (const std::uint8_t byte : frame) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? (crc >> 1) ^ 0xA001 : crc >> 1;
    }
    frame.push_back(static_cast<std::uint8_t>(crc & 0xFF));
    frame.push_back(static_cast<std::uint8_t>(crc >> 8));
    return frame;
}

/// An exchange of the library's that is as long as one of ours.
struct LibraryExchange {
    std::size_t requestLength;
    Bytes reply;
    std::function<int(modbus_t*)> run;
};

constexpr int kWritten = 63;
constexpr int kRead = 76;
std::array<std::uint16_t, 128> registers{};

LibraryExchange exchangeFor(const ExchangeSize& size) {
    if (size.request > 100) {
        return {.requestLength = 9 + 2 * kWritten,
                .reply = withCrc({1, 16, 0, 0, 0, kWritten}),
                .run = [](modbus_t* line) { return modbus_write_registers(line, 0, kWritten, registers.data()); }};
    }
    if (size.reply > 100) {
        Bytes reply{1, 3, 2 * kRead};
        reply.resize(3 + 2 * kRead, 1);
        return {.requestLength = 8, .reply = withCrc(reply), .run = [](modbus_t* line) {
                    return modbus_read_registers(line, 0, kRead, registers.data());
                }};
    }
    return {.requestLength = 8, .reply = withCrc({1, 6, 0, 0, 0, 7}), .run = [](modbus_t* line) {
                return modbus_write_register(line, 0, 7);
            }};
}

/// One far end for each side: the library opens its own.
bool compareWithLibrary(EventPump& pump, double atMost) {
    Answerer ourEnd;
    Answerer theirEnd;
    SystemClock clock;
    PosixSerialPort port([&](std::int16_t) { return ourEnd.path(); });
    if (!port.open(1, "38400,O,8, 1")) std::abort();
    Transaction transaction(port, pump, clock);
    modbus_t* line = modbus_new_rtu(theirEnd.path().c_str(), 38400, 'N', 8, 1);
    modbus_set_slave(line, 1);
    if (modbus_connect(line) != 0) std::abort();
    const bool aborted = false;
    Bytes reply;
    bool isWithin = true;
    for (const ExchangeSize& size : kExchangeSizes) {
        const Bytes frame = frameOf(size.request);
        ourEnd.answer(size.request, frameOf(size.reply));
        const LibraryExchange exchange = exchangeFor(size);
        theirEnd.answer(exchange.requestLength, exchange.reply);
        const auto ours = [&] {
            for (int i = 0; i < kExchangesPerRound; ++i) {
                if (transaction.run({.frame = frame, .replyLength = size.reply, .reply = reply, .aborted = aborted}) !=
                    Ending::Good)
                    std::abort();
            }
        };
        const auto theirs = [&] {
            for (int i = 0; i < kExchangesPerRound; ++i) {
                if (exchange.run(line) < 0) std::abort();
            }
        };
        isWithin = compare(nameOf("send_and_get", size), ours, "libmodbus RTU", theirs, atMost) <= atMost && isWithin;
    }
    modbus_close(line);
    modbus_free(line);
    return isWithin;
}

#else

bool compareWithLibrary(EventPump&, double) {
    std::puts("libmodbus isn't installed: not compared with");
    return true;
}

#endif

}  // namespace
}  // namespace qrv

int main() {
    const qrv::SystemClock clock;
    qrv::PollPump pump(clock);
    bool isWithin = qrv::compareWithRawLoop("send_and_get", pump, 1.5);
    isWithin = qrv::compareWithLibrary(pump, 1.3) && isWithin;
    isWithin = qrv::measureWaiting("Waiting on a paced line", pump, 0.02) && isWithin;
    isWithin = qrv::measureVanished("While the far end is gone", pump, 0.05) && isWithin;
    return isWithin ? 0 : 1;
}
