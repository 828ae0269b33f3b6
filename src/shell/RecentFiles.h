// The list of the four files opened last: kept in the user's settings, shown in the main menu.
#pragma once

#include <string>

namespace qrv {

class MainMenu;
class Settings;

inline constexpr int kRecentFileCount = 4;

class RecentFiles {
 public:
    RecentFiles(Settings& settings, MainMenu& menu) : settings_(settings), menu_(menu) {}

    /// Puts a path on top, and the fourth falls off; a path that the menu lists leaves everything as it is.
    void add(const std::string& path);
    /// Puts a path on top that stood at `index`, 1 to 4; those above it move down.
    void moveToTop(int index, const std::string& path);
    /// Shows what the settings hold. Hides nothing.
    void rebuild();
    /// Clears and hides the menu's entries.
    void clearMenu();

    /// The path at `index`, 1 to 4, as the settings hold it; "" for none.
    [[nodiscard]] std::string path(int index) const;

 private:
    void save(int index, const std::string& path);

    Settings& settings_;
    MainMenu& menu_;
};

}  // namespace qrv
