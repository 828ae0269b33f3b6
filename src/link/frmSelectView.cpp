#include "link/frmSelectView.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "platform/qt/Theme.h"

namespace qrv {

frmSelectView::frmSelectView(frmSelect& form, DesktopHost& host) : FormView(form, host), form_(form) {
    QBoxLayout* body = makeBody();
    QLabel* heading = addLabel(QStringLiteral("Label1"), form.Label1);
    heading->setFont(theme::headingFont());
    body->addWidget(heading);
    static constexpr const char* kNames[] = {"Blocks", "Alarms", "Pager", "Egus", "Modbus", "Menus", "Charts"};
    for (std::size_t i = 0; Choice * box : form.boxes()) {
        body->addWidget(addCheck(QString::fromLatin1(kNames[i++]), *box, [] {}));
    }
    auto* choose = new QHBoxLayout;
    choose->addWidget(addButton(QStringLiteral("btnAll"), form.btnAll, [this] { form_.btnAll_Click(); }));
    choose->addWidget(addButton(QStringLiteral("btnNone"), form.btnNone, [this] { form_.btnNone_Click(); }));
    body->addLayout(choose);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(addButton(QStringLiteral("Command1"), form.Command1, [this] { form_.Command1_Click(); }));
    QPushButton* cancel = addButton(QStringLiteral("Command2"), form.Command2, [this] { form_.Command2_Click(); });
    buttons->addWidget(cancel);
    setCancelButton(cancel);
    body->addLayout(buttons);
}

}  // namespace qrv
