// "View All Block Outputs": the outputs of a running controller's blocks in one grid, ten to a row, read once or over
// and over. Opened from the main window's menu, in its place.
#pragma once

#include <array>
#include <chrono>
#include <optional>

#include "link/LiveOutputs.h"
#include "platform/Controls.h"
#include "platform/FormHost.h"
#include "platform/Grid.h"
#include "store/Workbench.h"

namespace qrv {

class MGrid final : public Form {
 public:
    static constexpr int kBlocksPerRow = 10;
    static constexpr int kRows = 71;
    /// Blocks that a continuous pass reads at most: those on the window.
    static constexpr int kBlocksInSight = 130;

    MGrid(Workbench& bench, frmComm& comm, StaleMarks marks);

    void load() override;
    /// The close box is "&Done".
    bool queryUnload(UnloadMode mode) override;
    void unload() override;

    Grid Grid2{"Grid2", kRows + 1, kBlocksPerRow + 1};
    Button Command1{.caption = "Single Poll"};
    Button Command2{.caption = "Start Poll"};
    Button Command3{.caption = "Stop Poll"};
    MenuEntry mnuexitEntry{.name = "mnuexit", .caption = "&Done", .tag = {}};
    /// How fast values come; only where stale values are marked.
    Label lblRate{.visible = false};
    /// Ticks while values come in: the window shows them then.
    Timer tmrShow{.interval = std::chrono::milliseconds(50)};
    bool polling = false;
    bool close_pending = false;

    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    /// Goes at once, or, while outputs are read, as soon as the reading under way has ended.
    void mnuexit();
    void tmrShow_Timer();

 private:
    enum class Mode { Single, Continuous };

    void run(Mode mode);
    void begin();
    void end();
    void repeatPasses();
    /// Gives how many blocks were read.
    int pass(Mode mode, int first, int last);
    void readBlock(std::int16_t block, OutputKind kind);
    void mark(std::int16_t block, bool answered);
    [[nodiscard]] bool mayGoOn(Mode mode) const;
    void leave();

    Workbench& bench_;
    LiveOutputs outputs_;
    StaleMarks marks_;
    std::array<std::optional<std::chrono::system_clock::time_point>, kBlockCount> silentSince_{};
    bool isBusy_ = false;
    bool isStopWanted_ = false;
    bool isLoaded_ = false;
};

}  // namespace qrv
