#include "link/frmComm.h"

#include <span>

#include "link/Frame.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "platform/RunTimeError.h"
#include "platform/SerialPort.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

/// A download's progress goes by steps of so many bytes.
constexpr std::int16_t kProgressStep = 15;
constexpr std::chrono::milliseconds kBankDelay{500};

}  // namespace

frmComm::frmComm(Workbench& workbench, SerialPortList* ports)
    : Form("frmComm", "Comm Port Settings"),
      workbench_(workbench),
      ports_(ports),
      transaction_(workbench.platform.serialPort, workbench.platform.eventPump, workbench.platform.clock) {}

std::string frmComm::portSettings() const { return workbench_.baud_rate + "," + workbench_.parity + ",8, 1"; }

void frmComm::Open_Comm_Port() {
    // A transaction holds the port: an event that it pumps must not take it away.
    if (transaction_.isRunning()) return;
    port_is_open = false;
    SerialPort& port = workbench_.platform.serialPort;
    if (port.isOpen()) Close_Comm_Port();
    const std::string name = "COM" + joined(workbench_.comm_port);
    if (port.isOpen()) {
        workbench_.platform.messageBox.say(name + ": in use. Change the setting to another port.");
        return;
    }
    if (!port.open(workbench_.comm_port, portSettings())) {
        workbench_.platform.messageBox.say(name + ": not available. Change the setting to another port.");
        return;
    }
    port_is_open = true;
    port.discardInput();
}

void frmComm::Close_Comm_Port() {
    if (transaction_.isRunning()) return;
    port_is_open = false;
    workbench_.platform.serialPort.close();
}

void frmComm::sum_xmit_bfr(std::int16_t last_index) {
    const auto& buffer = workbench_.xmit_bfr;
    const std::size_t count = last_index < 0 ? 0 : static_cast<std::size_t>(last_index) + 1;
    if (count > buffer.size()) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    const Checksum checksum = checksumOf(std::span(buffer).first(count));
    transmitted(last_index + 1) = checksum.high;
    transmitted(last_index + 2) = checksum.low;
}

void frmComm::check_rcv_checksum(bool& good) const { good = isSound(workbench_.rcv_bfr); }

void frmComm::send_and_get(std::int16_t tx_count, std::int16_t rx_count) {
    workbench_.xfer_ok = false;
    if (transaction_.isRunning()) return;
    if (tx_count < 0 || rx_count < 0) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    workbench_.xmit_bfr.resize(static_cast<std::size_t>(tx_count));
    // Sent from a copy: what an event builds meanwhile is not to go out in the frame's place.
    const auto frame = workbench_.xmit_bfr;
    const Ending ending = transaction_.run({.frame = frame,
                                            .replyLength = static_cast<std::size_t>(rx_count),
                                            .reply = workbench_.rcv_bfr,
                                            .aborted = workbench_.xfer_abort});
    retriesSoFar_ += transaction_.retryCount();
    workbench_.xfer_ok = ending == Ending::Good;
    workbench_.xmit_bfr = frame;
    if (workbench_.xfer_ok) beginFrame();
    failuresSoFar_ += workbench_.xfer_ok ? 0 : 1;
    if (ending == Ending::Failed) return;
    if (workbench_.in_download) countSent(tx_count);
    if (workbench_.in_upload) countReceived(rx_count);
}

bool frmComm::wasKeptBack() const { return workbench_.xfer_abort && !transaction_.frameLeft(); }

std::int32_t frmComm::countedBytes(std::int16_t tx_count) { return (tx_count / kProgressStep + 1) * kProgressStep; }

/// From 0 up to and including the frame's length: 15 for a frame of 3 bytes, 150 for one of 135.
void frmComm::countSent(std::int16_t tx_count) {
    for (std::int16_t counted = 0; counted <= tx_count; counted += kProgressStep) {
        workbench_.bytes_sent = toInt32(std::int64_t{workbench_.bytes_sent} + kProgressStep);
        showBytesSent();
    }
}

/// What was asked for counts, whatever came.
void frmComm::countReceived(std::int16_t rx_count) {
    workbench_.bytes_received = toInt32(std::int64_t{workbench_.bytes_received} + rx_count);
    showBytesReceived();
}

void frmComm::bank_delay() {
    bank_delay_done = false;
    tmrBlockBankDelay.start(kBankDelay, workbench_.platform.clock.now());
    // The wait is for as long as the flag is set, and it has just been cleared: so it ends at once. A download's timing
    // rests on that.
    tmrBlockBankDelay.stop();
}

}  // namespace qrv
