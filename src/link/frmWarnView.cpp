#include "link/frmWarnView.h"

#include <QBoxLayout>
#include <QLabel>

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
    addLastRow(
        body,
        {.name = QStringLiteral("Command1"), .source = form.Command1, .clicked = [this] { form_.Command1_Click(); }},
        {.name = QStringLiteral("Command2"), .source = form.Command2, .clicked = [this] { form_.Command2_Click(); }});
}

}  // namespace qrv
