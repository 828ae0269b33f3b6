// The window of all block outputs against what bounds it: a raw loop of the same frames, the wire, and its own memory.
// Offscreen, over a pseudo-terminal.
#include <gtest/gtest.h>
#include <malloc.h>

#include <limits>

#include "../tests/view/LiveViewRig.h"
#include "LinkBench.h"
#include "link/LinkObserver.h"
#include "platform/qt/Application.h"
#include "view/OffscreenDisplay.h"

namespace qrv {
namespace {

constexpr int kUsedBlocks = 700;
constexpr std::int16_t kAnalogFunction = 0;
constexpr std::size_t kRequest = 5;  // of one output, and its reply's
constexpr const char* kSettings = "38400,O,8, 1";

/// The window with 700 blocks in use, in front of the user.
class LiveWindow {
 public:
    explicit LiveWindow(const std::string& device) : live_(device) {
        live_.rig.startWithView("mnuViewAll", form());
        auto& functions = live_.rig.program.bench.FnOfBlock;
        functions.fill(kNop);
        std::fill_n(functions.begin(), kUsedBlocks, kAnalogFunction);
    }

    [[nodiscard]] MGrid& form() { return live_.rig.program.allOutputs; }
    [[nodiscard]] frmComm& comm() { return live_.rig.program.comm; }
    void press(const char* button) { ViewRig::click<QAbstractButton>(*live_.rig.host.viewOf(form()), button); }
    void readAll() {
        press("Command1");
        if (form().Grid2.text(kUsedBlocks / MGrid::kBlocksPerRow, MGrid::kBlocksPerRow).empty()) std::abort();
    }

 private:
    LiveViewRig live_;
};

std::vector<std::uint8_t> outputRequest(int block) {
    const int sum = 0x20 + block / 256 + block % 256;
    return {0x20, static_cast<std::uint8_t>(block / 256), static_cast<std::uint8_t>(block % 256),
            static_cast<std::uint8_t>(~(sum >> 8) & 0xFF), static_cast<std::uint8_t>(~sum & 0xFF)};
}

/// The frames of one pass over all used blocks, and nothing else.
void rawPass(const std::string& device) {
    PosixSerialPort port([&](std::int16_t) { return device; });
    if (!port.open(1, kSettings)) std::abort();
    rawExchange(port.descriptor(), {kPoll.begin(), kPoll.end()}, kPollReply.size());
    for (int block = 0; block < kUsedBlocks; ++block) rawExchange(port.descriptor(), outputRequest(block), kRequest);
}

bool measureUnpaced(double atMost) {
    Answerer answerer;
    answerer.answer(kRequest, frameOf(kRequest));
    LiveWindow window(answerer.path());
    return compare(
               "one pass over 700 blocks", [&] { window.readAll(); }, "write, poll, read",
               [&] { rawPass(answerer.path()); }, atMost) <= atMost;
}

/// The raw loop tells what the far end's own timing adds to the wire's.
bool measurePaced(double atMost) {
    constexpr int kPasses = 5;
    test::LiveController live;
    const SimPace pace;
    live.controller.setPace(pace);
    live.wakefulFor = std::chrono::microseconds(300);
    live.start();
    LiveWindow window(live.path());
    std::vector<double> ours;
    std::vector<double> raw;
    for (int round = 0; round < kPasses; ++round) {
        ours.push_back(secondsOf([&] { window.readAll(); }));
        raw.push_back(secondsOf([&] { rawPass(live.path()); }));
    }
    const std::chrono::duration<double> wire =
        pace.timeOf(kPoll.size() + kPollReply.size() + 2 * kRequest * kUsedBlocks);
    const double ratio = medianOf(ours) / wire.count();
    std::printf("%-44s %9.3f ms  %-44s %9.3f ms  %6.2f x  (at most %.2f x; a raw loop: %.2f x)%s\n",
                "one pass over 700 blocks, paced", medianOf(ours) * 1e3, "the wire at 38400 baud", wire.count() * 1e3,
                ratio, atMost, medianOf(raw) / wire.count(), ratio > atMost ? "  OVER" : "");
    std::fflush(stdout);
    return ratio <= atMost;
}

/// Counts readings, and looks for the least memory in use during the thousand after the first thousand, and during the
/// last thousand: what is in use at a single moment differs by the events that happen to wait.
class MemoryWatch final : public LinkObserver {
 public:
    static constexpr int kWindow = 1'000;
    static constexpr int kReadings = 101'000;

    explicit MemoryWatch(MGrid& form) : form_(form) {}
    [[nodiscard]] long growth() const { return after_ - before_; }

    void sent(std::span<const std::uint8_t>, int) override {}
    void received(std::span<const std::uint8_t>, Verdict) override {
        ++readings_;
        if (readings_ > kWindow && readings_ <= 2 * kWindow) before_ = std::min(before_, inUse());
        if (readings_ > kReadings - kWindow) after_ = std::min(after_, inUse());
        if (readings_ == kReadings) form_.Command3_Click();
    }
    void discarded(std::span<const std::uint8_t>) override {}
    void resynchronised(std::span<const std::uint8_t>) override {}

 private:
    static long inUse() {
        const auto info = ::mallinfo2();
        return static_cast<long>(info.uordblks + info.hblkhd);
    }

    MGrid& form_;
    int readings_ = 0;
    long before_ = std::numeric_limits<long>::max();
    long after_ = std::numeric_limits<long>::max();
};

bool measureMemory() {
    // Painting keeps a few thousand more or less at any moment; one byte a reading would be a hundred thousand.
    constexpr long kSlack = 32 * 1024;
    Answerer answerer;
    answerer.answer(kRequest, frameOf(kRequest));
    LiveWindow window(answerer.path());
    MemoryWatch watch(window.form());
    window.comm().observe(&watch);
    window.press("Command2");
    window.comm().observe(nullptr);
    const bool isWithin = watch.growth() <= kSlack;
    std::printf("%-44s %9ld bytes of memory  (at most %ld)%s\n", "growth over 100,000 readings", watch.growth(), kSlack,
                isWithin ? "" : "  OVER");
    return isWithin;
}

}  // namespace
}  // namespace qrv

int main(int argc, char** argv) {
    qrv::test::useOffscreenDisplay();
    testing::InitGoogleTest(&argc, argv);
    const qrv::Application application(argc, argv);
    bool isWithin = qrv::measureUnpaced(3);
    isWithin = qrv::measurePaced(1.05) && isWithin;
    isWithin = qrv::measureMemory() && isWithin;
    return isWithin && !testing::Test::HasFailure() ? 0 : 1;
}
