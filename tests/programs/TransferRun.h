// `qrv` with a simulated controller at the far end of a real pseudo-terminal, and a plant to transfer.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/LiveController.h"
#include "programs/ProgramRun.h"
#include "programs/Reading.h"

namespace qrv {

/// A plant as text. Block 10 is an OARESET with a name, block 20 an AOUT with a calibration in its hidden constants,
/// and the CPU has its three blocks.
inline std::string plantText(const std::string& oaInput = "600", const std::string& name = "RESET") {
    std::string text =
        "QRV configuration text, form 1\n\n[Block List]\n"
        "BlockNumber=10 FunctionNumber=12 Constants=12 TempRam=0 VolRam=0 Comment=\"Reset\" VisioComment=\"\"\n"
        "BlockNumber=20 FunctionNumber=81 Constants=10 TempRam=0 VolRam=0 Comment=\"Valve\" VisioComment=\"\"\n"
        "BlockNumber=600 FunctionNumber=2 Constants=10 TempRam=0 VolRam=0 Comment=\"\" VisioComment=\"\"\n"
        "BlockNumber=601 FunctionNumber=2 Constants=10 TempRam=0 VolRam=0 Comment=\"\" VisioComment=\"\"\n"
        "BlockNumber=602 FunctionNumber=125 Constants=5 TempRam=0 VolRam=0 Comment=\"\" VisioComment=\"\"\n"
        "\n[Constants]\n";
    const auto add = [&text](int block, int slot, const std::string& value) {
        text += "BlockNumber=" + std::to_string(block) + " Offset=" + std::to_string(slot) + " ConstantValue=" + value +
                "\n";
    };
    for (int slot = 0; slot < 10; ++slot) {
        add(600, slot, "0");
        add(601, slot, "0");
        if (slot < 5) add(602, slot, "0");
    }
    for (int slot = 0; slot < 12; ++slot) add(10, slot, slot == 0 ? oaInput : "0");
    for (int slot = 0; slot < 10; ++slot) add(20, slot, slot == 0 ? "10" : slot == 8 ? "17" : "0");
    return text +
           "\n[Comments]\nTitle=\"The plant\" Comment=\"\" Config=\"\"\n\n[ParmString]\n"
           "BlockNumber=10 Offset=3 Pstring=\"" +
           name + "\"\n";
}

struct TransferRun {
    explicit TransferRun(SimSetup setup = {}) : live(std::move(setup)) { make("plant.qrv", plantText()); }

    void make(const std::string& file, const std::string& text) const {
        writeFile(qrv.path("plant.txt"), text);
        const ProgramRun load = run("load --force plant.txt " + file);
        ASSERT_EQ(load.exitCode, 0) << load.err;
    }
    [[nodiscard]] ProgramRun run(const std::string& arguments) const { return qrv.run(arguments); }
    /// On the controller's line.
    [[nodiscard]] ProgramRun onLine(const std::string& arguments) const {
        return run(arguments + " --port " + live.path());
    }
    /// Ctrl+C, or another signal, as soon as so many frames have gone out.
    [[nodiscard]] ProgramRun interrupted(const std::string& arguments, int frames,
                                         const std::string& signal = "INT") const {
        return meanwhile(arguments, frames, "kill -" + signal + " $pid");
    }
    /// With a command of the shell's as soon as so many frames have gone out; the program is $pid in it.
    [[nodiscard]] ProgramRun meanwhile(const std::string& arguments, int frames, const std::string& command) const {
        return qrv.runMeanwhile(arguments + " --trace frames.txt --port " + live.path(),
                                "[ \"$(grep -c ' > ' frames.txt)\" -ge " + std::to_string(frames) + " ]", command);
    }
    [[nodiscard]] std::string bytesOfFile(const std::string& name) const { return bytesOf(qrv.path(name)); }
    /// The controller's block table becomes one whose answers are too great a sum to be checked.
    void garbleBlockTable() {
        live.stop();
        SimMemory memory = live.controller.working();
        memory.write(4, 600, std::vector<std::uint8_t>(1500, 255));
        live.controller.load(memory);
        live.start();
    }
    [[nodiscard]] bool isThere(const std::string& name) const { return std::filesystem::exists(qrv.path(name)); }

    QrvProgram qrv;
    test::LiveController live;
};

}  // namespace qrv
