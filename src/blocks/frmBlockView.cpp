#include "blocks/frmBlockView.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace qrv {

frmBlockView::frmBlockView(frmBlock& form, DesktopHost& host) : FormView(form, host), form_(form) {
    QLabel* purpose = addLabel(QStringLiteral("Lab1"), form.Lab1);
    purpose->setWordWrap(true);
    QComboBox* blocks = addDropDown(QStringLiteral("Combo1"), form.Combo1, [this] { form_.Combo1_Click(); });
    blocks->setAccessibleName(QStringLiteral("Blocks of this function"));
    QLineEdit* number = addLine(QStringLiteral("Text1"), form.Text1, [] {});
    number->setAccessibleName(QStringLiteral("Block number"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(addButton(QStringLiteral("Command1"), form.Command1, [this] { form_.Command1_Click(); }));
    QPushButton* cancel = addButton(QStringLiteral("Command2"), form.Command2, [this] { form_.Command2_Click(); });
    buttons->addWidget(cancel);
    setCancelButton(cancel);

    QBoxLayout* body = makeBody();
    body->addWidget(purpose);
    body->addWidget(blocks);
    body->addWidget(number);
    body->addStretch(1);
    body->addLayout(buttons);
    setMinimumWidth(320);
    number->setFocus();
}

}  // namespace qrv
