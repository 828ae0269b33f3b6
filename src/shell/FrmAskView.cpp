#include "shell/FrmAskView.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QGroupBox>

#include "platform/qt/Texts.h"

namespace qrv {

FrmAskView::FrmAskView(FrmAsk& form, DesktopHost& host) : FormView(form, host), form_(form) {
    auto* frame = new QGroupBox(shownUtf8(form.Frame1.caption), this);
    frame->setObjectName(QStringLiteral("Frame1"));
    auto* options = new QVBoxLayout(frame);
    options->setContentsMargins(16, 14, 16, 14);
    options->setSpacing(10);
    QAbstractButton* first = addOption(QStringLiteral("Option1"), form.Option1, [this] { form_.Option1_Click(); });
    options->addWidget(first);
    options->addWidget(addOption(QStringLiteral("Option2"), form.Option2, [this] { form_.Option2_Click(); }));
    options->addWidget(addOption(QStringLiteral("Option3"), form.Option3, [this] { form_.Option3_Click(); }));

    QBoxLayout* body = makeBody();
    body->addWidget(frame, 1);
    addLastRow(
        body,
        {.name = QStringLiteral("Command1"), .source = form.Command1, .clicked = [this] { form_.Command1_Click(); }},
        {.name = QStringLiteral("Command2"), .source = form.Command2, .clicked = [this] { form_.Command2_Click(); }});
    setMinimumWidth(360);
    first->setFocus();
}

}  // namespace qrv
