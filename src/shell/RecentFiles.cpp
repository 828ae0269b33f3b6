#include "shell/RecentFiles.h"

#include "platform/Settings.h"
#include "shell/MainMenu.h"

namespace qrv {

namespace {

constexpr const char* kSection = "Recent Files";

std::string keyOf(int index) { return "RecentFile" + std::to_string(index); }

}  // namespace

std::string RecentFiles::path(int index) const { return settings_.get(kSection, keyOf(index), ""); }

void RecentFiles::save(int index, const std::string& path) { settings_.save(kSection, keyOf(index), path); }

void RecentFiles::add(const std::string& path) {
    for (int index = 1; index <= kRecentFileCount; ++index) {
        if (menu_.mnuRecentFile(index).tag == path) return;
    }
    for (int index = kRecentFileCount - 1; index >= 1; --index) {
        const std::string moved = this->path(index);
        if (!moved.empty()) save(index + 1, moved);
    }
    save(1, path);
    rebuild();
}

void RecentFiles::moveToTop(int index, const std::string& path) {
    for (int place = index; place >= 2; --place) save(place, this->path(place - 1));
    save(1, path);
    rebuild();
}

void RecentFiles::rebuild() {
    if (path(1).empty()) return;
    menu_.mnuRecentFile(0).visible = true;
    for (int index = 1; index <= kRecentFileCount; ++index) {
        const std::string shown = path(index);
        if (shown.empty()) continue;
        MenuEntry& entry = menu_.mnuRecentFile(index);
        entry.caption = shown;
        entry.tag = shown;
        entry.visible = true;
    }
}

void RecentFiles::clearMenu() {
    menu_.mnuRecentFile(0).visible = false;
    for (int index = 1; index <= kRecentFileCount; ++index) {
        MenuEntry& entry = menu_.mnuRecentFile(index);
        entry.caption.clear();
        entry.tag.clear();
        entry.visible = false;
    }
}

}  // namespace qrv
