#include "shell/frmAbout.h"

#include "platform/CodePage.h"
#include "store/EngineVersion.h"
#include "store/Workbench.h"

namespace qrv {

frmAbout::frmAbout(Workbench& bench, bool showsAdditions)
    : Form("frmAbout", "About QRV Edit"),
      lblAddress{Label{.caption = "Tessaly Instruments"}, Label{.caption = "Process Controllers"},
                 Label{.caption = "service@tessaly.example"}},
      lblCatalogue{.caption = "", .visible = showsAdditions},
      lblEngine{.caption = "SQLite " + engineVersion(), .visible = showsAdditions},
      bench_(bench) {}

void frmAbout::load() { lblCatalogue.caption = "Function catalogue " + toUtf8(bench_.db.Version()); }

void frmAbout::Command1_Click() { bench_.platform.formHost.unload(*this); }

}  // namespace qrv
