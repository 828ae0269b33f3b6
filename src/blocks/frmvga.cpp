#include "blocks/frmvga.h"

#include "blocks/CommentText.h"
#include "platform/Platform.h"
#include "store/Workbench.h"

namespace qrv {

frmvga::frmvga(Workbench& bench, Form& opener)
    : Form("frmvga", "Configuration Description"), bench_(bench), opener_(opener) {}

void frmvga::activate() {
    txtCmt.text = withBoxBreaks(bench_.db.CommentComment());
    txtCmt.locked = bench_.IsReadOnlyFile;
}

void frmvga::txtCmt_Change() {
    db1& db = bench_.db;
    txtCmt.text = withoutDoubledBreaks(txtCmt.text);
    if (txtCmt.text == withBoxBreaks(db.CommentComment())) return;
    db.CommentEdit();
    db.CommentComment(withStoredBreaks(txtCmt.text));
    db.CommentUpdate();
}

void frmvga::mnuexit() {
    bench_.platform.formHost.hide(*this);
    bench_.platform.formHost.show(opener_);
}

bool frmvga::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode) return true;
    mnuexit();
    return false;
}

}  // namespace qrv
