// An upload: a controller's configuration into the open one, with a log of every exchange. One that fails or is
// cancelled gives the file back as it was last saved.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "link/TransferProgress.h"
#include "link/TransferWindow.h"
#include "platform/Controls.h"
#include "platform/FormHost.h"
#include "platform/NamedChoice.h"

namespace qrv {

class UploadLogFile;
class frmComm;
struct UploadSection;
struct Workbench;

/// How far an upload came: is a controller there, may the open configuration be overwritten, the sections.
enum class UploadStage { Reaching, Asking, Sections };

/// How an upload ended.
struct UploadOutcome {
    UploadStage stage = UploadStage::Reaching;
    bool complete = false;  ///< every section came, and whole
    /// Reads that came to nothing. A complete upload may have some: nobody asks how a read of constants went, and what
    /// stands in the place of its values is wrong.
    std::int32_t failedReads = 0;
    std::string reason;  ///< which place raised `xfer_abort`; "" where none did
    /// Why what came could not be stored, as a sentence; "" where that was not what failed.
    std::string storeFault;
};

class frmUpload final : public Form {
 public:
    /// @param logFolders  the log goes into the first of them that takes it; where there is none no log is kept
    frmUpload(Workbench& bench, frmComm& comm, const TransferWindow& window, std::vector<std::string> logFolders);

    Label Label5{.caption = "Select Items To Upload"};
    Choice Blocks{.caption = "Blocks"};
    Choice Modbus{.caption = "Modbus Registers + Coils"};
    Choice Alarms{.caption = "Alarms"};
    Choice Pager{.caption = "Pager Information"};
    Choice Egus{.caption = "Engineering Units"};
    Choice Charts{.caption = "Charts"};
    Choice Menus{.caption = "Menus + Screens"};
    Button btnAll{.caption = "Select All"};
    Button btnNone{.caption = "Select None"};
    Button Continue{.caption = "Continue", .isDefault = true};
    Button Cancel{.caption = "Cancel"};
    // Hidden until the upload starts.
    Label Uploading{.caption = "Uploading. . .", .visible = false};
    Label Section{.visible = false};
    Label BytesRecLbl{.caption = "Bytes Received:", .visible = false};
    Label BytesReceived{.visible = false};

    /// The load failed, or the user thought better of it: the form leaves at its activation.
    bool quit_now = false;

    /// The boxes in the window's order.
    [[nodiscard]] std::array<NamedChoice, 7> boxes() {
        return {{{"Blocks", &Blocks},
                 {"Modbus", &Modbus},
                 {"Alarms", &Alarms},
                 {"Pager", &Pager},
                 {"Egus", &Egus},
                 {"Charts", &Charts},
                 {"Menus", &Menus}}};
    }

    void load() override;
    void activate() override;
    void btnAll_Click() { setAll(true); }
    void btnNone_Click() { setAll(false); }
    void Continue_Click();
    void Cancel_Click();
    bool queryUnload(UnloadMode mode) override;
    void unload() override;

    // --- beside the window ---
    [[nodiscard]] const UploadOutcome& outcome() const { return outcome_; }
    [[nodiscard]] const TransferProgress& progress() const { return progress_; }
    /// Where the last upload's log is; "" where none was kept.
    [[nodiscard]] const std::string& logPath() const { return logPath_; }
    /// After each count of received bytes, and at each section's beginning.
    std::function<void()> onProgress = [] {};

 private:
    void setAll(bool value);
    void showProgressControls(bool visible);
    void reachController();
    void readVersion();
    void askToOverwrite();
    [[nodiscard]] std::unique_ptr<UploadLogFile> openLog();
    void begin();
    void runSections();
    void runSection(const UploadSection& section);
    void end();
    void revert();
    void noteProgress();

    Workbench& bench_;
    frmComm& comm_;
    const TransferWindow& window_;
    std::vector<std::string> logFolders_;
    std::string logPath_;
    UploadOutcome outcome_;
    TransferProgress progress_;
    std::int32_t retriesBefore_ = 0;
    std::int32_t failuresBefore_ = 0;
    bool everySectionCame_ = true;
};

/// One row of an upload's order.
struct UploadSection {
    using Routine = void (*)(Workbench& bench, frmComm& comm);

    std::string_view word;  ///< how a command line names it
    Choice frmUpload::*box;
    std::string_view shown;
    Routine routine;  ///< null: this program can't read the section yet
    /// Of the controller's answers, as far as it can be told beforehand; null where `routine` is.
    std::int32_t (*bytes)(Workbench& bench);
    float leastFirmware = 0;

    [[nodiscard]] constexpr bool isAvailable() const { return routine != nullptr; }
};

}  // namespace qrv
