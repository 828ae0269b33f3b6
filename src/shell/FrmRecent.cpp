#include "shell/FrmRecent.h"

#include "platform/CodePage.h"
#include "platform/Paths.h"
#include "shell/RecentFiles.h"

namespace qrv {

namespace {

constexpr std::size_t kNameLimit = 30;
constexpr std::size_t kFolderLimit = 45;
constexpr std::size_t kFolderTail = 39;
constexpr int kNameColumn = 0;
constexpr int kFolderColumn = 1;

}  // namespace

std::string shownName(const std::string& name) {
    return name.size() > kNameLimit ? "..." + name.substr(0, kNameLimit) : name;
}

std::string shownFolder(const std::string& folder) {
    return folder.size() > kFolderLimit ? "..." + folder.substr(folder.size() - kFolderTail) : folder;
}

FrmRecent::FrmRecent(FormHost& host, const RecentFiles& files, std::function<void(int)> getRecentFile)
    : Form("FrmRecent", "Recent Files"),
      Grid1("Grid1", 1, 2, 1, 0),
      Grid2("Grid2", 1, 1, 1, 0),
      host_(host),
      files_(files),
      getRecentFile_(std::move(getRecentFile)) {
    Grid1.setText(0, kNameColumn, "Filename");
    Grid1.setText(0, kFolderColumn, "Path");
    Grid1.setColWidth(kNameColumn, 3300);
    Grid1.setColWidth(kFolderColumn, 4800);
    Grid2.setVisible(false);
    Grid1.onDoubleClick = [this] {
        Command1_Click();
        return true;
    };
}

void FrmRecent::load() {
    int count = 0;
    if (!files_.path(1).empty()) {
        for (int index = 1; index <= kRecentFileCount; ++index) {
            if (!files_.path(index).empty()) count = index;
        }
    }
    Grid1.setRows(count + 1);
    Grid2.setRows(count + 1);
    for (int row = 1; row <= count; ++row) {
        // One byte a character from here on: the limits count characters.
        const std::string path = fromUtf8(files_.path(row));
        Grid2.setText(row, 0, path);
        Grid1.setText(row, kNameColumn, shownName(fileNameOf(path)));
        Grid1.setText(row, kFolderColumn, shownFolder(folderOf(path)));
    }
    if (count > 0) Grid1.select(1, kNameColumn);
}

void FrmRecent::Command1_Click() {
    const int row = Grid1.row();
    if (row >= 1 && row < Grid1.rows()) getRecentFile_(row);
    host_.unload(*this);
}

void FrmRecent::Command2_Click() { host_.unload(*this); }

}  // namespace qrv
