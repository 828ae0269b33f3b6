#include "shell/AllFormsView.h"

#include "blocks/FormCommentView.h"
#include "blocks/frmAaboPickView.h"
#include "blocks/frmBlockView.h"
#include "blocks/frmGeneralView.h"
#include "blocks/frmvgaView.h"
#include "link/MGridView.h"
#include "link/MonitorView.h"
#include "link/frmCommView.h"
#include "link/frmDownloadView.h"
#include "link/frmSelectView.h"
#include "link/frmTagView.h"
#include "link/frmUploadView.h"
#include "link/frmWarnView.h"
#include "platform/qt/DesktopHost.h"
#include "shell/FrmAskView.h"
#include "shell/FrmRecentView.h"
#include "shell/frmAboutView.h"
#include "shell/frmStartView.h"

namespace qrv {

void addAllViews(DesktopHost& host, Workbench& bench, Extras extras) {
    host.setTips(extras == Extras::Shown);
    host.add("Form3", [&bench, extras](Form& form, DesktopHost& shower) -> FormView* {
        return new Form3View(static_cast<Form3&>(form), shower, bench, extras);
    });
    host.add("frmDownload", [extras](Form& form, DesktopHost& shower) -> FormView* {
        return new frmDownloadView(static_cast<frmDownload&>(form), shower, extras);
    });
    host.add("frmUpload", [extras](Form& form, DesktopHost& shower) -> FormView* {
        return new frmUploadView(static_cast<frmUpload&>(form), shower, extras);
    });
    host.add<FormCommentView, FormComment>("FormComment");
    host.add<FrmAskView, FrmAsk>("FrmAsk");
    host.add<FrmRecentView, FrmRecent>("FrmRecent");
    host.add<MGridView, MGrid>("MGrid");
    host.add<MonitorView, Monitor>("Monitor");
    host.add<frmAaboPickView, frmAaboPick>("frmAaboPick");
    host.add<frmAboutView, frmAbout>("frmAbout");
    host.add<frmBlockView, frmBlock>("frmBlock");
    host.add<frmCommView, frmComm>("frmComm");
    host.add<frmGeneralView, frmGeneral>("frmGeneral");
    host.add<frmSelectView, frmSelect>("frmSelect");
    host.add<frmStartView, frmStart>("frmStart");
    host.add<frmTagView, frmTag>("frmTag");
    host.add<frmWarnView, frmWarn>("frmWarn");
    host.add<frmvgaView, frmvga>("frmvga");
}

}  // namespace qrv
