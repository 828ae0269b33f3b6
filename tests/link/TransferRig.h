// A whole tool without windows on a simulated controller under a false clock: a configuration on disk, the four forms
// of a transfer, a record of the line.
#pragma once

#include <filesystem>
#include <string>

#include "LinkRig.h"
#include "blocks/BlockProgram.h"
#include "blocks/frmGeneral.h"
#include "link/TransferWindow.h"
#include "link/frmDownload.h"
#include "link/frmSelect.h"
#include "link/frmUpload.h"
#include "link/frmWarn.h"
#include "link/sim/SimulatedPort.h"
#include "store/LifeCycle.h"
#include "twins/TemporaryFolder.h"

namespace qrv::test {

struct TransferRig : LinkServices {
    /// @param box  takes the boxes in the script's place; may be null
    /// @param line  stands before the controller's port; may be null
    explicit TransferRig(SimSetup setup = {}, MessageBox* box = nullptr, SerialPort* line = nullptr)
        : controller(std::move(setup)),
          shownBox(box == nullptr ? static_cast<MessageBox&>(boxes) : *box),
          usedPort(line == nullptr ? static_cast<SerialPort&>(port) : *line) {
        pump.nextArrival = [this] { return port.isOpen() ? port.nextArrival() : std::nullopt; };
        comm.observe(&record);
        select.continueWith(download);
        window.enableCommand1 = [this](bool enabled) { command1 = enabled; };
        window.refreshSlots = [this] { general.showBoardTexts(); };
        window.showGeneral = [this] {
            ++generalShown;
            general.loadBoardTexts();
            general.storeBoardTexts();
            general.ProcessCPU();
        };
        bench.windows.loadBoardTexts = [this] { general.loadBoardTexts(); };
        bench.windows.storeBoardTexts = [this] { general.storeBoardTexts(); };
        bench.db.open_database(QRV_CATALOGUE_FOLDER);
        bench.db.create_new_database(folder.file("a.mdb"));
        OpenConfiguration(bench, folder.file("a.mdb"));
    }

    /// Places a function by its name on a free block.
    void place(std::int16_t block, const std::string& name) {
        static_cast<void>(placeFunction(bench, block, " ", name));
    }
    void setConstant(std::int16_t block, std::int16_t slot, std::int32_t value) {
        bench.db.ConstantSeek(block, slot);
        bench.db.ConstantEdit();
        bench.db.ConstantValue(value);
        bench.db.ConstantUpdate();
    }
    /// Saves the open configuration to its file and opens it again.
    void save() {
        CloseConfiguration(bench, Answer::Yes);
        OpenConfiguration(bench, folder.file("a.mdb"));
    }

    /// The whole way of a user: the box, "Continue", "Start".
    void runDownload() {
        host.onModal("frmDownload", [this](Form&) { download.Download_Click(); });
        refusedDownload();
    }
    /// The same with something in the way, so that the window leaves before there is a "Start".
    void refusedDownload() {
        host.load(select);
        select.Blocks.value = true;
        command1 = false;
        select.Command1_Click();
    }
    void expectOverwriteQuestion(Answer answer = Answer::Yes) {
        boxes.expect({.text = "WARNING  This Action Will Overwrite The Selected Configuration\n"
                              "                       Do You Wish To Continue?",
                      .buttons = Buttons::YesNo,
                      .icon = Icon::Warning},
                     answer);
    }
    void runUpload() {
        expectOverwriteQuestion();
        uploadBlocks();
    }
    /// The same with the boxes told by the test.
    void uploadBlocks() {
        host.onModal("frmUpload", [this](Form&) {
            upload.Blocks.value = true;
            upload.Continue_Click();
        });
        host.showModal(upload);
    }

    [[nodiscard]] std::string made(const std::string& name) {
        std::filesystem::create_directories(folder.file(name));
        return folder.file(name);
    }

    TemporaryFolder folder;
    SimulatedController controller;
    SimulatedPort port{controller, clock};
    MessageBox& shownBox;
    SerialPort& usedPort;
    Workbench bench{
        Platform{shownBox, dialogs, host, settings, clock, pump, usedPort},
        ProgramPlaces{.work = made("work"), .catalogue = QRV_CATALOGUE_FOLDER, .backups = folder.file("kept")}};
    TransferWindow window;
    frmComm comm{bench};
    frmGeneral general{bench};
    frmWarn warn{bench, window};
    frmSelect select{bench, window};
    frmDownload download{bench, comm, select, window};
    frmUpload upload{bench, comm, window, {folder.path()}};
    bool command1 = true;
    int generalShown = 0;
};

}  // namespace qrv::test
