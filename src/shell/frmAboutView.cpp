#include "shell/frmAboutView.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>

#include "platform/qt/Texts.h"
#include "platform/qt/Theme.h"

namespace qrv {

namespace {

constexpr int kIconSize = 72;  // pixels
constexpr double kAboutTitlePoints = 16;

}  // namespace

frmAboutView::frmAboutView(frmAbout& form, DesktopHost& host) : FormView(form, host), form_(form) {
    auto* picture = new QLabel(this);
    picture->setPixmap(theme::icon(QStringLiteral("app")).pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));
    QLabel* title = addLabel(QStringLiteral("lblTitle"), form.lblTitle);
    QFont large = font();
    large.setPointSizeF(kAboutTitlePoints);
    large.setBold(true);
    title->setFont(large);

    auto* words = new QVBoxLayout;
    words->setSpacing(3);
    words->addWidget(title);
    words->addWidget(addLabel(QStringLiteral("lblVersion"), form.lblVersion));
    words->addWidget(addLabel(QStringLiteral("lblDescription"), form.lblDescription));
    words->addSpacing(8);
    for (std::size_t i = 0; i < form.lblAddress.size(); ++i) {
        words->addWidget(addLabel(QStringLiteral("lblAddress%1").arg(i), form.lblAddress[i]));
    }
    words->addSpacing(8);
    words->addWidget(addLabel(QStringLiteral("lblCatalogue"), form.lblCatalogue));
    words->addWidget(addLabel(QStringLiteral("lblEngine"), form.lblEngine));
    const QString toolkit = QStringLiteral("Qt %1").arg(QLatin1String(qVersion()));
    QLabel* toolkitLine = new QLabel(toolkit, this);
    toolkitLine->setObjectName(QStringLiteral("lblToolkit"));
    toolkitLine->setVisible(form.lblEngine.visible);
    words->addWidget(toolkitLine);
    words->addStretch(1);

    auto* across = new QHBoxLayout;
    across->setSpacing(20);
    across->addWidget(picture, 0, Qt::AlignTop);
    across->addLayout(words, 1);
    QPushButton* button = addButton(QStringLiteral("Command1"), form.Command1, [this] { form_.Command1_Click(); });
    setCancelButton(button);
    QPushButton* copy = addButton(QStringLiteral("cmdCopy"), form.cmdCopy, [this, toolkit] {
        QGuiApplication::clipboard()->setText(shownUtf8(form_.versions()) + QLatin1Char('\n') + toolkit);
    });
    addTip(copy, QStringLiteral("Copies the versions, to report a fault with"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(copy);
    buttons->addStretch(1);
    buttons->addWidget(button);

    QBoxLayout* body = makeBody();
    body->setContentsMargins(20, 18, 20, 14);
    body->addLayout(across, 1);
    body->addLayout(buttons);
    setMinimumWidth(380);
    button->setFocus();
}

}  // namespace qrv
