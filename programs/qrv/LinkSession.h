// What the commands that talk to a controller begin with: the line as the options or else the user's settings name it,
// frmComm upon it, a trace if one is wanted, and Ctrl+C, a hang-up of the terminal and a request to end as Cancel.
#pragma once

#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Options.h"
#include "TerminalPlatform.h"
#include "TransferReport.h"
#include "link/FrameTrace.h"
#include "link/LinkObserver.h"
#include "link/frmComm.h"
#include "store/Workbench.h"

namespace qrv {

/// Keeps the words of a box and shows none: here the cause is told instead, with its cure.
class UnshownBox final : public MessageBox {
 public:
    Answer ask(const Notice& notice) override {
        return isAmong(Answer::Ok, notice.buttons) ? Answer::Ok : Answer::None;
    }
};

class LinkSession final : public LinkObserver {
 public:
    /// @param report  takes the words of boxes and of a trace; null where the causes that are told here are enough
    LinkSession(Terminal& terminal, const LineOptions& options, TransferReport* report = nullptr);
    ~LinkSession() override { comm_.Close_Comm_Port(); }
    LinkSession(const LinkSession&) = delete;
    LinkSession& operator=(const LinkSession&) = delete;

    [[nodiscard]] frmComm& comm() { return comm_; }
    [[nodiscard]] Workbench& bench() { return bench_; }
    /// What the line is called in words: its number or device, rate and parity.
    [[nodiscard]] std::string lineName() const;

    /// Opens the port and polls. Ends the command where nothing answers as a controller does.
    void connect();
    /// The data bytes of a read of a section. Ends the command where the read fails.
    [[nodiscard]] std::vector<std::uint8_t> read(std::uint8_t section, std::int16_t count, std::int32_t offset);
    /// Runs an exchange. Ends the command, with cause and cure, unless it went well.
    void exchange(const std::function<void(frmComm&)>& exchange);

    /// Why the last transaction or the opening of the port failed, and what to do about it.
    [[nodiscard]] std::string cause() const;
    /// By Ctrl+C, or by what else asks a program to end.
    [[nodiscard]] bool isCancelled() const { return isCancelled_; }
    /// Called at a cancel, when the transfer's flag has been set already.
    std::function<void()> whenCancelled = [] {};

    void sent(std::span<const std::uint8_t> frame, int attempt) override;
    void received(std::span<const std::uint8_t> reply, Verdict verdict) override;
    void discarded(std::span<const std::uint8_t> bytes) override;
    void resynchronised(std::span<const std::uint8_t> filler) override;

 private:
    void takeOptions(const LineOptions& options);
    void beginTrace(const std::string& file, TransferReport* report);
    void traceToFile(const std::string& line);
    void requireGood();
    [[noreturn]] void failOfLength() const;
    void cancel();

    Terminal& terminal_;
    TerminalPlatform platform_;
    UnshownBox box_;
    Workbench bench_;
    frmComm comm_;
    std::string tracePath_;
    std::ofstream traceFile_;
    std::unique_ptr<FrameTrace> trace_;
    // Of the last transaction:
    bool anyByteCame_ = false;
    Verdict lastVerdict_ = Verdict::Silent;
    bool isCancelled_ = false;
};

}  // namespace qrv
