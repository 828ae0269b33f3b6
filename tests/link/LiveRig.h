// A live view under test: the shipped catalogue, a block program of the test's own, and a simulated controller at the
// far end of a line as fast as the settings say.
#pragma once

#include <string>

#include "LinkRig.h"
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

}  // namespace qrv::test
