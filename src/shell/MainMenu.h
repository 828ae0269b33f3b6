// The main window's menu as data: every entry with its given name and caption, in the order in which the user sees it.
// Form3 sets what is shown and what may be chosen; the view mirrors it.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Controls.h"

namespace qrv {

/// One menu of the menu bar.
struct TopMenu {
    std::string name;
    std::string caption;
    std::vector<MenuEntry> entries;
};

class MainMenu {
 public:
    MainMenu();

    [[nodiscard]] std::vector<TopMenu>& menus() { return menus_; }
    [[nodiscard]] const std::vector<TopMenu>& menus() const { return menus_; }
    /// The entry with a given name, which must be one of the menu's.
    [[nodiscard]] MenuEntry& entry(std::string_view name);
    [[nodiscard]] const MenuEntry& entry(std::string_view name) const;
    [[nodiscard]] bool has(std::string_view name) const { return find(name) != nullptr; }

    /// Element 0 is the separator above the recent files, elements 1 to 4 are the files.
    [[nodiscard]] MenuEntry& mnuRecentFile(int index);
    [[nodiscard]] const MenuEntry& mnuRecentFile(int index) const;

 private:
    [[nodiscard]] const MenuEntry* find(std::string_view name) const;

    std::vector<TopMenu> menus_;
};

}  // namespace qrv
