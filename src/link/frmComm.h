// "Comm Port Settings", and the home of the controller's protocol: every transfer talks to a controller through this
// form's routines, which work on the transfer's globals in Workbench. Loaded unseen for a transfer, shown for the
// settings.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "link/Commands.h"
#include "link/Sections.h"
#include "link/TickTimer.h"
#include "link/Transaction.h"
#include "link/UploadFindings.h"
#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

class LinkObserver;
class SerialPortList;
struct SerialPortName;
class UploadLog;
struct Workbench;

class frmComm final : public Form {
 public:
    /// @param ports  the ports to choose from; null where the system lists none
    explicit frmComm(Workbench& workbench, SerialPortList* ports = nullptr);

    // --- the port ---
    /// Opens the port that the settings name, or shows why not. The result is `port_is_open`.
    void Open_Comm_Port();
    void Close_Comm_Port();
    bool port_is_open = false;

    // --- a transaction ---
    /// Puts the checksum of `xmit_bfr[0..last_index]` behind it.
    void sum_xmit_bfr(std::int16_t last_index);
    void check_rcv_checksum(bool& good) const;
    /// One transaction: sends the frame in `xmit_bfr`, and again on silence or a bad checksum, 10 sends in all.
    /// @param tx_count  length of the frame, bytes, checksum included: 3..301
    /// @param rx_count  length of the expected reply, bytes, checksum included
    /// Sets `xfer_ok`; the reply is in `rcv_bfr` from index 0; on success `xmit_bfr` is all zero again, else it holds
    /// the frame. Pumps events while it waits; a call from within such an event does nothing but leave `xfer_ok` False.
    /// Shows no message: that is the caller's.
    void send_and_get(std::int16_t tx_count, std::int16_t rx_count);
    /// Attempts of the last transaction that failed.
    [[nodiscard]] std::int16_t retry_count() const { return transaction_.retryCount(); }
    /// The same of all transactions so far.
    [[nodiscard]] std::int32_t retriesSoFar() const { return retriesSoFar_; }
    /// Transactions so far that came to nothing, after all their attempts.
    [[nodiscard]] std::int32_t failuresSoFar() const { return failuresSoFar_; }
    /// What the last failure carried went by another transaction: it counts as none.
    void forgiveFailure() { --failuresSoFar_; }
    /// Whether the last transaction's frame went out at all.
    [[nodiscard]] bool frameLeft() const { return transaction_.frameLeft(); }
    /// A Cancel came before the last transaction's frame, which did not go out: it has not failed.
    [[nodiscard]] bool wasKeptBack() const;
    [[nodiscard]] std::int16_t timer_ticks() const { return transaction_.timer().ticks(); }
    [[nodiscard]] bool timed_out() const { return transaction_.timer().timedOut(); }
    /// Waits on the same timer: until `timed_out` is set, which can be at once.
    void pumpUntilTimedOut(std::chrono::milliseconds interval) { transaction_.pumpUntilTimedOut(interval); }
    /// Returns without delay, and the timing of a download rests on that.
    void bank_delay();
    bool bank_delay_done = false;
    /// Its tick would set `bank_delay_done`; it never comes.
    TickTimer tmrBlockBankDelay;
    void observe(LinkObserver* observer) { transaction_.observe(observer); }
    /// What a frame of that length adds to `bytes_sent`.
    [[nodiscard]] static std::int32_t countedBytes(std::int16_t tx_count);
    /// Called for every step of `bytes_sent` in a download and of `bytes_received` in an upload.
    std::function<void()> showBytesSent = [] {};
    std::function<void()> showBytesReceived = [] {};

    // --- building a frame; `index` is left one past the last byte written ---
    /// Begins a new frame with these bytes and gives the next index.
    int put_bytes(std::initializer_list<int> bytes);
    /// 0..255, or a negative value as the byte of its two's-complement form.
    void put_byte(int& index, std::int32_t value);
    /// Big-endian; -32768..65535.
    void put_word(int& index, std::int32_t value);
    /// Big-endian, except that bit 15 is set whenever any of the bits 15..31 is.
    void put_long(int& index, std::int32_t value);
    /// One byte a character, then zeros up to `length`.
    void put_string(int& index, int length, std::string_view text);
    /// The head of a write of `count` bytes; gives the index of the first of them.
    int put_write_head(Section section, std::int16_t count, std::int32_t offset);
    /// A whole request to read `count` bytes, for `send_and_get(7, count + 7)`.
    void put_read(Section section, std::int16_t count, std::int32_t offset);
    /// Sends the `count` data bytes of the write in `xmit_bfr` and adds them to `section_checksum`; nothing once
    /// `xfer_abort` is set.
    void send_section_frame(std::int16_t count);
    void put_section_checksum();

    // --- single commands ---
    /// Is a controller there? The answer is `xfer_ok`.
    void poll_qrm3();
    /// The 24 characters of the firmware's version text, or "" where the read failed.
    void get_version(std::string& version);
    /// Commits the configuration to the controller's permanent memory.
    void SendEE();
    /// Does nothing: the firmware is looked at before a download begins.
    void CheckVersion() {}
    /// Sends a command of one byte, an activation or the announcement.
    void sendCommand(Command command);
    void get_analog(std::int16_t block, std::int32_t& value);
    void get_digital(std::int16_t block, std::int32_t& value);
    void send_key(std::int16_t key);

    // --- the constants image, read slot by slot ---
    std::int16_t constant_offset = 0;  ///< next offset to read
    std::int16_t constant_index = 0;   ///< 0..31, the constant's place in `rcv_bfr`; 32 where they ended
    void get_integer_constant(std::int16_t& value);
    void get_long_constant(std::int32_t& value);
    void get_no_constant(std::int16_t& value);
    /// Steps to the next constant, reading the next 32 of them when those in `rcv_bfr` are used up.
    void read_constants();
    /// A Cancel kept the next 32 back.
    [[nodiscard]] bool constantsEnded() const;

    // --- the upload's log ---
    /// `log` may be null: then nothing is written.
    void logTo(UploadLog* log) { log_ = log; }
    void PrintXmitBuffer(std::int16_t count);
    void PrintRcvBuffer(std::int16_t count);
    void PrintRetries();
    void printLine(std::string_view line);
    /// Tells of an upload that can't go on, and where its log is; raises `xfer_abort` with the reason.
    void AbortUpload(const std::string& reason);

    // --- beside the protocol: what the last transfer met ---
    UploadFindings uploadFindings;
    /// Rows of string parameters that a download did not send.
    std::int32_t unsentStrings = 0;

    // --- the settings form ---
    ListBox Combo1;  ///< baud rate
    ListBox Combo2;  ///< port
    ListBox Combo3;  ///< parity
    Label Label1{.caption = "BAUD RATE"};
    Label Label2{.caption = "COMM PORT"};
    Label Label3{.caption = "PARITY"};
    MenuEntry mnuExitEntry{.name = "mnuExit", .caption = "&Done", .tag = {}};
    void load() override;
    void activate() override;
    void unload() override { storeSettings(); }
    void chooseBaudRate(int index);
    void choosePort(int index) { Combo2.listIndex = index; }
    void chooseParity(int index);
    void mnuExit();

 private:
    void beginFrame();
    void sealAndSend(std::int16_t bodyLength, std::int16_t replyLength);
    void countSent(std::int16_t tx_count);
    void countReceived(std::int16_t rx_count);
    [[nodiscard]] std::uint8_t received(int index) const;
    std::uint8_t& transmitted(int index);
    void requestOutput(std::int16_t block);
    [[nodiscard]] std::string portSettings() const;
    [[nodiscard]] std::vector<SerialPortName> portNames() const;
    [[nodiscard]] bool isAvailable(std::int16_t number);
    void storeSettings();

    Workbench& workbench_;
    SerialPortList* ports_;
    Transaction transaction_;
    UploadLog* log_ = nullptr;
    std::int32_t retriesSoFar_ = 0;
    std::int32_t failuresSoFar_ = 0;
};

}  // namespace qrv
