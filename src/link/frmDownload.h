// A download: what is looked at before it begins, its sections, its progress. Shown modally from frmSelect; the
// terminal program drives the same form without a window.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "link/TransferProgress.h"
#include "link/TransferWindow.h"
#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

struct DownloadSection;
class frmComm;
class frmSelect;
struct Workbench;

/// The bar: filled from the left end to `width` in `colour`.
struct ProgressPicture {
    static constexpr double kWidth = 7095;  ///< of the whole picture
    double width = 0;
    std::int32_t colour = 0;  ///< blue, green and red, a byte each, red the lowest
};

/// How far a download came: does the configuration fit, is a controller there, can its firmware take what is chosen,
/// the sections, the commit, whose frame has gone out.
enum class DownloadStage { Fitting, Reaching, Gates, Sections, Commit };

/// How a download ended.
struct DownloadOutcome {
    DownloadStage stage = DownloadStage::Fitting;
    bool committed = false;
    /// Frames that were never confirmed. A committed download may have some: nobody asks how a string's frame went.
    std::int32_t unconfirmed = 0;
    /// Strings of the configuration that were left out: there were too many, or one belongs to no parameter.
    std::int32_t unsentStrings = 0;
    std::string reason;  ///< which place raised `xfer_abort`; "" where none did
};

class frmDownload final : public Form {
 public:
    frmDownload(Workbench& bench, frmComm& comm, frmSelect& select, const TransferWindow& window);

    Button Download{.caption = "Start"};
    Button Cancel{.caption = "Cancel"};
    ProgressPicture Progress;
    Label Label6{.caption = "PROGRESS: "};
    Label Label7;  ///< the percentage
    Label Label8{.caption = "ROM Version"};
    Label VerNum{.caption = "Unknown"};
    Label Label3{.caption = "Bytes Sent:"};
    Label Label5;  ///< the byte count
    Label Label1{.caption = "Current Operation: "};
    Label Label2{.caption = "Press Start To Begin Download"};

    // The bar's colour, which turns through the rainbow.
    std::int32_t red = 0, green = 0, blue = 0;           ///< 0..255
    std::int16_t reddir = 0, greendir = 0, bluedir = 0;  ///< 1 rising, 0 falling
    std::int32_t colr = 0;

    /// Looks at the configuration and at the controller: what can't go is told, and the form leaves at its activation.
    void load() override;
    void activate() override;
    void Download_Click();
    void Cancel_Click();
    bool queryUnload(UnloadMode mode) override;
    void unload() override;
    void update_progress_picture();

    // --- beside the window ---
    [[nodiscard]] const DownloadOutcome& outcome() const { return outcome_; }
    [[nodiscard]] const TransferProgress& progress() const { return progress_; }
    /// After each step of the byte count, and at each section's beginning.
    std::function<void()> onProgress = [] {};

 private:
    void takeBoxes();
    [[nodiscard]] bool fitsController();
    [[nodiscard]] bool fitsConstants();
    [[nodiscard]] bool fitsRetentive();
    bool reachController();
    bool readVersion();
    void gateTriacs();
    void gatePagers();
    void gateModbusAndCharts();
    [[nodiscard]] bool hasBlockOf(std::int16_t function);
    void estimate();
    [[nodiscard]] bool forcedAlarmsCanGo();
    [[nodiscard]] bool anyFlag() const;
    void fail(const char* reason);

    void resetBar();
    void announce();
    void runSections();
    void runSection(const DownloadSection& section);
    void runRoutine(const DownloadSection& section);
    void finish();
    void showBytes();
    void noteProgress();
    void turnColourWheel();

    Workbench& bench_;
    frmComm& comm_;
    frmSelect& select_;
    const TransferWindow& window_;
    DownloadOutcome outcome_;
    TransferProgress progress_;
    std::int32_t expectedBytes_ = 0;
    std::int32_t retriesBefore_ = 0;
    std::int32_t failuresBefore_ = 0;
};

}  // namespace qrv
