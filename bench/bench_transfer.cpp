// A whole block program of 5632 constants into a controller and out of it, from the program's own windows, against what
// bounds it: a raw loop of the same frames, and the wire. Offscreen, over a pseudo-terminal.
// A transfer's fixed sleeps are left out of our time where the raw loop is what it is held against.
#include <gtest/gtest.h>

#include <QTimer>
#include <cstdlib>

#include "../tests/view/ViewRig.h"
#include "LinkBench.h"
#include "link/LinkObserver.h"
#include "link/RandomProgram.h"
#include "platform/posix/PosixSerialPort.h"
#include "platform/qt/Application.h"
#include "platform/qt/QtPump.h"
#include "view/OffscreenDisplay.h"

namespace qrv {
namespace {

constexpr const char* kSettings = "38400,O,8, 1";
constexpr int kConstants = 5632;
constexpr unsigned kSeed = 1;
constexpr int kUnpacedRounds = 9;
constexpr int kPacedRounds = 3;

double now() { return std::chrono::duration<double>(SystemClock().now().time_since_epoch()).count(); }

/// The machine's clock, which knows how long it made the program sleep.
class CountedClock final : public Clock {
 public:
    [[nodiscard]] TimePoint now() const override { return clock_.now(); }
    [[nodiscard]] std::chrono::system_clock::time_point wallTime() const override { return clock_.wallTime(); }
    void sleep(Milliseconds duration) override {
        clock_.sleep(duration);
        slept += std::chrono::duration<double>(duration).count();
        onSlept();
    }
    double slept = 0;  ///< seconds
    std::function<void()> onSlept = [] {};

 private:
    SystemClock clock_;
};

/// The longest time for which the event loop kept nobody company: a timer of ten milliseconds looks.
class GapWatch {
 public:
    GapWatch() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, [this] { look(); });
    }
    void start() {
        longest_ = 0;
        last_ = now();
        timer_.start(10);
    }
    void forgive() { last_ = now(); }
    double stop() {
        look();
        timer_.stop();
        return longest_;
    }

 private:
    void look() {
        longest_ = std::max(longest_, now() - last_);
        last_ = now();
    }
    QTimer timer_;
    double last_ = 0;
    double longest_ = 0;
};

struct RecordedExchange {
    std::vector<std::uint8_t> frame;
    std::size_t replyLength = 0;
};

/// The exchanges of a transfer, and when the last of them ended.
class Recorder final : public LinkObserver {
 public:
    void sent(std::span<const std::uint8_t> frame, int attempt) override {
        if (attempt != 1) std::abort();  // a line that isn't sound is not measured
        exchanges.push_back({.frame = {frame.begin(), frame.end()}});
    }
    void received(std::span<const std::uint8_t> reply, Verdict) override {
        exchanges.back().replyLength = reply.size();
        ended = now();
    }
    void discarded(std::span<const std::uint8_t>) override {}
    void resynchronised(std::span<const std::uint8_t>) override { std::abort(); }

    std::vector<RecordedExchange> exchanges;
    double ended = 0;
};

/// One transfer from the click on its button to its last reply.
struct Measured {
    double seconds = 0;
    double cpu = 0;      ///< seconds of this thread
    double sleeps = 0;   ///< fixed, of `seconds`
    double longest = 0;  ///< gap of the event loop outside these, until the transfer's window is gone
    std::vector<RecordedExchange> exchanges;

    [[nodiscard]] std::size_t bytes() const {
        std::size_t count = 0;
        for (const auto& exchange : exchanges) count += exchange.frame.size() + exchange.replyLength;
        return count;
    }
};

double cpuOfThread() {
    timespec used{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

/// The program with a full configuration and a controller on the line.
class TransferBench {
 public:
    explicit TransferBench(const std::string& device) : device_(device) {
        clock_.onSlept = [this] { gaps_.forgive(); };
        rig_.startWithNewFile();
        test::ProgramDrawer(rig_.program.bench, kSeed).drawFull(kConstants);
        rig_.program.comm.observe(&recorder_);
    }

    Measured download() {
        Measured measured;
        rig_.whenUp("frmDownload", [&](FormView& view) { measured = measure([&] { click(view, "Download"); }); });
        rig_.host.load(rig_.program.select);
        rig_.program.select.Blocks.value = true;
        rig_.program.select.Command1_Click();
        if (!rig_.program.download.outcome().committed) std::abort();
        return measured;
    }
    Measured upload() {
        Measured measured;
        rig_.boxes.expect({.text = "WARNING  This Action Will Overwrite The Selected Configuration\n"
                                   "                       Do You Wish To Continue?",
                           .buttons = Buttons::YesNo,
                           .icon = Icon::Warning},
                          Answer::Yes);
        rig_.whenUp("frmUpload", [&](FormView& view) {
            rig_.program.upload.Blocks.value = true;
            measured = measure([&] { click(view, "Continue"); });
        });
        // Behind an upload the window of the boards comes up.
        rig_.program.transferWindow.showGeneral = [this] { measuredGap_ = gaps_.stop(); };
        rig_.host.showModal(rig_.program.upload);
        if (!rig_.program.upload.outcome().complete) std::abort();
        return measured;
    }
    void rawLoop(const std::vector<RecordedExchange>& exchanges) const {
        PosixSerialPort port([this](std::int16_t) { return device_; });
        if (!port.open(1, kSettings)) std::abort();
        for (const auto& exchange : exchanges) rawExchange(port.descriptor(), exchange.frame, exchange.replyLength);
    }

 private:
    static void click(FormView& view, const char* button) { ViewRig::click<QAbstractButton>(view, button); }

    Measured measure(const std::function<void()>& press) {
        recorder_.exchanges.clear();
        const double sleptBefore = clock_.slept;
        const double cpuBefore = cpuOfThread();
        const double began = now();
        measuredGap_ = -1;
        gaps_.start();
        press();
        const double gap = gaps_.stop();
        Measured measured;
        measured.seconds = recorder_.ended - began;
        measured.cpu = cpuOfThread() - cpuBefore;
        measured.sleeps = clock_.slept - sleptBefore;
        measured.longest = measuredGap_ < 0 ? gap : measuredGap_;
        measured.exchanges = recorder_.exchanges;
        return measured;
    }

    std::string device_;
    CountedClock clock_;
    GapWatch gaps_;
    double measuredGap_ = -1;
    Recorder recorder_;
    QtPump pump_;
    PosixSerialPort port_{[this](std::int16_t) { return device_; }};
    LineServices line_{clock_, pump_, port_};
    ViewRig rig_{"", Extras::Shown, &line_};
};

bool row(const std::string& what, double value, const char* unit, double atMost, const std::string& against) {
    const bool isWithin = value <= atMost;
    std::printf("%-44s %8.3f %-4s (at most %.3f)  %s%s\n", what.c_str(), value, unit, atMost, against.c_str(),
                isWithin ? "" : "  OVER");
    std::fflush(stdout);
    return isWithin;
}

std::string seconds(const char* what, double value) {
    char text[80];
    std::snprintf(text, sizeof text, "%s %.3f s", what, value);
    return text;
}

/// The raw loop tells what the far end's own timing adds to the wire's.
bool measurePaced(TransferBench& bench, const SimPace& pace, const std::string& name,
                  const std::function<Measured()>& transfer) {
    std::vector<double> our;
    std::vector<double> raw;
    std::vector<double> cpu;
    double longest = 0;
    Measured ours;
    for (int round = 0; round < kPacedRounds; ++round) {
        ours = transfer();
        our.push_back(ours.seconds - ours.sleeps);
        raw.push_back(secondsOf([&] { bench.rawLoop(ours.exchanges); }));
        cpu.push_back(ours.cpu / ours.seconds * 100);
        longest = std::max(longest, ours.longest);
    }
    const std::chrono::duration<double> wire = pace.timeOf(ours.bytes());
    const double least = wire.count() + ours.sleeps;
    char rawRatio[80];
    std::snprintf(rawRatio, sizeof rawRatio, ", a raw loop: %.3f x", medianOf(raw) / wire.count());
    bool isWithin = row(name + " / raw loop", medianOf(our) / medianOf(raw), "x", 1.01,
                        seconds("ours", medianOf(our)) + seconds(", raw", medianOf(raw)));
    isWithin = row(name + " / wire and fixed sleeps", (medianOf(our) + ours.sleeps) / least, "x", 1.015,
                   seconds("wire", wire.count()) + seconds(", sleeps", ours.sleeps) + rawRatio) &&
               isWithin;
    isWithin = row(name + ": this program", medianOf(cpu), "%", 3, "of a core") && isWithin;
    return row(name + ": longest gap of events", longest * 1e3, "ms", 50, "outside the fixed sleeps") && isWithin;
}

bool measureUnpaced(TransferBench& bench, const std::string& name, const std::function<Measured()>& transfer) {
    std::vector<double> our;
    std::vector<double> raw;
    double longest = 0;
    for (int round = 0; round <= kUnpacedRounds; ++round) {
        const Measured ours = transfer();
        const double loop = secondsOf([&] { bench.rawLoop(ours.exchanges); });
        if (round == 0) continue;
        our.push_back(ours.seconds - ours.sleeps);
        raw.push_back(loop);
        longest = std::max(longest, ours.longest);
    }
    const bool isWithin = row(name + " / raw loop", medianOf(our) / medianOf(raw), "x", 5,
                              seconds("ours", medianOf(our)) + seconds(", raw", medianOf(raw)));
    return row(name + ": longest gap of events", longest * 1e3, "ms", 50, "outside the fixed sleeps") && isWithin;
}

bool measureAll() {
    bool isWithin = true;
    {
        test::LiveController live;
        live.start();
        TransferBench bench(live.path());
        isWithin = measureUnpaced(bench, "download, unpaced", [&] { return bench.download(); });
        isWithin = measureUnpaced(bench, "upload, unpaced", [&] { return bench.upload(); }) && isWithin;
    }
    test::LiveController live;
    const SimPace pace;
    live.controller.setPace(pace);
    live.wakefulFor = std::chrono::microseconds(300);
    live.start();
    TransferBench bench(live.path());
    isWithin = measurePaced(bench, pace, "download, paced", [&] { return bench.download(); }) && isWithin;
    return measurePaced(bench, pace, "upload, paced", [&] { return bench.upload(); }) && isWithin;
}

}  // namespace
}  // namespace qrv

int main(int argc, char** argv) {
    qrv::test::useOffscreenDisplay();
    testing::InitGoogleTest(&argc, argv);
    const qrv::Application application(argc, argv);
    return qrv::measureAll() ? 0 : 1;
}
