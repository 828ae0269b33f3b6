#include "shell/FrmRecentView.h"

#include <QBoxLayout>
#include <QPushButton>

#include "platform/qt/GridView.h"

namespace qrv {

FrmRecentView::FrmRecentView(FrmRecent& form, DesktopHost& host) : FormView(form, host), form_(form) {
    GridView* files = addGrid(form.Grid1);
    files->setAccessibleName(QStringLiteral("Recent files"));
    GridView* paths = addGrid(form.Grid2);
    paths->setAccessibleName(QStringLiteral("Paths of the recent files"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(addButton(QStringLiteral("Command1"), form.Command1, [this] { form_.Command1_Click(); }));
    QPushButton* cancel = addButton(QStringLiteral("Command2"), form.Command2, [this] { form_.Command2_Click(); });
    buttons->addWidget(cancel);
    setCancelButton(cancel);

    QBoxLayout* body = makeBody();
    body->addWidget(files, 1);
    body->addWidget(paths);
    body->addLayout(buttons);
    files->setFocus();
}

}  // namespace qrv
