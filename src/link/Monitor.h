// "View Selected Block Outputs": a board of up to 25 labels that the user places by hand, each with the output of a
// block of a running controller. Opened from the main window's menu, in its place.
#pragma once

#include <array>
#include <chrono>
#include <optional>

#include "link/LiveOutputs.h"
#include "link/MonitorBoard.h"
#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

class frmTag;

/// A label of the board: two lines, code page 1252.
struct BoardLabel {
    std::string caption{};
    bool visible = false;
    int left = 0;            ///< form units
    int top = 0;             ///< form units
    std::int32_t color = 0;  ///< blue, green and red from the highest byte down
    std::optional<std::chrono::system_clock::time_point> silentSince{};  ///< its value is no longer answered for
};

class Monitor final : public Form {
 public:
    Monitor(Workbench& bench, frmComm& comm, frmTag& question, StaleMarks marks);

    void load() override;
    /// The close box is "&Done".
    bool queryUnload(UnloadMode mode) override;
    void unload() override;

    std::array<BoardLabel, kMonitorSlots + 1> analog;  ///< element 0 is never shown
    Button Command1{.caption = "Add Block"};
    Button Command2{.caption = "Start Poll"};
    Button Command3{.caption = "Stop Poll"};
    Button Command4{.caption = "Reset"};
    Button Command5{.caption = "save"};
    Button Command6{.caption = "restore"};
    MenuEntry munexitEntry{.name = "munexit", .caption = "&Done", .tag = {}};
    /// How fast values come; only where stale values are marked.
    Label lblRate{.visible = false};
    /// Ticks while values come in: the window shows them then.
    Timer tmrShow{.interval = std::chrono::milliseconds(50)};

    /// From one place of the board to the next, in form units.
    static constexpr int kPlaceWidth = 1950;
    static constexpr int kPlaceHeight = 1250;

    std::int16_t entry_count = 0;
    bool polling = false;
    bool close_pending = false;
    MonitorEntries entries;
    /// By the label's index, 1 to 25.
    [[nodiscard]] MonitorEntry& entry(int index) { return entries.at(static_cast<std::size_t>(index - 1)); }
    [[nodiscard]] BoardLabel& label(int index) { return analog.at(static_cast<std::size_t>(index)); }

    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Command5_Click();
    void Command6_Click();
    /// Goes at once, or, while outputs are read, as soon as the reading under way has ended.
    void munexit();
    void tmrShow_Timer();
    /// A label was dropped, the middle of the place that it covers here, in form units: it takes the board's place
    /// that this point lies in, which is the nearest.
    void drop(int index, int x, int y);
    /// A label goes this many columns and rows of places on, and no further than the last one.
    void step(int index, int columns, int rows);

 private:
    void showLabel(int index, const std::string& tag);
    void poll();
    void pass();
    void readEntry(int index);
    void mark(BoardLabel& label, bool answered);
    void leave();

    Workbench& bench_;
    LiveOutputs outputs_;
    frmTag& question_;
    StaleMarks marks_;
    bool isBusy_ = false;
    bool isStopWanted_ = false;
    bool isLoaded_ = false;
};

}  // namespace qrv
