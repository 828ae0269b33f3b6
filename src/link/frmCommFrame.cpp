// The building of frames in `xmit_bfr`.
#include "link/Frame.h"
#include "link/frmComm.h"
#include "platform/Numerals.h"
#include "platform/RunTimeError.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

std::uint8_t byteOf(std::int32_t value, int position) {
    return static_cast<std::uint8_t>((value >> (8 * position)) & 0xFF);
}

}  // namespace

void frmComm::beginFrame() { workbench_.xmit_bfr.assign(kLongestFrame, 0); }

std::uint8_t& frmComm::transmitted(int index) {
    auto& buffer = workbench_.xmit_bfr;
    if (index < 0 || static_cast<std::size_t>(index) >= buffer.size()) {
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    }
    return buffer[static_cast<std::size_t>(index)];
}

int frmComm::put_bytes(std::initializer_list<int> bytes) {
    beginFrame();
    int index = 0;
    for (const int byte : bytes) transmitted(index++) = toByte(byte);
    return index;
}

void frmComm::put_byte(int& index, std::int32_t value) {
    const std::int32_t stored = value < 0 ? ((value & 127) | 128) : value;
    transmitted(index) = toByte(stored);
    ++index;
}

void frmComm::put_word(int& index, std::int32_t value) {
    if (value < -0x8000 || value > 0xFFFF) raiseOverflow();
    transmitted(index++) = byteOf(value, 1);
    transmitted(index++) = byteOf(value, 0);
}

void frmComm::put_long(int& index, std::int32_t value) {
    transmitted(index++) = byteOf(value, 3);
    transmitted(index++) = byteOf(value, 2);
    const bool hasBitAbove = value < 0 || value > 0x7FFF;
    put_word(index, (value & 0x7FFF) | (hasBitAbove ? 0x8000 : 0));
}

void frmComm::put_string(int& index, int length, std::string_view text) {
    if (text.size() > static_cast<std::size_t>(length)) raiseOverflow();
    for (const char character : text) transmitted(index++) = static_cast<std::uint8_t>(character);
    for (auto written = static_cast<int>(text.size()); written < length; ++written) transmitted(index++) = 0;
}

int frmComm::put_write_head(Section section, std::int16_t count, std::int32_t offset) {
    int index = put_bytes({static_cast<int>(Command::Write), static_cast<int>(section), count});
    put_word(index, offset);
    return index;
}

void frmComm::put_read(Section section, std::int16_t count, std::int32_t offset) {
    int index = put_bytes({static_cast<int>(Command::Read), static_cast<int>(section), count});
    put_word(index, offset);
    sum_xmit_bfr(static_cast<std::int16_t>(index - 1));
}

void frmComm::send_section_frame(std::int16_t count) {
    if (workbench_.xfer_abort) return;
    std::int64_t sum = workbench_.section_checksum;
    for (int index = kDataStart; index < kDataStart + count; ++index) sum += transmitted(index);
    workbench_.section_checksum = toInt32(sum);
    sealAndSend(static_cast<std::int16_t>(kDataStart + count), kShortReply);
}

void frmComm::put_section_checksum() {
    transmitted(kDataStart) = byteOf(workbench_.section_checksum, 1);
    transmitted(kDataStart + 1) = byteOf(workbench_.section_checksum, 0);
}

/// @param bodyLength  bytes of the frame without its checksum
void frmComm::sealAndSend(std::int16_t bodyLength, std::int16_t replyLength) {
    sum_xmit_bfr(static_cast<std::int16_t>(bodyLength - 1));
    send_and_get(static_cast<std::int16_t>(bodyLength + 2), replyLength);
}

}  // namespace qrv
