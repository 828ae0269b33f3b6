// A controller made of memory and arithmetic: bytes in, bytes out, no input or output of its own. Tests drive it with a
// false clock through SimulatedPort; the program qrv_controller puts it behind a pseudo-terminal.
//
// It refuses what no layout knows and then keeps silent, as it does on a bad checksum: the tool takes any reply with a
// good checksum for a yes, so silence is the only no that can't be mistaken.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "link/sim/SimFaults.h"
#include "link/sim/SimFrameReader.h"
#include "link/sim/SimLine.h"
#include "link/sim/SimMemory.h"
#include "link/sim/SimNoise.h"
#include "link/sim/SimPlant.h"
#include "link/sim/SimSections.h"

namespace qrv {

struct SimSetup {
    /// 24 bytes at most; blanks fill them up. The tool reads the firmware's version from the characters 2 to 5.
    std::string versionText = "V6.73 SIMULATED QRV";
    std::uint64_t seed = 1;
    bool isMoving = false;  ///< outputs that no test has fixed move as those of a plant
    SimStrictness strictness = SimStrictness::Layouts;
    Clock::Milliseconds turnaround{0};  ///< between the end of a request and the start of its answer
    Clock::Milliseconds lateBy{2500};   ///< what the fault "late" adds to that
};

struct SimCounters {
    std::uint64_t frames = 0;   ///< requests with a good checksum, those struck by a fault included
    std::uint64_t refused = 0;  ///< torn, unknown, of bad checksum, or beside the layouts
    std::uint64_t commits = 0;
    std::uint64_t announces = 0;
    std::uint64_t badSeals = 0;  ///< section checksums that were written and don't fit their section
    std::map<SimCommandCode, std::uint64_t> obeyed;
};

/// One request and what came of it; views are good only during the call.
struct SimTrace {
    Clock::TimePoint at;
    std::span<const std::uint8_t> request;
    std::string_view refusal;  ///< "" where it was not refused
    std::string_view fault;    ///< the name of the fault that struck it, or ""
    std::span<const std::uint8_t> answer;
};

class SimulatedController {
 public:
    static constexpr std::size_t kVersionLength = 24;

    explicit SimulatedController(SimSetup setup = {});

    /// Bytes that the tool sends at `now`.
    void feed(std::span<const std::uint8_t> bytes, Clock::TimePoint now);
    /// Bytes that have reached the tool by `now`; each is given once.
    [[nodiscard]] std::vector<std::uint8_t> take(Clock::TimePoint now) { return line_.take(now); }
    [[nodiscard]] std::optional<Clock::TimePoint> nextArrival() const { return line_.nextArrival(); }
    void setPace(std::optional<SimPace> pace) { line_.setPace(pace); }

    /// What is written now, and what would be left after a loss of power.
    [[nodiscard]] const SimMemory& working() const { return working_; }
    [[nodiscard]] const SimMemory& committed() const { return committed_; }
    /// Both become `memory`.
    void load(const SimMemory& memory);
    /// A loss of power: what wasn't committed is gone, and so are faults, a dead line and half a frame.
    void restart();

    void fixAnalog(std::uint16_t block, std::int16_t hundredths);
    void fixDiscrete(std::uint16_t block, bool isOn);
    [[nodiscard]] const std::vector<std::uint8_t>& keys() const { return keys_; }

    /// Adds a plan; where several strike one request the first does.
    void play(const SimFaultPlan& plan);
    void stopFaults();
    /// The fault "hang-up" has struck: no byte goes either way until restart().
    [[nodiscard]] bool hasHungUp() const { return hasHungUp_; }

    [[nodiscard]] const SimCounters& counters() const { return counters_; }
    [[nodiscard]] std::uint64_t fillerCount() const { return reader_.fillerCount(); }
    [[nodiscard]] const SimSetup& setup() const { return setup_; }

    /// Each refusal, and each oddity that is no refusal, as one line of text.
    std::function<void(std::string_view line)> onRemark;
    std::function<void(const SimTrace& trace)> onTrace;
    std::function<void(const SimMemory& committed)> onCommit;

 private:
    struct Output {
        bool isAnalog;
        std::int16_t value;
    };
    struct RunningPlan {
        SimFaultPlan plan;
        std::uint64_t seen = 0;
    };
    /// What obeying a request gives: an answer without its checksum, or a refusal.
    struct Outcome {
        std::vector<std::uint8_t> answer;
        std::string refusal;
    };

    void take(const SimReceived& received);
    void serve(const SimReceived& received);
    void refuse(const SimReceived& received, std::string_view why);
    const SimFault* strike();
    Outcome obey(const SimReceived& received);
    Outcome obeyWrite(std::span<const std::uint8_t> request);
    Outcome obeyRead(std::span<const std::uint8_t> request);
    Outcome obeyOutput(const SimReceived& received);
    void commit();
    void checkSeal(std::uint8_t section, std::uint32_t offset);
    [[nodiscard]] std::string lackOf(std::uint8_t command, std::uint8_t section) const;
    /// A short answer: a status byte and two bytes that mean nothing.
    [[nodiscard]] std::vector<std::uint8_t> shortAnswer();
    void remark(const std::string& line) const;

    SimSetup setup_;
    std::optional<unsigned> firmware_;  ///< version in hundredths
    SimMemory working_;
    SimMemory committed_;
    SimFrameReader reader_;
    SimLine line_;
    SimNoise noise_;
    SimPlant plant_;
    std::optional<Clock::TimePoint> startedAt_;
    std::map<std::uint16_t, Output> outputs_;
    std::vector<std::uint8_t> keys_;
    std::vector<RunningPlan> plans_;
    std::vector<std::uint8_t> previousAnswer_;
    bool isDead_ = false;
    bool hasHungUp_ = false;
    SimCounters counters_;
};

}  // namespace qrv
