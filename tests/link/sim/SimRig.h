// A simulated controller under test, its remarks, and a time that goes on only when told.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "link/sim/SimulatedController.h"

namespace qrv::test {

using Bytes = std::vector<std::uint8_t>;

/// The frame with its two checksum bytes, summed here a third time, apart from both ends.
[[nodiscard]] inline Bytes summed(Bytes frame) {
    unsigned sum = 0;
    for (const auto byte : frame) sum += byte;
    frame.push_back(static_cast<std::uint8_t>(255U - (sum / 256U) % 256U));
    frame.push_back(static_cast<std::uint8_t>(255U - sum % 256U));
    return frame;
}

[[nodiscard]] inline bool hasGoodSum(const Bytes& frame) {
    return frame.size() > 2 && summed(Bytes(frame.begin(), frame.end() - 2)) == frame;
}

[[nodiscard]] inline Bytes writeFrame(std::uint8_t section, unsigned offset, const Bytes& data) {
    Bytes frame{2, section, static_cast<std::uint8_t>(data.size()), static_cast<std::uint8_t>(offset / 256),
                static_cast<std::uint8_t>(offset % 256)};
    frame.insert(frame.end(), data.begin(), data.end());
    return summed(frame);
}

[[nodiscard]] inline Bytes readFrame(std::uint8_t section, unsigned offset, std::uint8_t count) {
    return summed(
        {4, section, count, static_cast<std::uint8_t>(offset / 256), static_cast<std::uint8_t>(offset % 256)});
}

struct SimRig {
    explicit SimRig(SimSetup setup = {}) : controller(std::move(setup)) {
        controller.onRemark = [this](std::string_view line) { remarks.emplace_back(line); };
    }

    /// Sends the bytes and gives what comes back at once.
    Bytes send(const Bytes& bytes) {
        controller.feed(bytes, now);
        return controller.take(now);
    }
    void pass(std::chrono::milliseconds time) { now += time; }
    /// The bytes that a read of the section gives, without head and checksum.
    Bytes dataAt(std::uint8_t section, unsigned offset, std::uint8_t count) {
        const auto answer = send(readFrame(section, offset, count));
        if (answer.size() != count + 7U) return {};
        return {answer.begin() + 5, answer.end() - 2};
    }

    SimulatedController controller;
    Clock::TimePoint now{std::chrono::hours{1}};
    std::vector<std::string> remarks;
};

const Bytes kPoll{0x01, 0xFF, 0xFE};

}  // namespace qrv::test
