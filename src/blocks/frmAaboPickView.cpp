#include "blocks/frmAaboPickView.h"

#include <QBoxLayout>
#include <QLabel>
#include <QListWidget>

#include "platform/qt/Theme.h"

namespace qrv {

frmAaboPickView::frmAaboPickView(frmAaboPick& form, DesktopHost& host) : FormView(form, host), form_(form) {
    struct Pane {
        const char* list;
        const char* label;
        ListBox* rows;
        const Label* caption;
        Event click;
        Event doubleClick;
    };
    const Pane panes[] = {
        {"List1", "Label1", &form.List1, &form.Label1, [this] { form_.List1_Click(); },
         [this] { form_.List1_DblClick(); }},
        {"List2", "Label2", &form.List2, &form.Label2, [this] { form_.List2_Click(); },
         [this] { form_.List2_DblClick(); }},
    };
    auto* across = new QHBoxLayout;
    across->setSpacing(12);
    for (const Pane& pane : panes) {
        QLabel* label = addLabel(QString::fromLatin1(pane.label), *pane.caption);
        QListWidget* list = addList(QString::fromLatin1(pane.list), *pane.rows, pane.click);
        label->setBuddy(list);
        nameAfter(list, *pane.caption);
        watchKeys(list, [this](Key key) { return form_.keyDown(key); });
        watchDoubleClick(list->viewport(), pane.doubleClick);
        // A widget, for it gives its room away while it is hidden.
        auto* part = new QWidget(this);
        auto* column = new QVBoxLayout(part);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(label);
        column->addWidget(list, 1);
        addMirror([part, rows = pane.rows] { part->setVisible(rows->visible); });
        across->addWidget(part, 1);
    }
    makeBody()->addLayout(across);
    resize(theme::sizeOfText(46, 16));
}

}  // namespace qrv
