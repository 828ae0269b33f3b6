#include "link/frmCommView.h"

#include <QAction>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

namespace qrv {

frmCommView::frmCommView(frmComm& form, DesktopHost& host) : FormView(form, host), form_(form) {
    addDone(QStringLiteral("mnuExit"), QStringLiteral("&Done"), [this] { form_.mnuExit(); });
    struct Row {
        const char* box;
        const char* label;
        ListBox* list;
        const Label* caption;
        Event chosen;
    };
    const Row rows[] = {
        {"Combo1", "Label1", &form.Combo1, &form.Label1, [this] { form_.chooseBaudRate(form_.Combo1.listIndex); }},
        {"Combo2", "Label2", &form.Combo2, &form.Label2, [this] { form_.choosePort(form_.Combo2.listIndex); }},
        {"Combo3", "Label3", &form.Combo3, &form.Label3, [this] { form_.chooseParity(form_.Combo3.listIndex); }},
    };
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(16);
    for (int i = 0; const Row& row : rows) {
        QLabel* label = addLabel(QString::fromLatin1(row.label), *row.caption);
        QComboBox* box = addDropDown(QString::fromLatin1(row.box), *row.list, row.chosen);
        box->setMinimumContentsLength(22);
        box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        label->setBuddy(box);
        nameAfter(box, *row.caption);
        grid->addWidget(label, i, 0);
        grid->addWidget(box, i, 1);
        ++i;
    }
    grid->setColumnStretch(1, 1);
    QBoxLayout* body = makeBody();
    body->addLayout(grid);
    body->addStretch(1);
}

}  // namespace qrv
