// The live views under test: the shipped catalogue, a block program of the test's own, and a simulated controller at
// the far end of a line as fast as the settings say.
#pragma once

#include <fstream>
#include <iterator>
#include <string>

#include "LinkRig.h"
#include "link/MGrid.h"
#include "link/Monitor.h"
#include "link/frmTag.h"
#include "twins/TemporaryFolder.h"

namespace qrv::test {

/// Functions of the shipped catalogue: "ZERO" has an analog output, "OFF" a discrete one.
inline constexpr std::int16_t kAnalogFunction = 0;
inline constexpr std::int16_t kDiscreteFunction = 90;

struct LiveRig : LinkServices {
    LiveRig() {
        pump.nextArrival = [this] { return port.isOpen() ? port.nextArrival() : std::nullopt; };
        comm.observe(&record);
        bench.db.open_database(bench.places.catalogue);
        bench.FnOfBlock.fill(kNop);
        bench.CurrentFileName = folder.file("boiler.qrv");
        bench.windows.showMain = [this] { ++timesMainShown; };
    }

    void analog(std::int16_t block, std::int16_t hundredths) {
        bench.FnOfBlock.at(static_cast<std::size_t>(block)) = kAnalogFunction;
        controller.fixAnalog(static_cast<std::uint16_t>(block), hundredths);
    }
    void discrete(std::int16_t block, bool isOn) {
        bench.FnOfBlock.at(static_cast<std::size_t>(block)) = kDiscreteFunction;
        controller.fixDiscrete(static_cast<std::uint16_t>(block), isOn);
    }
    /// Does something as the user after so long.
    void after(milliseconds time, std::function<void()> action) { pump.at(clock.now() + time, std::move(action)); }
    /// From the request with this number on nothing answers any more; the poll is the first.
    void dieAt(std::uint64_t request) { controller.play(SimFaultPlan::from("silence", request)); }
    void expectNoConnection() { boxes.expect("Could Not Connect To Target\nCheck Settings And Connection Cables"); }
    /// Numbers of the blocks whose output was asked for, in order, repeats included.
    [[nodiscard]] std::vector<int> blocksRead() const {
        std::vector<int> blocks;
        for (const Bytes& frame : record.sends) {
            if (frame.front() == 0x20) blocks.push_back(frame[1] * 256 + frame[2]);
        }
        return blocks;
    }

    TemporaryFolder folder;
    SimulatedController controller;
    SimulatedPort port{controller, clock, SimulatedPort::Pacing::BySettings};
    Workbench bench{platformWith(port), {.work = {}, .catalogue = QRV_CATALOGUE_FOLDER, .backups = {}}};
    frmComm comm{bench};
    int timesMainShown = 0;
};

/// The window of all outputs in front of the user.
struct MGridRig : LiveRig {
    explicit MGridRig(StaleMarks marks = StaleMarks::Shown) : form(bench, comm, marks) { host.show(form); }

    /// Something to read.
    void prepare() { analog(0, 100); }
    void done() { form.mnuexit(); }

    MGrid form;
};

/// The board of chosen outputs in front of the user.
struct MonitorRig : LiveRig {
    explicit MonitorRig(StaleMarks marks = StaleMarks::Shown) : form(bench, comm, question, marks) { host.show(form); }

    void prepare() {
        analog(12, 100);
        add("12", "Pump");
    }
    void done() { form.munexit(); }

    /// The user adds a block by "Add Block".
    void add(const std::string& block, const std::string& tag) {
        host.onModal("frmTag", [block, tag](Form& shown) {
            auto& asked = dynamic_cast<frmTag&>(shown);
            asked.Text1.text = tag;
            asked.Text2.text = block;
            asked.Command1_Click();
        });
        form.Command1_Click();
    }
    /// Polls for so long.
    void poll(milliseconds time) {
        after(time, [this] { form.Command3_Click(); });
        form.Command2_Click();
    }
    [[nodiscard]] std::string file() const { return folder.file("boiler.mon"); }
    [[nodiscard]] std::string bytes() const {
        std::ifstream in(file(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    void write(const std::string& content) const { std::ofstream(file(), std::ios::binary) << content; }

    frmTag question{bench};
    Monitor form;
};

}  // namespace qrv::test
