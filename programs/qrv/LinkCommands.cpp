// Serial ports, and single exchanges with a controller.
#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "Commands.h"
#include "LinkSession.h"
#include "Terminal.h"
#include "json/Json.h"
#include "link/BlockTable.h"
#include "link/LiveOutputs.h"
#include "platform/CodePage.h"
#include "platform/FileSettings.h"
#include "platform/Folders.h"
#include "platform/HexText.h"
#include "platform/posix/SerialPorts.h"

namespace qrv {

namespace {

// --- ports ---

std::int16_t portNumberOf(const std::string& name) {
    const auto number = SerialPorts::numberOf(name);
    if (number && *number <= SerialPorts::kHighestNumber) return *number;
    throw CommandFailure(ExitCode::Usage, name + " names no port: give COM1 to COM99.");
}

void mapPort(SerialPorts& ports, const std::string& text) {
    const auto sign = text.find('=');
    if (sign == std::string::npos || sign + 1 == text.size()) {
        throw CommandFailure(ExitCode::Usage, "Give the port and its device as COM7=/dev/pts/3.");
    }
    ports.map(portNumberOf(text.substr(0, sign)), text.substr(sign + 1));
}

void unmapPort(SerialPorts& ports, const std::string& name) {
    if (!ports.unmap(portNumberOf(name))) throw CommandFailure(ExitCode::Findings, name + " stands for no device.");
}

std::string portLine(const SerialPortEntry& entry) {
    std::string line = entry.name() + "\t" + entry.path;
    if (!entry.isPresent()) return line + "\tnot there\n";
    if (entry.device != entry.path) line += "\t" + entry.device;
    if (!entry.maker.empty()) line += "\t" + entry.maker;
    if (!entry.serialNumber.empty()) line += "\tserial number " + entry.serialNumber;
    return line + "\n";
}

Json portJson(const SerialPortEntry& entry) {
    return Json::object({{"name", entry.name()},
                         {"path", entry.path},
                         {"present", entry.isPresent()},
                         {"device", entry.device},
                         {"maker", entry.maker},
                         {"serialNumber", entry.serialNumber}});
}

// --- a controller ---

BlockRecord blockRecord(LinkSession& session, std::int16_t block) {
    constexpr std::int16_t kRecordsPerRead = 15;
    constexpr std::int16_t kReadLength = kBlockRecordLength * kRecordsPerRead;
    const auto data = session.read(static_cast<std::uint8_t>(Section::BlockTableBack), kReadLength,
                                   block / kRecordsPerRead * kReadLength);
    const auto start = static_cast<std::size_t>(block % kRecordsPerRead * kBlockRecordLength);
    return blockRecordOf(std::span(data).subspan(start).first<kBlockRecordLength>());
}

std::string hexLine(std::size_t offset, std::span<const std::uint8_t> bytes) {
    std::string line;
    for (int shift = 12; shift >= 0; shift -= 4) line += kHexDigits[(offset >> shift) & 15];
    return line + ' ' + hexPairs(bytes) + "\n";
}

}  // namespace

void showPorts(Terminal& terminal, const PortsOptions& options) {
    FileSettings settings(settingsFile(systemEnvironment));
    SerialPorts ports(settings);
    if (!options.map.empty()) mapPort(ports, options.map);
    if (!options.unmap.empty()) unmapPort(ports, options.unmap);
    const auto entries = ports.entries();
    if (const FileResult& fault = settings.fault()) throw CommandFailure(ExitCode::File, fault->text);
    if (options.json) {
        terminal.write(Json::array(entries, portJson).text());
        return;
    }
    if (entries.empty()) terminal.say("No serial port is there. One is given a number by qrv ports --map COM7=DEVICE.");
    for (const SerialPortEntry& entry : entries) terminal.write(portLine(entry));
}

void pollController(Terminal& terminal, const LineOptions& options) {
    LinkSession session(terminal, options);
    session.connect();
    terminal.write("A controller answers on " + session.lineName() + ".\n");
}

void showVersion(Terminal& terminal, const LineOptions& options) {
    LinkSession session(terminal, options);
    session.connect();
    std::string text;
    session.exchange([&](frmComm& comm) { comm.get_version(text); });
    terminal.write(toUtf8(inOneLine(text)) + "\n");
}

void readBlock(Terminal& terminal, const ReadBlockOptions& options) {
    constexpr auto kAnalog = static_cast<std::uint8_t>(OutputKind::Analog);
    const std::int16_t block = options.block;
    LinkSession session(terminal, options.line);
    session.connect();
    const BlockRecord record = blockRecord(session, block);
    if (record.function == kNop) {
        throw CommandFailure(ExitCode::Findings, "Block " + std::to_string(block) + " is empty and has no output.");
    }
    const OutputKind kind = record.type == kAnalog ? OutputKind::Analog : OutputKind::Discrete;
    std::int32_t value = 0;
    session.exchange([&](frmComm& comm) {
        kind == OutputKind::Analog ? comm.get_analog(block, value) : comm.get_digital(block, value);
    });
    terminal.write(outputText(kind, value) + "\n");
}

void readSection(Terminal& terminal, const ReadOptions& options) {
    constexpr std::size_t kBytesPerLine = 16;
    LinkSession session(terminal, options.line);
    session.connect();
    const auto data = session.read(static_cast<std::uint8_t>(options.section), static_cast<std::int16_t>(options.count),
                                   options.offset);
    for (std::size_t start = 0; start < data.size(); start += kBytesPerLine) {
        const auto bytes = std::span(data).subspan(start, std::min(kBytesPerLine, data.size() - start));
        terminal.write(hexLine(static_cast<std::size_t>(options.offset) + start, bytes));
    }
}

}  // namespace qrv
