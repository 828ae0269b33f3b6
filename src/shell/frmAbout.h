// "About QRV Edit": the program's name and version, its maker, and the versions of what it stands on. The splash takes
// its version line from here.
#pragma once

#include <array>
#include <string>

#include "platform/Controls.h"
#include "platform/FormHost.h"

namespace qrv {

struct Workbench;

class frmAbout final : public Form {
 public:
    /// @param showsAdditions  whether the versions of catalogue and engine are shown
    explicit frmAbout(Workbench& bench, bool showsAdditions = true);

    void load() override;
    void Command1_Click();
    /// What "Copy" gives the clipboard: a line for each version, to report a fault with.
    [[nodiscard]] std::string versions() const;

    Label lblTitle{.caption = "QRV EDIT"};
    Label lblDescription{.caption = "TESSALY INSTRUMENTS"};
    Label lblVersion;  ///< "Version 6.73"
    std::array<Label, 3> lblAddress;
    Label lblCatalogue;
    Label lblEngine;
    Button cmdCopy;
    Button Command1{.caption = "OK", .isDefault = true};

 private:
    Workbench& bench_;
};

}  // namespace qrv
