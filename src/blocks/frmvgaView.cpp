#include "blocks/frmvgaView.h"

#include <QAction>
#include <QBoxLayout>
#include <QPlainTextEdit>

#include "platform/qt/Theme.h"

namespace qrv {

frmvgaView::frmvgaView(frmvga& form, DesktopHost& host) : FormView(form, host), form_(form) {
    addDone(QStringLiteral("mnuexit"), QStringLiteral("&Done"), [this] { form_.mnuexit(); });
    QPlainTextEdit* text = addText(QStringLiteral("txtCmt"), form.txtCmt, [this] { form_.txtCmt_Change(); });
    text->setFont(theme::fixedFont());
    text->setAccessibleName(QStringLiteral("Configuration description"));
    makeBody()->addWidget(text);
    resize(theme::sizeOfText(84, 26));
    text->setFocus();
}

}  // namespace qrv
