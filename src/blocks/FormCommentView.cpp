#include "blocks/FormCommentView.h"

#include <QAction>
#include <QBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStatusBar>

#include "platform/qt/DesktopHost.h"
#include "platform/qt/Theme.h"

namespace qrv {

FormCommentView::FormCommentView(FormComment& form, DesktopHost& host) : FormView(form, host), form_(form) {
    addDone(QStringLiteral("mnuexit"), QStringLiteral("&Done"), [this] { form_.mnuexit(); });
    QPlainTextEdit* first = addText(QStringLiteral("Text1"), form.Text1, [this] { form_.Text1_Change(); });
    QPlainTextEdit* second = addText(QStringLiteral("Text2"), form.Text2, [this] { form_.Text2_Change(); });
    first->setAccessibleName(QStringLiteral("Comment"));
    second->setAccessibleName(QStringLiteral("Second comment, shown instead of the first where it is not empty"));
    addTip(second, QStringLiteral("Shown in the main window instead of the comment above, unless it is empty"));
    QBoxLayout* body = makeBody();
    for (QPlainTextEdit* text : {first, second}) {
        text->setFont(theme::fixedFont());
        body->addWidget(text, 1);
    }
    if (host.hasTips()) {
        statusBar()->setObjectName(QStringLiteral("statusBar"));
        auto* words =
            new QLabel(QStringLiteral("Above the comment; below a second one, shown instead unless it is empty"));
        words->setObjectName(QStringLiteral("whichIsWhich"));
        statusBar()->addWidget(words);
    }
    resize(theme::sizeOfText(72, 20));
    first->setFocus();
}

}  // namespace qrv
