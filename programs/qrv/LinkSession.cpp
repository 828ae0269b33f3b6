#include "LinkSession.h"

#include <csignal>
#include <string>
#include <vector>

#include "link/BadAnswer.h"
#include "link/CommSettings.h"
#include "platform/SerialPort.h"
#include "platform/UtcText.h"
#include "platform/posix/SerialPorts.h"

namespace qrv {

namespace {

constexpr const char* kStandardError = "-";

Platform withBox(Platform services, MessageBox& box) {
    return {.messageBox = box,
            .fileDialog = services.fileDialog,
            .formHost = services.formHost,
            .settings = services.settings,
            .clock = services.clock,
            .eventPump = services.eventPump,
            .serialPort = services.serialPort};
}

}  // namespace

LinkSession::LinkSession(Terminal& terminal, const LineOptions& options, TransferReport* report)
    : terminal_(terminal),
      platform_(terminal),
      bench_(withBox(platform_.services(), report == nullptr ? static_cast<MessageBox&>(box_) : *report),
             findProgramPlaces()),
      comm_(bench_) {
    readCommSettings(bench_);
    takeOptions(options);
    beginTrace(options.trace, report);
    comm_.observe(this);
    platform_.pump().catchSignals({SIGINT, SIGTERM, SIGHUP}, [this](int) { cancel(); });
}

void LinkSession::cancel() {
    isCancelled_ = true;
    bench_.xfer_abort = true;
    bench_.xfer_abort_reason = "signal";
    whenCancelled();
}

void LinkSession::takeOptions(const LineOptions& options) {
    if (!options.baud.empty()) bench_.baud_rate = options.baud;
    if (!options.parity.empty()) bench_.parity = options.parity;
    if (options.port.empty()) return;
    if (options.port.find('/') != std::string::npos) {
        platform_.nameDevice(options.port);
        return;
    }
    const auto number = SerialPorts::numberOf(options.port);
    if (!number || *number > SerialPorts::kHighestNumber) {
        throw CommandFailure(ExitCode::Usage, options.port + " names no port: give COM1 to COM99, or a device path.");
    }
    bench_.comm_port = *number;
}

void LinkSession::beginTrace(const std::string& file, TransferReport* report) {
    if (file.empty()) return;
    FrameTrace::Line line = [this, report](const std::string& text) {
        report == nullptr ? terminal_.say(text) : report->trace(text);
    };
    if (file != kStandardError) {
        tracePath_ = file;
        traceFile_.open(file, std::ios::app);
        if (!traceFile_) throw CommandFailure(ExitCode::File, file + " can't be written.");
        line = [this](const std::string& text) { traceToFile(text); };
    }
    line(utcText(bench_.platform.clock.wallTime(), "%Y-%m-%d %H:%M:%S UTC") + ", " + lineName());
    trace_ = std::make_unique<FrameTrace>(bench_.platform.clock, line);
}

/// A trace that breaks off ends no transfer. It is told at once, and by the exit code.
void LinkSession::traceToFile(const std::string& line) {
    if (!traceFile_) return;
    traceFile_ << line << std::endl;
    if (!traceFile_) terminal_.tellLoss(tracePath_ + " can't be written: the trace is not whole.");
}

std::string LinkSession::lineName() const {
    const std::string& device = platform_.namedDevice();
    const std::string port = device.empty() ? "COM" + std::to_string(bench_.comm_port) : device;
    return port + " (" + bench_.baud_rate + "," + bench_.parity + ")";
}

void LinkSession::connect() {
    comm_.Open_Comm_Port();
    if (!comm_.port_is_open) throw CommandFailure(ExitCode::Link, cause());
    exchange([](frmComm& comm) { comm.poll_qrm3(); });
}

void LinkSession::exchange(const std::function<void(frmComm&)>& exchange) {
    const bool isWhole = bearingBadAnswers([&] { exchange(comm_); });
    requireGood();
    if (!isWhole) failOfLength();
}

void LinkSession::requireGood() {
    if (bench_.xfer_ok) return;
    if (bench_.xfer_abort) throw CommandFailure(ExitCode::Cancelled, "Cancelled.");
    throw CommandFailure(ExitCode::Link, cause());
}

std::string LinkSession::cause() const {
    const std::string fault = bench_.platform.serialPort.faultText();
    if (!fault.empty()) return fault;
    const std::string line = lineName() + ": ";
    // A good reply with another status than a controller's: something is there, and it isn't what is wanted.
    if (lastVerdict_ == Verdict::Good) {
        return line + "what answers is no QRV controller that is ready: check what the cable leads to.";
    }
    if (anyByteCame_) return line + "what comes back is garbled: check baud rate and parity, and the cable for noise.";
    return line + "no answer: check that the controller is on, and the cable.";
}

void LinkSession::failOfLength() const {
    throw CommandFailure(ExitCode::Link, lineName() + ": the answer is of another length than what was asked for.");
}

std::vector<std::uint8_t> LinkSession::read(std::uint8_t section, std::int16_t count, std::int32_t offset) {
    exchange([=](frmComm& comm) {
        comm.put_read(static_cast<Section>(section), count, offset);
        comm.send_and_get(kReadRequest, static_cast<std::int16_t>(count + kAroundData));
    });
    const auto& reply = bench_.rcv_bfr;
    if (reply.size() != static_cast<std::size_t>(count) + kAroundData) failOfLength();
    return {reply.begin() + kDataStart, reply.end() - 2};
}

void LinkSession::sent(std::span<const std::uint8_t> frame, int attempt) {
    if (attempt == 1) anyByteCame_ = false;
    if (trace_) trace_->sent(frame, attempt);
}

void LinkSession::received(std::span<const std::uint8_t> reply, Verdict verdict) {
    if (!reply.empty()) anyByteCame_ = true;
    lastVerdict_ = verdict;
    if (trace_) trace_->received(reply, verdict);
}

void LinkSession::discarded(std::span<const std::uint8_t> bytes) {
    if (trace_) trace_->discarded(bytes);
}

void LinkSession::resynchronised(std::span<const std::uint8_t> filler) {
    if (trace_) trace_->resynchronised(filler);
}

}  // namespace qrv
