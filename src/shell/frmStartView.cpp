#include "shell/frmStartView.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPixmap>

#include "platform/qt/Theme.h"

namespace qrv {

namespace {

constexpr int kLogoWidth = 480;  // pixels
constexpr double kStartTitlePoints = 20;

QPixmap logoOf(const std::string& bytes, qreal ratio) {
    QPixmap picture;
    picture.loadFromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<uint>(bytes.size()));
    if (picture.isNull()) return picture;
    picture = picture.scaledToWidth(static_cast<int>(kLogoWidth * ratio), Qt::SmoothTransformation);
    picture.setDevicePixelRatio(ratio);
    return picture;
}

}  // namespace

frmStartView::frmStartView(frmStart& form, DesktopHost& host) : FormView(form, host), form_(form) {
    setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    setWindowIcon(theme::icon(QStringLiteral("app")));
    auto* logo = new QLabel(this);
    logo->setObjectName(QStringLiteral("Image1"));
    logo->setAccessibleName(QStringLiteral("Logo"));
    logo->setPixmap(logoOf(form.Image1, devicePixelRatioF()));
    QLabel* title = addLabel(QStringLiteral("lblTitle"), form.lblTitle);
    QFont large = font();
    large.setPointSizeF(kStartTitlePoints);
    large.setBold(true);
    title->setFont(large);
    QLabel* version = addLabel(QStringLiteral("lblVersion"), form.lblVersion);
    QLabel* description = addLabel(QStringLiteral("lblDescription"), form.lblDescription);
    QLabel* address = addLabel(QStringLiteral("lblAddress"), form.lblAddress);

    QBoxLayout* body = makeBody();
    body->setContentsMargins(0, 0, 0, 0);
    body->addWidget(logo);
    auto* words = new QVBoxLayout;
    words->setContentsMargins(24, 10, 24, 18);
    words->setSpacing(4);
    auto* head = new QHBoxLayout;
    head->addWidget(title);
    head->addStretch(1);
    head->addWidget(version, 0, Qt::AlignBottom);
    words->addLayout(head);
    words->addWidget(description);
    words->addSpacing(6);
    words->addWidget(address);
    body->addLayout(words);
    addTimer(form.Timer1, [this] { form_.Timer1_Timer(); });
}

}  // namespace qrv
