#include "blocks/frmBlockView.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

namespace qrv {

frmBlockView::frmBlockView(frmBlock& form, DesktopHost& host) : FormView(form, host), form_(form) {
    QLabel* purpose = addLabel(QStringLiteral("Lab1"), form.Lab1);
    purpose->setWordWrap(true);
    QComboBox* blocks = addDropDown(QStringLiteral("Combo1"), form.Combo1, [this] { form_.Combo1_Click(); });
    blocks->setAccessibleName(QStringLiteral("Blocks of this function"));
    QLineEdit* number = addLine(QStringLiteral("Text1"), form.Text1, [] {});
    number->setAccessibleName(QStringLiteral("Block number"));

    QBoxLayout* body = makeBody();
    body->addWidget(purpose);
    body->addWidget(blocks);
    body->addWidget(number);
    body->addStretch(1);
    addLastRow(
        body,
        {.name = QStringLiteral("Command1"), .source = form.Command1, .clicked = [this] { form_.Command1_Click(); }},
        {.name = QStringLiteral("Command2"), .source = form.Command2, .clicked = [this] { form_.Command2_Click(); }});
    setMinimumWidth(320);
    number->setFocus();
}

}  // namespace qrv
