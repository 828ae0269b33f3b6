// What the helps of several programs say in the same words: the environment that they heed and the places of their
// files, a line each. The manual pages are made of the helps.
#pragma once

#include <string_view>

namespace qrv::help {

inline constexpr std::string_view kSettingsEnvironment =
    "  QRV_SETTINGS        a file for the settings, in place of the one below\n"
    "  XDG_CONFIG_HOME     a folder in place of ~/.config\n";
inline constexpr std::string_view kStateEnvironment =
    "  XDG_STATE_HOME      a folder in place of ~/.local/state\n"
    "  TEMP, TMPDIR        a folder in place of /tmp; TEMP goes before TMPDIR\n";
inline constexpr std::string_view kSettingsFiles =
    "  ~/.config/QRV_Edit/settings.ini  the settings: the port, the devices that port numbers stand for, recent "
    "files\n";
inline constexpr std::string_view kStateFiles =
    "  ~/.local/state/QRV_Edit          work files; in its folder backups copies of work that could not be saved\n"
    "  /tmp/QRVUploadLog.txt            every exchange of the last reading of a controller\n"
    "  ../share/qrv_edit                seen from the program: the function catalogue, unless it is beside the "
    "program\n";

}  // namespace qrv::help
