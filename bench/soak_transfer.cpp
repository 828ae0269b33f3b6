// Random configurations down and up over a line that damages or loses one frame in a hundred each way, under a false
// clock: all must come back equal. Prints how often a frame had to be sent again. usage: soak_transfer [SEED]
#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "link/ProgramText.h"
#include "link/RandomProgram.h"
#include "link/TransferRig.h"

namespace qrv::test {
namespace {

constexpr int kConfigurations = 200;
constexpr int kOneIn = 100;
constexpr int kMostConstants = 5632;

/// What becomes of a frame on its way.
enum class Fate { Arrives, Lost, Damaged };

/// A port on a bad line.
class NoisyPort final : public SerialPort {
 public:
    explicit NoisyPort(unsigned seed) : random_(seed) {}
    void standBefore(SerialPort& port) { port_ = &port; }

    [[nodiscard]] int lost() const { return lost_; }
    [[nodiscard]] int damaged() const { return damaged_; }

    bool open(std::int16_t comPort, const std::string& settings) override { return port_->open(comPort, settings); }
    void close() override { port_->close(); }
    [[nodiscard]] bool isOpen() const override { return port_->isOpen(); }
    [[nodiscard]] std::size_t waitingCount() override {
        if (reply_ == Fate::Lost) port_->discardInput();
        return port_->waitingCount();
    }
    void discardInput() override { port_->discardInput(); }
    void write(std::span<const std::uint8_t> bytes) override {
        const Fate request = draw();
        reply_ = draw();
        if (request == Fate::Lost) return;
        std::vector<std::uint8_t> sent(bytes.begin(), bytes.end());
        if (request == Fate::Damaged) flipOneBit(sent);
        port_->write(sent);
    }
    [[nodiscard]] std::vector<std::uint8_t> readAll() override {
        std::vector<std::uint8_t> bytes = port_->readAll();
        if (reply_ == Fate::Damaged && !bytes.empty()) flipOneBit(bytes);
        return bytes;
    }
    [[nodiscard]] SerialFault fault() const override { return port_->fault(); }
    [[nodiscard]] std::string faultText() const override { return port_->faultText(); }
    [[nodiscard]] int descriptor() const override { return port_->descriptor(); }

 private:
    std::size_t below(std::size_t limit) { return random_() % limit; }
    Fate draw() {
        if (below(kOneIn) != 0) return Fate::Arrives;
        const bool isLost = below(2) == 0;
        ++(isLost ? lost_ : damaged_);
        return isLost ? Fate::Lost : Fate::Damaged;
    }
    void flipOneBit(std::vector<std::uint8_t>& bytes) {
        bytes[below(bytes.size())] ^= static_cast<std::uint8_t>(1U << below(8));
    }

    SerialPort* port_ = nullptr;
    std::mt19937 random_;
    Fate reply_ = Fate::Arrives;
    int lost_ = 0;
    int damaged_ = 0;
};

/// How many frames had to be sent again so often.
class Retries final : public LinkObserver {
 public:
    void sent(std::span<const std::uint8_t>, int attempt) override {
        if (attempt > 1) --counts_[static_cast<std::size_t>(attempt - 2)];
        ++counts_[static_cast<std::size_t>(attempt - 1)];
    }
    void received(std::span<const std::uint8_t>, Verdict) override {}
    void discarded(std::span<const std::uint8_t>) override {}
    void resynchronised(std::span<const std::uint8_t>) override {}

    void print() const {
        for (std::size_t retries = 0; retries < counts_.size(); ++retries) {
            if (counts_[retries] > 0) std::printf("%2zu retries: %7ld frames\n", retries, counts_[retries]);
        }
    }

 private:
    std::array<long, 10> counts_{};
};

/// A tool whose line is bad.
struct NoisyTool {
    NoisyTool(unsigned seed, Retries& retries) : line(seed) {
        line.standBefore(rig.port);
        rig.comm.observe(&retries);
    }
    NoisyPort line;
    TransferRig rig{{}, nullptr, &line};
};

bool comesBackEqual(NoisyTool& sender, NoisyTool& reader) {
    sender.rig.controller = SimulatedController();
    sender.rig.runDownload();
    if (!sender.rig.download.outcome().committed) return false;
    reader.rig.controller = SimulatedController();
    reader.rig.controller.load(sender.rig.controller.committed());
    reader.rig.runUpload();
    sender.rig.host.happened.clear();
    reader.rig.host.happened.clear();
    return reader.rig.upload.outcome().complete && programOf(reader.rig.bench) == heldPartOf(sender.rig.bench);
}

int soak(unsigned seed) {
    std::printf("seed %u\n", seed);
    Retries retries;
    NoisyTool sender(seed, retries);
    NoisyTool reader(seed + 1, retries);
    ProgramDrawer drawer(sender.rig.bench, seed);
    int unequal = 0;
    for (int i = 0; i < kConfigurations; ++i) {
        i % 10 == 5 ? drawer.drawFull(kMostConstants) : drawer.draw(40 + i % 100);
        if (comesBackEqual(sender, reader)) continue;
        ++unequal;
        std::printf("configuration %d did not come back equal\n", i);
    }
    retries.print();
    std::printf("%d frames lost, %d damaged; %d of %d configurations came back equal\n",
                sender.line.lost() + reader.line.lost(), sender.line.damaged() + reader.line.damaged(),
                kConfigurations - unequal, kConfigurations);
    return unequal == 0 ? 0 : 1;
}

}  // namespace
}  // namespace qrv::test

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const unsigned seed = argc > 1 ? static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10)) : std::random_device{}();
    return qrv::test::soak(seed);
}
