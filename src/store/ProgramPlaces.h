// The folders that the life cycle of a file needs, and where an installed or a freshly built program has them.
#pragma once

#include <string>

namespace qrv {

/// No separator at the end of a folder.
struct ProgramPlaces {
    std::string work;       ///< where work files are made
    std::string catalogue;  ///< holds QRVDATA.DAT and the logo
    std::string backups;    ///< copies of work that could not be saved
};

/// The catalogue stands beside the executable or, as installed, in "../share/qrv_edit". Work files stand in the
/// executable's folder if the catalogue does and that folder can be written, else in the per-user state folder, which
/// is made.
[[nodiscard]] ProgramPlaces findProgramPlaces();

}  // namespace qrv
