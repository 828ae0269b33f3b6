#include "blocks/frmGeneralView.h"

#include <QAction>
#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "platform/qt/GridView.h"
#include "platform/qt/Theme.h"

namespace qrv {

frmGeneralView::frmGeneralView(frmGeneral& form, DesktopHost& host) : FormView(form, host), form_(form) {
    addDone(QStringLiteral("mnuexit"), QStringLiteral("&Done"), [this] { form_.mnuexit(); });
    QLineEdit* title = addLine(QStringLiteral("txtTitle"), form.txtTitle, [this] { form_.txtTitle_Change(); });
    QLineEdit* cfg = addLine(QStringLiteral("txtCfg"), form.txtCfg, [this] { form_.txtCfg_Change(); });
    QPlainTextEdit* comments = addText(QStringLiteral("Text1"), form.Text1, [] {});
    addTip(comments, QStringLiteral("Double click, or Enter, to edit the description"));
    watchDoubleClick(comments->viewport(), [this] { form_.Text1_DblClick(); });
    watchKeys(comments, [this](Key key) {
        if (key != Key::Enter) return false;
        form_.Text1_DblClick();
        return true;
    });
    GridView* boards = addGrid(form.fg);
    boards->setAccessibleText([this](int row, int) {
        return QStringLiteral("slot %1, %2").arg(row).arg(QString::fromStdString(form_.fg.text(row, 1)));
    });

    struct Row {
        const char* name;
        const Label* caption;
        QWidget* box;
    };
    const Row rows[] = {
        {"Label1", &form.Label1, title}, {"Label3", &form.Label3, cfg}, {"Label2", &form.Label2, comments}};
    auto* texts = new QGridLayout;
    texts->setHorizontalSpacing(16);
    texts->setVerticalSpacing(8);
    for (int i = 0; const Row& row : rows) {
        QLabel* label = addLabel(QString::fromLatin1(row.name), *row.caption);
        label->setBuddy(row.box);
        nameAfter(row.box, *row.caption);
        texts->addWidget(label, i, 0, row.box == comments ? Qt::AlignTop : Qt::AlignVCenter);
        texts->addWidget(row.box, i, 1);
        ++i;
    }
    texts->setColumnStretch(1, 1);
    texts->setRowStretch(2, 1);
    QLabel* heading = addLabel(QStringLiteral("Label4"), form.Label4);
    heading->setFont(theme::headingFont());
    heading->setBuddy(boards);
    nameAfter(boards, form.Label4);
    boards->showAllRows();

    QBoxLayout* body = makeBody();
    body->addLayout(texts, 1);
    body->addSpacing(4);
    body->addWidget(heading);
    body->addWidget(boards);
    resize(theme::sizeOfText(76, 28));
    title->setFocus();
}

}  // namespace qrv
