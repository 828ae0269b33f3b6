#include "shell/FrmRecentView.h"

#include <QBoxLayout>

#include "platform/qt/GridView.h"

namespace qrv {

FrmRecentView::FrmRecentView(FrmRecent& form, DesktopHost& host) : FormView(form, host), form_(form) {
    GridView* files = addGrid(form.Grid1);
    files->setAccessibleName(QStringLiteral("Recent files"));
    GridView* paths = addGrid(form.Grid2);
    paths->setAccessibleName(QStringLiteral("Paths of the recent files"));

    QBoxLayout* body = makeBody();
    body->addWidget(files, 1);
    body->addWidget(paths);
    addLastRow(
        body,
        {.name = QStringLiteral("Command1"), .source = form.Command1, .clicked = [this] { form_.Command1_Click(); }},
        {.name = QStringLiteral("Command2"), .source = form.Command2, .clicked = [this] { form_.Command2_Click(); }});
    files->setFocus();
}

}  // namespace qrv
