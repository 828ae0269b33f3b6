#include "link/sim/SimPlant.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "link/sim/SimNoise.h"

namespace qrv {

namespace {

// Uses of the numbers that belong to a block. The steps of time stand high above them.
enum Use : std::uint64_t { Period, Swing, SwingPeriod, Phase, Duty, SetPoint, Tremble, DutyOfCycle };
constexpr std::uint64_t kStep = 16;

constexpr std::int64_t kSecond = 1000;

struct Constant {
    std::uint8_t function;
    std::int16_t output;
};
constexpr std::array kConstants{Constant{0, 0}, Constant{1, 10000}, Constant{90, 0}, Constant{91, 1}};

}  // namespace

std::optional<std::int16_t> constantOutputOf(std::uint8_t function) {
    const auto* found = std::ranges::find(kConstants, function, &Constant::function);
    return found == kConstants.end() ? std::nullopt : std::optional(found->output);
}

std::int64_t SimPlant::pick(std::uint16_t block, std::uint64_t use, std::int64_t limit) const {
    const auto number = scrambled(scrambled(scrambled(seed_) ^ block) ^ use);
    return static_cast<std::int64_t>(number % static_cast<std::uint64_t>(limit));
}

std::int16_t SimPlant::analogAt(std::uint16_t block, std::chrono::milliseconds time) const {
    const std::int64_t now = time.count();
    const auto base = 2000 + pick(block, Use::SetPoint, 6000);
    // Two minutes and more from one set point to the next.
    const auto period = (120 + pick(block, Use::Period, 240)) * kSecond;
    const auto step = now / period;
    const auto setPoint = [&](std::int64_t number) {
        const auto use = Use::SetPoint + kStep * static_cast<std::uint64_t>(number + 1);
        return static_cast<double>(base + pick(block, use, 1000) - 500);
    };
    const auto settled = setPoint(step);
    const auto sinceStep = static_cast<double>(now % period) / static_cast<double>(period);
    const auto followed = settled + (setPoint(step - 1) - settled) * std::exp(-8.0 * sinceStep);

    const auto swing = static_cast<double>(40 + pick(block, Use::Swing, 160));
    const auto swingPeriod = static_cast<double>((20 + pick(block, Use::SwingPeriod, 60)) * kSecond);
    const auto turns = static_cast<double>(now + pick(block, Use::Phase, 80 * kSecond)) / swingPeriod;
    const auto swung = swing * std::sin(2.0 * std::numbers::pi * turns);

    const auto tremble = pick(block, Use::Tremble + kStep * static_cast<std::uint64_t>(now / kSecond), 11) - 5;
    const auto value = std::llround(followed + swung) + tremble;
    return static_cast<std::int16_t>(std::clamp<long long>(value, 0, 10000));
}

std::uint8_t SimPlant::discreteAt(std::uint16_t block, std::chrono::milliseconds time) const {
    const auto period = (8 + pick(block, Use::Period, 53)) * kSecond;
    const auto shifted = time.count() + pick(block, Use::Phase, period);
    const auto cycle = static_cast<std::uint64_t>(shifted / period);
    const auto percent = 25 + pick(block, Use::Duty, 40) + pick(block, Use::DutyOfCycle + kStep * cycle, 11);
    return shifted % period * 100 < period * percent ? 1 : 0;
}

}  // namespace qrv
