#include "platform/qt/QtMessageBox.h"

#include <QMessageBox>

#include "platform/qt/Application.h"
#include "platform/qt/Texts.h"

namespace qrv {

namespace {

struct ButtonSet {
    QMessageBox::StandardButtons shown;
    QMessageBox::StandardButton escape;
};

ButtonSet setOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::Ok: return {QMessageBox::Ok, QMessageBox::Ok};
        case Buttons::OkCancel: return {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel};
        case Buttons::YesNo: return {QMessageBox::Yes | QMessageBox::No, QMessageBox::No};
        case Buttons::YesNoCancel:
            return {QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Cancel};
    }
    return {QMessageBox::Ok, QMessageBox::Ok};
}

QMessageBox::Icon iconOf(Icon icon) {
    switch (icon) {
        case Icon::None: return QMessageBox::NoIcon;
        case Icon::Warning: return QMessageBox::Warning;
        case Icon::Question: return QMessageBox::Question;
        case Icon::Information: return QMessageBox::Information;
        case Icon::Critical: return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

Answer answerOf(int button) {
    switch (button) {
        case QMessageBox::Ok: return Answer::Ok;
        case QMessageBox::Cancel: return Answer::Cancel;
        case QMessageBox::Yes: return Answer::Yes;
        case QMessageBox::No: return Answer::No;
        default: return Answer::None;
    }
}

}  // namespace

Answer QtMessageBox::ask(const Notice& notice) {
    const ButtonSet set = setOf(notice.buttons);
    QMessageBox box(Application::frontWindow());
    box.setObjectName(QStringLiteral("messageBox"));
    box.setWindowTitle(shownUtf8(notice.title));
    box.setTextFormat(Qt::PlainText);
    box.setText(shownUtf8(notice.text));
    box.setIcon(iconOf(notice.icon));
    box.setStandardButtons(set.shown);
    box.setEscapeButton(set.escape);
    return answerOf(box.exec());
}

}  // namespace qrv
