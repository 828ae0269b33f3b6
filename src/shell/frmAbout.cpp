#include "shell/frmAbout.h"

#include "platform/CodePage.h"
#include "store/Versions.h"
#include "store/Workbench.h"

namespace qrv {

frmAbout::frmAbout(Workbench& bench, bool showsAdditions)
    : Form("frmAbout", "About QRV Edit"),
      lblVersion{.caption = "Version " + programVersion()},
      lblAddress{Label{.caption = "Tessaly Instruments"}, Label{.caption = "Process Controllers"},
                 Label{.caption = "service@tessaly.example"}},
      lblCatalogue{.caption = "", .visible = showsAdditions},
      lblEngine{.caption = engineLine(), .visible = showsAdditions},
      cmdCopy{.caption = "&Copy", .visible = showsAdditions},
      bench_(bench) {}

void frmAbout::load() { lblCatalogue.caption = catalogueLine(toUtf8(bench_.db.Version())); }

std::string frmAbout::versions() const { return versionLines("QRV Edit", toUtf8(bench_.db.Version())); }

void frmAbout::Command1_Click() { bench_.platform.formHost.unload(*this); }

}  // namespace qrv
