// Every file name that the user gives goes through this interface.
#pragma once

#include <string>

namespace qrv {

enum class FileDialogKind { Open, Save };

/// One question for a file name. The dialog itself asks nothing more: it takes a name that does not exist in an open
/// dialog and one that exists in a save dialog, adds no suffix and changes no name. Texts are UTF-8.
struct FileQuestion {
    FileDialogKind kind = FileDialogKind::Open;
    std::string filter{};       ///< "description|*.a;*.b", pairs joined by "|"
    std::string initialName{};  ///< the name shown first, with its folder; "" for none
    bool hidesReadOnly = true;  ///< no box that offers to open as read-only
    std::string title{};        ///< "" for the platform's own

    friend bool operator==(const FileQuestion&, const FileQuestion&) = default;
};

/// The filter of every dialog for configurations.
inline constexpr const char* kConfigurationFilter = "QRV Configuration Database (*.qrv;*.mdb)|*.qrv;*.mdb";

class FileDialog {
 public:
    virtual ~FileDialog() = default;

    /// The chosen path; "" if the user cancelled or nobody could answer.
    virtual std::string ask(const FileQuestion& question) = 0;
};

}  // namespace qrv
