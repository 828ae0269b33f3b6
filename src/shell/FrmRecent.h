// "Recent Files": the files opened last as a list to choose from, shown from the start dialog.
#pragma once

#include <functional>
#include <string>

#include "platform/Controls.h"
#include "platform/FormHost.h"
#include "platform/Grid.h"

namespace qrv {

class FormHost;
class RecentFiles;

class FrmRecent final : public Form {
 public:
    /// @param getRecentFile  opens the recent file with an index, 1 to 4
    FrmRecent(FormHost& host, const RecentFiles& files, std::function<void(int)> getRecentFile);

    void load() override;
    /// Opens the selected file, if there is one, and leaves; a double click on a row does the same.
    void Command1_Click();
    void Command2_Click();

    Grid Grid1;  ///< "Filename" and "Path", cut to what fits; row n is the recent file n
    Grid Grid2;  ///< the whole paths, unseen
    Button Command1{.caption = "Open", .isDefault = true};
    Button Command2{.caption = "Cancel"};

 private:
    FormHost& host_;
    const RecentFiles& files_;
    std::function<void(int)> getRecentFile_;
};

/// A file's name as the list shows it: more than 30 characters are cut at the end, behind "...".
[[nodiscard]] std::string shownName(const std::string& name);
/// A folder as the list shows it: of more than 45 characters "..." and the last 39.
[[nodiscard]] std::string shownFolder(const std::string& folder);

}  // namespace qrv
