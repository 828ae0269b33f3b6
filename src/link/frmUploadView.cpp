#include "link/frmUploadView.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "platform/qt/Theme.h"

namespace qrv {

frmUploadView::frmUploadView(frmUpload& form, DesktopHost& host) : FormView(form, host), form_(form) {
    QBoxLayout* body = makeBody();
    QLabel* heading = addLabel(QStringLiteral("Label5"), form.Label5);
    heading->setFont(theme::headingFont());
    body->addWidget(heading);
    static constexpr const char* kNames[] = {"Blocks", "Modbus", "Alarms", "Pager", "Egus", "Charts", "Menus"};
    for (std::size_t i = 0; Choice * box : form.boxes()) {
        body->addWidget(addCheck(QString::fromLatin1(kNames[i++]), *box, [] {}));
    }
    auto* choose = new QHBoxLayout;
    choose->addWidget(addButton(QStringLiteral("btnAll"), form.btnAll, [this] { form_.btnAll_Click(); }));
    choose->addWidget(addButton(QStringLiteral("btnNone"), form.btnNone, [this] { form_.btnNone_Click(); }));
    body->addLayout(choose);
    auto* progress = new QGridLayout;
    progress->addWidget(addLabel(QStringLiteral("Uploading"), form.Uploading), 0, 0);
    progress->addWidget(addLabel(QStringLiteral("Section"), form.Section), 0, 1);
    progress->addWidget(addLabel(QStringLiteral("BytesRecLbl"), form.BytesRecLbl), 1, 0);
    progress->addWidget(addLabel(QStringLiteral("BytesReceived"), form.BytesReceived), 1, 1);
    body->addLayout(progress);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(addButton(QStringLiteral("Continue"), form.Continue, [this] { form_.Continue_Click(); }));
    QPushButton* cancel = addButton(QStringLiteral("Cancel"), form.Cancel, [this] { form_.Cancel_Click(); });
    buttons->addWidget(cancel);
    setCancelButton(cancel);
    body->addLayout(buttons);
    setMinimumWidth(340);
}

}  // namespace qrv
