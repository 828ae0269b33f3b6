// Single commands, the constants image, and the lines of an upload's log.
#include "link/ByteNumbers.h"
#include "link/Frame.h"
#include "link/UploadLog.h"
#include "link/frmComm.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "platform/RunTimeError.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr std::int16_t kConstantsPerReply = 32;
constexpr std::int16_t kBytesPerConstant = 4;
constexpr std::int16_t kConstantsReply = kConstantsPerReply * kBytesPerConstant;

/// An upload prints tens of thousands of them, so not by way of a number's general form.
void appendByte(std::string& line, std::uint8_t byte) {
    line += std::to_string(byte);
    line += ' ';
}

}  // namespace

std::uint8_t frmComm::received(int index) const {
    const auto& buffer = workbench_.rcv_bfr;
    if (index < 0 || static_cast<std::size_t>(index) >= buffer.size()) {
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    }
    return buffer[static_cast<std::size_t>(index)];
}

void frmComm::sendCommand(Command command) {
    put_bytes({static_cast<int>(command)});
    sealAndSend(1, kShortReply);
}

void frmComm::poll_qrm3() {
    if (!transaction_.isRunning()) workbench_.rcv_bfr.assign(kLongestFrame, 0);
    sendCommand(Command::Poll);
    if (workbench_.xfer_ok && received(0) != kControllerIsThere) workbench_.xfer_ok = false;
}

void frmComm::get_version(std::string& version) {
    version.clear();
    put_read(Section::Version, kVersionLength, 0);
    send_and_get(kReadRequest, kVersionLength + kAroundData);
    if (!workbench_.xfer_ok) return;
    for (int index = kDataStart; index < kDataStart + kVersionLength; ++index) {
        version.push_back(static_cast<char>(received(index)));
    }
}

void frmComm::SendEE() {
    sendCommand(Command::Commit);
    if (workbench_.xfer_ok || workbench_.xfer_abort) return;
    workbench_.platform.messageBox.say("UPDATE EEPROM COMMAND FAILED");
}

void frmComm::requestOutput(std::int16_t block) {
    int index = put_bytes({static_cast<int>(Command::ReadOutput)});
    put_word(index, block);
    sealAndSend(static_cast<std::int16_t>(index), kShortReply);
    // A good exchange is not asked for, but a reply must be there to be read.
    static_cast<void>(received(2));
}

void frmComm::get_analog(std::int16_t block, std::int32_t& value) {
    requestOutput(block);
    value = longint(received(1) * 256 + received(2));
}

void frmComm::get_digital(std::int16_t block, std::int32_t& value) {
    requestOutput(block);
    value = received(1);
}

void frmComm::send_key(std::int16_t key) {
    put_bytes({static_cast<int>(Command::PressKey), key & 0xFF});
    sealAndSend(2, kShortReply);
}

void frmComm::get_integer_constant(std::int16_t& value) {
    const int start = kDataStart + kBytesPerConstant * constant_index;
    const std::int32_t word = received(start) * 256 + received(start + 1);
    read_constants();
    value = longint(word);
}

void frmComm::get_long_constant(std::int32_t& value) {
    const int start = kDataStart + kBytesPerConstant * constant_index;
    std::int32_t assembled = 0;
    for (int byte = 0; byte < kBytesPerConstant; ++byte) {
        assembled = blong(assembled, received(start + byte), kBytesPerConstant - 1 - byte);
    }
    read_constants();
    value = assembled;
}

void frmComm::get_no_constant(std::int16_t& value) {
    read_constants();
    value = 0;
}

void frmComm::read_constants() {
    constant_index = toInt16(constant_index + 1);
    if (constant_index != kConstantsPerReply || workbench_.xfer_abort) return;
    put_read(Section::Constants, kConstantsReply, constant_offset);
    printLine("C_offset: " + printed(constant_offset));
    PrintXmitBuffer(kReadRequest);
    send_and_get(kReadRequest, kConstantsReply + kAroundData);
    PrintRcvBuffer(kConstantsReply + kAroundData);
    PrintRetries();
    if (wasKeptBack()) return;
    // Whether the read went well is not asked: the upload goes on with whatever came, and only the log can tell.
    constant_offset = toInt16(constant_offset + kConstantsReply);
    constant_index = 0;
}

bool frmComm::constantsEnded() const { return constant_index == kConstantsPerReply; }

void frmComm::printLine(std::string_view line) {
    if (log_ != nullptr) log_->print(line);
}

void frmComm::PrintXmitBuffer(std::int16_t count) {
    if (log_ == nullptr) return;
    std::string line = "Sent:";
    for (int index = 0; index < count; ++index) appendByte(line, transmitted(index));
    printLine(line);
}

void frmComm::PrintRcvBuffer(std::int16_t count) {
    if (log_ == nullptr) return;
    const auto& reply = workbench_.rcv_bfr;
    printLine("Expecting:" + printed(count) + "Bytes. Received" + printed(reply.size()));
    std::string line = "Received:";
    for (const std::uint8_t byte : reply) appendByte(line, byte);
    printLine(line);
}

void frmComm::AbortUpload(const std::string& reason) {
    const std::string path = log_ == nullptr ? std::string{} : log_->path();
    workbench_.platform.messageBox.say("Error Occurred While Uploading - Please forward \n" + path +
                                       "\nto Tessaly Instruments");
    workbench_.xfer_abort = true;
    workbench_.xfer_abort_reason = reason;
}

void frmComm::PrintRetries() { printLine("Retries:" + printed(retry_count())); }

}  // namespace qrv
