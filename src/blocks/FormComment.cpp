#include "blocks/FormComment.h"

#include "blocks/CommentText.h"
#include "platform/CodePage.h"
#include "platform/Platform.h"
#include "store/Workbench.h"

namespace qrv {

FormComment::FormComment(Workbench& bench, TextBox& mainComment)
    : Form("FormComment", "Block Comments"), bench_(bench), mainComment_(mainComment) {}

void FormComment::activate() {
    db1& db = bench_.db;
    db.BlockSeek(bench_.SeekBlock);
    Text1.text = withBoxBreaks(db.BlockComment());
    Text2.text = withBoxBreaks(db.BlockVisioComment());
    Text1.locked = bench_.IsReadOnlyFile;
    Text2.locked = bench_.IsReadOnlyFile;
}

void FormComment::Text1_Change() {
    db1& db = bench_.db;
    Text1.text = withoutDoubledBreaks(Text1.text);
    db.BlockSeek(bench_.SeekBlock);
    if (Text1.text == withBoxBreaks(db.BlockComment())) return;
    db.BlockEdit();
    db.BlockComment(withStoredBreaks(Text1.text));
    db.BlockUpdate();
}

void FormComment::Text2_Change() {
    db1& db = bench_.db;
    db.BlockSeek(bench_.SeekBlock);
    if (Text2.text == withBoxBreaks(db.BlockVisioComment())) return;
    db.BlockEdit();
    db.BlockVisioComment(withStoredBreaks(Text2.text));
    db.BlockUpdate();
}

void FormComment::mnuexit() {
    mainComment_.text = trimmed(Text2.text).empty() ? Text1.text : Text2.text;
    bench_.platform.formHost.hide(*this);
}

bool FormComment::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode) return true;
    mnuexit();
    return false;
}

}  // namespace qrv
