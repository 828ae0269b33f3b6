#include "link/FrameTrace.h"

#include "link/Commands.h"
#include "platform/HexText.h"

namespace qrv {

namespace {

std::string lengthOf(std::span<const std::uint8_t> bytes) {
    return std::to_string(bytes.size()) + (bytes.size() == 1 ? " byte" : " bytes");
}

std::string_view wordsOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::Good: return "checksum good";
        case Verdict::BadChecksum: return "checksum bad";
        case Verdict::Silent: return "silence";
        case Verdict::Overflow: return "checksum overflows";
    }
    return "";
}

}  // namespace

/// Seconds since the start, to the microsecond.
std::string FrameTrace::stamp() const {
    const auto passed = std::chrono::duration_cast<std::chrono::microseconds>(clock_.now() - started_).count();
    std::string fraction = std::to_string(passed % 1000000);
    fraction.insert(0, 6 - fraction.size(), '0');
    return std::to_string(passed / 1000000) + "." + fraction;
}

void FrameTrace::sent(std::span<const std::uint8_t> frame, int attempt) {
    const std::string retry = attempt > 1 ? ", retry " + std::to_string(attempt - 1) : "";
    line_(stamp() + " > " + describedRequest(frame) + retry + ", " + lengthOf(frame) + ":" + hexPairs(frame));
}

void FrameTrace::received(std::span<const std::uint8_t> reply, Verdict verdict) {
    const std::string bytes = reply.empty() ? "" : ":" + hexPairs(reply);
    line_(stamp() + " < " + std::string(wordsOf(verdict)) + ", " + lengthOf(reply) + bytes);
}

void FrameTrace::discarded(std::span<const std::uint8_t> bytes) {
    line_(stamp() + " < dropped, " + lengthOf(bytes) + ":" + hexPairs(bytes));
}

void FrameTrace::resynchronised(std::span<const std::uint8_t> filler) {
    line_(stamp() + " > filler, " + lengthOf(filler) + " of 0");
}

}  // namespace qrv
