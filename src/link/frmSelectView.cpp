#include "link/frmSelectView.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QLabel>

#include "platform/qt/Theme.h"

namespace qrv {

frmSelectView::frmSelectView(frmSelect& form, DesktopHost& host) : FormView(form, host), form_(form) {
    QBoxLayout* body = makeBody();
    QLabel* heading = addLabel(QStringLiteral("Label1"), form.Label1);
    heading->setFont(theme::headingFont());
    body->addWidget(heading);
    addChoiceGroup(body, {.boxes = form.boxes(),
                          .all = form.btnAll,
                          .allClicked = [this] { form_.btnAll_Click(); },
                          .none = form.btnNone,
                          .noneClicked = [this] { form_.btnNone_Click(); }});
    addLastRow(
        body,
        {.name = QStringLiteral("Command1"), .source = form.Command1, .clicked = [this] { form_.Command1_Click(); }},
        {.name = QStringLiteral("Command2"), .source = form.Command2, .clicked = [this] { form_.Command2_Click(); }});
}

}  // namespace qrv
