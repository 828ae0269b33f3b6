#include "link/frmDownloadView.h"

#include <QBoxLayout>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include "platform/qt/Texts.h"

namespace qrv {

namespace {

constexpr int kBarHeight = 26;  // pixels

/// Paints the form's picture to its own width.
class ProgressBox final : public QFrame {
 public:
    ProgressBox(const ProgressPicture& picture, QWidget* parent) : QFrame(parent), picture_(picture) {
        setObjectName(QStringLiteral("Progress"));
        setAccessibleName(QStringLiteral("Progress"));
        setFrameStyle(QFrame::Panel | QFrame::Sunken);
        setFixedHeight(kBarHeight);
    }

 protected:
    void paintEvent(QPaintEvent* event) override {
        QFrame::paintEvent(event);
        QPainter painter(this);
        const QRect inside = contentsRect();
        const int width = static_cast<int>(inside.width() * picture_.width / ProgressPicture::kWidth);
        const std::int32_t colour = picture_.colour;
        painter.fillRect(inside.x(), inside.y(), width, inside.height(),
                         QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF));
    }

 private:
    const ProgressPicture& picture_;
};

}  // namespace

frmDownloadView::frmDownloadView(frmDownload& form, DesktopHost& host, Extras extras)
    : FormView(form, host), form_(form) {
    QBoxLayout* body = makeBody();
    auto* facts = new QGridLayout;
    const struct {
        const char* captionName;
        const Label* caption;
        const char* valueName;
        const Label* value;
    } rows[] = {
        {"Label8", &form.Label8, "VerNum", &form.VerNum},
        {"Label3", &form.Label3, "Label5", &form.Label5},
        {"Label1", &form.Label1, "Label2", &form.Label2},
        {"Label6", &form.Label6, "Label7", &form.Label7},
    };
    for (int i = 0; const auto& row : rows) {
        facts->addWidget(addLabel(QString::fromLatin1(row.captionName), *row.caption), i, 0);
        facts->addWidget(addLabel(QString::fromLatin1(row.valueName), *row.value), i, 1);
        ++i;
    }
    facts->setColumnStretch(1, 1);
    body->addLayout(facts);
    auto* bar = new ProgressBox(form.Progress, this);
    addMirror([bar] { bar->update(); });
    body->addWidget(bar);
    if (extras == Extras::Shown) {
        body->addWidget(addWords(QStringLiteral("progressSentence"), [this] {
            const TransferProgress& progress = form_.progress();
            return progress.section() > 0 ? shownUtf8(progress.sentence()) : QString{};
        }));
    }
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(addButton(QStringLiteral("Download"), form.Download, [this] { form_.Download_Click(); }));
    QPushButton* cancel = addButton(QStringLiteral("Cancel"), form.Cancel, [this] { form_.Cancel_Click(); });
    buttons->addWidget(cancel);
    setCancelButton(cancel);
    body->addLayout(buttons);
    setMinimumWidth(480);
}

}  // namespace qrv
