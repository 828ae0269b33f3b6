#include "shell/FrmAskView.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QGroupBox>
#include <QPushButton>

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

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(addButton(QStringLiteral("Command1"), form.Command1, [this] { form_.Command1_Click(); }));
    QPushButton* cancel = addButton(QStringLiteral("Command2"), form.Command2, [this] { form_.Command2_Click(); });
    buttons->addWidget(cancel);
    setCancelButton(cancel);

    QBoxLayout* body = makeBody();
    body->addWidget(frame, 1);
    body->addLayout(buttons);
    setMinimumWidth(360);
    first->setFocus();
}

}  // namespace qrv
