#include "link/LiveOutputs.h"

#include "link/BadAnswer.h"
#include "link/frmComm.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "platform/UtcText.h"
#include "store/Workbench.h"

namespace qrv {

std::string outputText(OutputKind kind, std::int32_t value) {
    return kind == OutputKind::Analog ? formatScaled(value, 2, 2) : joined(value);
}

std::optional<OutputKind> outputKindOf(Workbench& bench, std::int16_t block) {
    db1& db = bench.db;
    db.FuncSetIndex("FN");
    db.FuncSeekI(bench.FnOfBlock.at(static_cast<std::size_t>(block)));
    if (db.FuncNoMatch()) return std::nullopt;
    switch (db.FuncFtype()) {
        case static_cast<int>(OutputKind::Analog): return OutputKind::Analog;
        case static_cast<int>(OutputKind::Discrete): return OutputKind::Discrete;
        default: return std::nullopt;
    }
}

std::string silenceText(std::chrono::system_clock::time_point since) { return "No answer since " + utcText(since); }

void PollRate::restart(Clock::TimePoint now) {
    since_ = now;
    last_ = now;
    readings_ = 0;
    text_.clear();
}

void PollRate::count(Clock::TimePoint now) {
    ++readings_;
    last_ = now;
    const std::chrono::duration<double> elapsed = now - since_;
    if (elapsed < std::chrono::seconds(1)) return;
    text_ = formatNumber(readings_ / elapsed.count(), 1) + " readings/s";
    since_ = now;
    readings_ = 0;
}

std::string PollRate::text(Clock::TimePoint now) const {
    constexpr std::chrono::seconds kForgotten{3};
    return now - last_ < kForgotten ? text_ : std::string{};
}

std::string LiveOutputs::rate() const { return rate_.text(bench_.platform.clock.now()); }

void LiveOutputs::restartRate() { rate_.restart(bench_.platform.clock.now()); }

bool LiveOutputs::connect() {
    comm_.Open_Comm_Port();
    if (!comm_.port_is_open) return false;
    // Noise that waits on the line may overflow a sum.
    const bool came = bearingBadAnswers([&] { comm_.poll_qrm3(); });
    if (!came || !bench_.xfer_ok) {
        comm_.Close_Comm_Port();
        bench_.platform.messageBox.say("Could Not Connect To Target\nCheck Settings And Connection Cables");
        return false;
    }
    restartRate();
    return true;
}

void LiveOutputs::disconnect() { comm_.Close_Comm_Port(); }

std::optional<std::int32_t> LiveOutputs::value(std::int16_t block, OutputKind kind) {
    std::int32_t value = 0;
    askedAt_ = bench_.platform.clock.wallTime();
    // Noise that overflows a sum must not end a window that only looks on; without a port nothing would ever come.
    const bool came = bearingBadAnswers(
        [&] { kind == OutputKind::Analog ? comm_.get_analog(block, value) : comm_.get_digital(block, value); });
    if (!came || !bench_.xfer_ok) return std::nullopt;
    rate_.count(bench_.platform.clock.now());
    return value;
}

std::optional<std::string> LiveOutputs::text(std::int16_t block, OutputKind kind) {
    const auto read = value(block, kind);
    return read ? std::optional(outputText(kind, *read)) : std::nullopt;
}

}  // namespace qrv
