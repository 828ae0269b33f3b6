// Any bytes as replies to any command: no crash, and never more than what the protocol allows. libFuzzer drives it; the
// ordinary tests replay its corpus.
//
// The input: a command (its low bits), then replies, each as two bytes of length, a byte of delay in hundredths of a
// second, and the bytes. Each send is answered by the next one; when they are used up the line is silent.
#include <cstdlib>
#include <string>

#include "link/ScriptedLine.h"
#include "link/UploadLog.h"
#include "link/frmComm.h"
#include "platform/FileDialog.h"
#include "platform/MessageBox.h"
#include "platform/Platform.h"
#include "store/Workbench.h"
#include "twins/MemorySettings.h"

namespace qrv::test {
namespace {

class AgreeableBox final : public MessageBox {
 public:
    Answer ask(const Notice&) override { return Answer::Ok; }
};

class NoDialog final : public FileDialog {
 public:
    std::string ask(const FileQuestion&) override { return {}; }
};

class NoWindows final : public FormHost {
 public:
    void showModal(Form&) override {}
    void show(Form&) override {}
    void hide(Form&) override {}
    void unload(Form&) override {}
    [[nodiscard]] bool isVisible(const Form&) const override { return false; }
    void refresh(Form&) override {}
    void endProgram(int) override {}
};

class CountingLog final : public UploadLog {
 public:
    void print(std::string_view line) override { characters += line.size(); }
    std::size_t characters = 0;
};

class Input {
 public:
    explicit Input(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    [[nodiscard]] bool isEmpty() const { return bytes_.empty(); }
    std::size_t take() {
        if (bytes_.empty()) return 0;
        const std::uint8_t byte = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return byte;
    }
    Bytes take(std::size_t count) {
        const auto part = bytes_.first(std::min(count, bytes_.size()));
        bytes_ = bytes_.subspan(part.size());
        return {part.begin(), part.end()};
    }

 private:
    std::span<const std::uint8_t> bytes_;
};

struct FuzzRig {
    FalseClock clock;
    FalsePump pump{clock};
    AgreeableBox box;
    NoDialog dialog;
    NoWindows windows;
    MemorySettings settings;
    ScriptedLine line{clock};
    Workbench bench{Platform{box, dialog, windows, settings, clock, pump, line}, {}};
    frmComm comm{bench};
    CountingLog log;

    FuzzRig() {
        pump.nextArrival = [this] { return line.nextArrival(); };
        comm.Open_Comm_Port();
        comm.logTo(&log);
    }
};

void ask(frmComm& comm, std::size_t command) {
    std::int32_t value = 0;
    std::int16_t shortValue = 0;
    std::string version;
    switch (command % 8) {
        case 0: return comm.poll_qrm3();
        case 1: return comm.get_version(version);
        case 2: return comm.get_analog(4, value);
        case 3: return comm.get_digital(4, value);
        case 4: return comm.SendEE();
        case 5: comm.put_read(Section::BlockTableBack, 150, 0); return comm.send_and_get(7, 157);
        case 6: {
            comm.constant_index = 31;
            comm.get_no_constant(shortValue);
            comm.get_integer_constant(shortValue);
            return comm.get_long_constant(value);
        }
        default: {
            comm.put_write_head(Section::BlockTable, 50, 0);
            return comm.send_section_frame(50);
        }
    }
}

void require(bool claim) {
    if (!claim) std::abort();
}

/// Sum and checksum together are 65535.
bool isGood(const Bytes& reply) {
    unsigned long sum = 0;
    for (std::size_t i = 0; i + 2 < reply.size(); ++i) sum += reply[i];
    return reply.size() >= 3 && sum + reply[reply.size() - 2] * 256UL + reply[reply.size() - 1] == 65535;
}

void checkWrites(const ScriptedLine& line) {
    const Bytes filler(1025, 0);
    std::size_t fillers = 0;
    for (const auto& write : line.writes) fillers += write.bytes == filler ? 1 : 0;
    require(fillers <= 9);
    require(line.writes.size() - fillers >= 1 && line.writes.size() - fillers <= 10);
    for (const auto& write : line.writes) require(write.bytes == filler || write.bytes == line.writes.front().bytes);
}

}  // namespace
}  // namespace qrv::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qrv::test;
    Input input({data, size});
    FuzzRig rig;
    const std::size_t command = input.take();
    rig.line.onWrite = [&](const Bytes& written) {
        if (written.size() == 1025 || input.isEmpty()) return;
        const std::size_t length = input.take() * 256 + input.take();
        const auto delay = milliseconds(10 * input.take());
        rig.line.send(input.take(length % 1024), delay);
    };
    try {
        ask(rig.comm, command);
    } catch (const qrv::RunTimeError& error) {
        require(error.number() == qrv::ErrorNumber::Overflow ||
                error.number() == qrv::ErrorNumber::SubscriptOutOfRange);
    }
    checkWrites(rig.line);
    if (rig.bench.xfer_ok) require(isGood(rig.bench.rcv_bfr));
    return 0;
}
