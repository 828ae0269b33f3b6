#include "link/sim/SimulatedController.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace qrv {

namespace {

constexpr std::uint8_t kGoodStatus = 16;
constexpr std::size_t kReadHead = 5;

constexpr std::uint16_t wordIn(std::span<const std::uint8_t> bytes, std::size_t at) {
    return static_cast<std::uint16_t>(bytes[at] << 8U | bytes[at + 1]);
}

/// The first firmware, in hundredths, that takes a command, or writes to a section.
struct FirmwareGate {
    SimCommandCode command;
    std::uint8_t section;  ///< of a write, else 0
    unsigned version;
};
constexpr std::array kFirmwareGates{
    FirmwareGate{SimCommandCode::Write, 13, 410},         FirmwareGate{SimCommandCode::ActivateModbus, 0, 410},
    FirmwareGate{SimCommandCode::Write, 10, 438},         FirmwareGate{SimCommandCode::Write, 11, 438},
    FirmwareGate{SimCommandCode::ActivateCharts, 0, 438}, FirmwareGate{SimCommandCode::Write, 14, 438},
    FirmwareGate{SimCommandCode::Announce, 0, 440},
};

/// "V6.73" gives 673. A text without a number of that form gives nothing.
std::optional<unsigned> firmwareOf(std::string_view text) {
    if (text.size() < 5 || text[2] != '.') return std::nullopt;
    unsigned hundredths = 0;
    for (const char c : {text[1], text[3], text[4]}) {
        if (std::isdigit(static_cast<unsigned char>(c)) == 0) return std::nullopt;
        hundredths = hundredths * 10 + static_cast<unsigned>(c - '0');
    }
    return hundredths;
}

/// The sections that close with a checksum of their own.
constexpr bool hasSeal(std::uint8_t section) { return section >= 9 && section <= 13; }

std::string placeOf(std::uint8_t section, std::uint32_t offset, std::uint32_t count) {
    return "section " + std::to_string(section) + ", offset " + std::to_string(offset) + ", " + std::to_string(count) +
           " bytes";
}

}  // namespace

SimulatedController::SimulatedController(SimSetup setup)
    : setup_(std::move(setup)), firmware_(firmwareOf(setup_.versionText)), noise_(setup_.seed), plant_(setup_.seed) {
    setup_.versionText.resize(kVersionLength, ' ');
}

void SimulatedController::feed(std::span<const std::uint8_t> bytes, Clock::TimePoint now) {
    if (!startedAt_) startedAt_ = now;
    std::vector<SimReceived> found;
    for (const auto byte : bytes) {
        const auto at = line_.arrivalOf(now);
        if (isDead_ || hasHungUp_) continue;
        reader_.take(byte, at, found);
        for (const auto& received : found) take(received);
        found.clear();
    }
}

void SimulatedController::take(const SimReceived& received) {
    switch (received.finding) {
        case SimFinding::Frame: return serve(received);
        case SimFinding::BadChecksum: return refuse(received, "bad checksum");
        case SimFinding::UnknownCommand: return refuse(received, "unknown command");
        case SimFinding::Torn: return refuse(received, "the request broke off");
    }
}

void SimulatedController::refuse(const SimReceived& received, std::string_view why) {
    ++counters_.refused;
    const auto code = received.bytes.front();
    const auto* const command = simCommandOf(code);
    remark("refused " + (command != nullptr ? std::string(command->name) : "command " + std::to_string(code)) + ": " +
           std::string(why));
    if (onTrace) onTrace({.at = received.at, .request = received.bytes, .refusal = why, .fault = {}, .answer = {}});
}

const SimFault* SimulatedController::strike() {
    const SimFault* struck = nullptr;
    for (auto& [plan, seen] : plans_) {
        ++seen;
        const auto isMeant = seen >= plan.first && seen <= plan.last;
        if (struck == nullptr && isMeant && noise_.chance(plan.permille)) struck = plan.fault;
    }
    return struck;
}

void SimulatedController::serve(const SimReceived& received) {
    ++counters_.frames;
    const auto* const fault = strike();
    SimAnswer answer{.bytes = {}, .delay = setup_.turnaround};
    if (fault == nullptr || fault->obeys) {
        auto outcome = obey(received);
        if (!outcome.refusal.empty()) return refuse(received, outcome.refusal);
        ++counters_.obeyed[static_cast<SimCommandCode>(received.bytes.front())];
        answer.bytes = std::move(outcome.answer);
        sealSimFrame(answer.bytes);
    }
    const auto whole = answer.bytes;
    if (fault != nullptr) {
        fault->spoil(answer, {.lateBy = setup_.lateBy, .previousAnswer = previousAnswer_, .noise = noise_});
    }
    previousAnswer_ = whole;
    line_.send(answer.bytes, received.at + answer.delay);
    if (onTrace) {
        onTrace({.at = received.at,
                 .request = received.bytes,
                 .refusal = {},
                 .fault = fault != nullptr ? fault->name : std::string_view{},
                 .answer = answer.bytes});
    }
    isDead_ = answer.isLast;
    if (answer.hangsUp) {
        hasHungUp_ = true;
        line_.clear();
    }
}

SimulatedController::Outcome SimulatedController::obey(const SimReceived& received) {
    const std::span<const std::uint8_t> request = received.bytes;
    const auto code = static_cast<SimCommandCode>(request[0]);
    if (auto lack = lackOf(request[0], code == SimCommandCode::Write ? request[1] : 0); !lack.empty()) {
        return {.answer = {}, .refusal = std::move(lack)};
    }
    switch (code) {
        case SimCommandCode::Write: return obeyWrite(request);
        case SimCommandCode::Read: return obeyRead(request);
        case SimCommandCode::ReadOutput: return obeyOutput(received);
        case SimCommandCode::Poll: {
            auto answer = shortAnswer();
            answer.front() = kGoodStatus;
            return {.answer = std::move(answer), .refusal = {}};
        }
        case SimCommandCode::Commit: commit(); break;
        case SimCommandCode::PressKey: keys_.push_back(request[1]); break;
        case SimCommandCode::Announce: ++counters_.announces; break;
        case SimCommandCode::ActivateMenus:
        case SimCommandCode::ActivateCharts:
        case SimCommandCode::ActivateUnits:
        case SimCommandCode::ActivateModbus: break;  // counted by their caller, and no more than that
    }
    return {.answer = shortAnswer(), .refusal = {}};
}

SimulatedController::Outcome SimulatedController::obeyWrite(std::span<const std::uint8_t> request) {
    const auto section = request[1];
    const std::uint32_t count = request[2];
    const std::uint32_t offset = wordIn(request, 3);
    const auto refusal = simRefusalOf(SimAccessKind::Write, section, offset, count, setup_.strictness);
    if (!refusal.empty()) return {.answer = {}, .refusal = placeOf(section, offset, count) + ": " + refusal};
    working_.write(section, offset, request.subspan(5, count));
    if (hasSeal(section) && count == 2) checkSeal(section, offset);
    return {.answer = shortAnswer(), .refusal = {}};
}

SimulatedController::Outcome SimulatedController::obeyRead(std::span<const std::uint8_t> request) {
    const auto section = request[1];
    const std::uint32_t count = request[2];
    const std::uint32_t offset = wordIn(request, 3);
    const auto refusal = simRefusalOf(SimAccessKind::Read, section, offset, count, setup_.strictness);
    if (!refusal.empty()) return {.answer = {}, .refusal = placeOf(section, offset, count) + ": " + refusal};
    std::vector<std::uint8_t> answer(kReadHead);
    std::ranges::generate(answer, [this] { return noise_.nextByte(); });
    if (section == 0) {
        const auto text = std::string_view(setup_.versionText).substr(offset, count);
        answer.insert(answer.end(), text.begin(), text.end());
        answer.resize(kReadHead + count, 0);
    } else {
        const auto data = working_.read(section, offset, count);
        answer.insert(answer.end(), data.begin(), data.end());
    }
    return {.answer = std::move(answer), .refusal = {}};
}

SimulatedController::Outcome SimulatedController::obeyOutput(const SimReceived& received) {
    const auto block = wordIn(received.bytes, 1);
    if (block >= kSimBlockCount) return {.answer = {}, .refusal = "there is no block " + std::to_string(block)};
    Output output{.isAnalog = working_.kindOf(block) != 2, .value = 0};
    if (const auto fixed = outputs_.find(block); fixed != outputs_.end()) {
        output = fixed->second;
    } else if (setup_.isMoving && working_.functionOf(block) != SimMemory::kNop) {
        const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(received.at - *startedAt_);
        const auto constant = constantOutputOf(working_.functionOf(block));
        output.value = constant          ? *constant
                       : output.isAnalog ? plant_.analogAt(block, time)
                                         : plant_.discreteAt(block, time);
    }
    auto answer = shortAnswer();
    const auto word = static_cast<std::uint16_t>(output.value);
    if (output.isAnalog) {
        answer[1] = static_cast<std::uint8_t>(word >> 8U);
        answer[2] = static_cast<std::uint8_t>(word & 0xFFU);
    } else {
        answer[1] = static_cast<std::uint8_t>(word & 0xFFU);
    }
    return {.answer = std::move(answer), .refusal = {}};
}

void SimulatedController::commit() {
    ++counters_.commits;
    committed_ = working_;
    if (onCommit) onCommit(committed_);
}

// A sum behind a section is looked at and not acted upon: what a controller does with a bad one is its own affair, and
// a test that cares reads the counter.
void SimulatedController::checkSeal(std::uint8_t section, std::uint32_t offset) {
    const auto named = working_.wordAt(section, 0);
    std::uint32_t sum = 0;
    for (const auto byte : working_.read(section, 0, offset)) sum += byte;
    const auto stored = working_.wordAt(section, offset);
    if (named == offset && (sum & 0xFFFFU) == stored) return;
    ++counters_.badSeals;
    remark("section " + std::to_string(section) + ": checksum " + std::to_string(stored) + " at offset " +
           std::to_string(offset) + ", where the bytes before it give " + std::to_string(sum & 0xFFFFU) +
           " and the header names offset " + std::to_string(named));
}

std::string SimulatedController::lackOf(std::uint8_t command, std::uint8_t section) const {
    if (!firmware_) return "";
    for (const auto& gate : kFirmwareGates) {
        if (static_cast<std::uint8_t>(gate.command) != command || gate.section != section) continue;
        if (*firmware_ < gate.version) return "firmware of this version doesn't know it";
    }
    return "";
}

std::vector<std::uint8_t> SimulatedController::shortAnswer() {
    return {noise_.nextByte(), noise_.nextByte(), noise_.nextByte()};
}

void SimulatedController::remark(const std::string& line) const {
    if (onRemark) onRemark(line);
}

void SimulatedController::load(const SimMemory& memory) { working_ = committed_ = memory; }

void SimulatedController::restart() {
    working_ = committed_;
    reader_.forget();
    line_.clear();
    previousAnswer_.clear();
    isDead_ = hasHungUp_ = false;
    stopFaults();
}

void SimulatedController::fixAnalog(std::uint16_t block, std::int16_t hundredths) {
    outputs_[block] = {.isAnalog = true, .value = hundredths};
}

void SimulatedController::fixDiscrete(std::uint16_t block, bool isOn) {
    outputs_[block] = {.isAnalog = false, .value = static_cast<std::int16_t>(isOn ? 1 : 0)};
}

void SimulatedController::play(const SimFaultPlan& plan) { plans_.push_back({.plan = plan}); }

void SimulatedController::stopFaults() { plans_.clear(); }

}  // namespace qrv
