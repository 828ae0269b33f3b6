#include "link/sim/SimFaults.h"

#include <algorithm>
#include <cassert>
#include <charconv>

#include "link/sim/SimFrameReader.h"

namespace qrv {

namespace simfault {

void swallow(SimAnswer& answer, const SimFaultContext&) { answer.bytes.clear(); }

void delay(SimAnswer& answer, const SimFaultContext& context) { answer.delay += context.lateBy; }

void shorten(SimAnswer& answer, const SimFaultContext&) { answer.bytes.pop_back(); }

void lengthen(SimAnswer& answer, const SimFaultContext& context) { answer.bytes.push_back(context.noise.nextByte()); }

void flipChecksum(SimAnswer& answer, const SimFaultContext&) { answer.bytes.back() ^= 0x01U; }

void replaceStatus(SimAnswer& answer, const SimFaultContext&) {
    answer.bytes.erase(answer.bytes.end() - 2, answer.bytes.end());
    answer.bytes.front() = 17;
    sealSimFrame(answer.bytes);
}

void breakOff(SimAnswer& answer, const SimFaultContext&) {
    answer.bytes.resize(answer.bytes.size() / 2);
    answer.isLast = true;
}

void prependStale(SimAnswer& answer, const SimFaultContext& context) {
    const auto stale = context.previousAnswer;
    if (stale.empty()) {
        answer.bytes.insert(answer.bytes.begin(), context.noise.nextByte());
    } else {
        answer.bytes.insert(answer.bytes.begin(), stale.begin(), stale.end());
    }
}

void scramble(SimAnswer& answer, const SimFaultContext& context) {
    std::ranges::generate(answer.bytes, [&] { return context.noise.nextByte(); });
    const auto body = std::span(answer.bytes).first(answer.bytes.size() - 2);
    const auto wrong = static_cast<std::uint16_t>(simChecksumOf(body) + 1U);
    // Noise could be right by chance, and then it would be an answer.
    answer.bytes[body.size()] = static_cast<std::uint8_t>(wrong >> 8U);
    answer.bytes[body.size() + 1] = static_cast<std::uint8_t>(wrong & 0xFFU);
}

void hangUp(SimAnswer& answer, const SimFaultContext&) {
    answer.bytes.clear();
    answer.hangsUp = true;
}

}  // namespace simfault

namespace {

constexpr bool namesDiffer() {
    for (const auto& one : kFaults) {
        if (std::ranges::count(kFaults, one.name, &SimFault::name) != 1) return false;
    }
    return true;
}
static_assert(namesDiffer());

std::optional<std::uint64_t> wholeNumber(std::string_view text) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

}  // namespace

const SimFault* simFaultNamed(std::string_view name) {
    const auto* const found = std::ranges::find(kFaults, name, &SimFault::name);
    return found == kFaults.end() ? nullptr : found;
}

SimFaultPlan SimFaultPlan::always(std::string_view name) {
    const auto* const fault = simFaultNamed(name);
    assert(fault != nullptr);
    return {.fault = fault};
}

SimFaultPlan SimFaultPlan::at(std::string_view name, std::uint64_t request) {
    auto plan = always(name);
    plan.first = plan.last = request;
    return plan;
}

SimFaultPlan SimFaultPlan::from(std::string_view name, std::uint64_t request) {
    auto plan = always(name);
    plan.first = request;
    return plan;
}

std::optional<SimFaultPlan> SimFaultPlan::parsed(std::string_view text) {
    const auto colon = text.find(':');
    const auto name = text.substr(0, colon);
    if (simFaultNamed(name) == nullptr) return std::nullopt;
    if (colon == std::string_view::npos) return always(name);
    auto when = text.substr(colon + 1);
    if (when == "once") return once(name);
    const auto sign = when.empty() ? '\0' : when.back();
    if (sign == '+' || sign == '%') when.remove_suffix(1);
    const auto number = wholeNumber(when);
    if (!number || *number == 0) return std::nullopt;
    if (sign == '+') return from(name, *number);
    if (sign != '%') return at(name, *number);
    if (*number > 100) return std::nullopt;
    auto plan = always(name);
    plan.permille = static_cast<unsigned>(*number) * 10U;
    return plan;
}

}  // namespace qrv
