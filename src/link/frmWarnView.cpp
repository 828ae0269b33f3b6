#include "link/frmWarnView.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "platform/qt/Theme.h"

namespace qrv {

frmWarnView::frmWarnView(frmWarn& form, DesktopHost& host) : FormView(form, host), form_(form) {
    QBoxLayout* body = makeBody();
    for (int number = 1; const Label& source : form.labels) {
        QLabel* label = addLabel(QStringLiteral("Label%1").arg(number), source);
        label->setAlignment(Qt::AlignHCenter);
        if (number == 1) label->setFont(theme::titleFont());
        body->addWidget(label);
        ++number;
    }
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(addButton(QStringLiteral("Command1"), form.Command1, [this] { form_.Command1_Click(); }));
    QPushButton* cancel = addButton(QStringLiteral("Command2"), form.Command2, [this] { form_.Command2_Click(); });
    buttons->addWidget(cancel);
    setCancelButton(cancel);
    body->addLayout(buttons);
}

}  // namespace qrv
