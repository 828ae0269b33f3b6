#include "link/frmUploadView.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>

#include "platform/qt/Texts.h"
#include "platform/qt/Theme.h"

namespace qrv {

frmUploadView::frmUploadView(frmUpload& form, DesktopHost& host, Extras extras) : FormView(form, host), form_(form) {
    QBoxLayout* body = makeBody();
    QLabel* heading = addLabel(QStringLiteral("Label5"), form.Label5);
    heading->setFont(theme::headingFont());
    body->addWidget(heading);
    addChoiceGroup(body, {.boxes = form.boxes(),
                          .all = form.btnAll,
                          .allClicked = [this] { form_.btnAll_Click(); },
                          .none = form.btnNone,
                          .noneClicked = [this] { form_.btnNone_Click(); }});
    auto* counts = new QGridLayout;
    counts->addWidget(addLabel(QStringLiteral("Uploading"), form.Uploading), 0, 0);
    counts->addWidget(addLabel(QStringLiteral("Section"), form.Section), 0, 1);
    counts->addWidget(addLabel(QStringLiteral("BytesRecLbl"), form.BytesRecLbl), 1, 0);
    counts->addWidget(addLabel(QStringLiteral("BytesReceived"), form.BytesReceived), 1, 1);
    body->addLayout(counts);
    if (extras == Extras::Shown) {
        body->addWidget(addWords(QStringLiteral("progressSentence"), [this] {
            const TransferProgress& progress = form_.progress();
            if (progress.section() == 0) return QString{};
            return QStringLiteral("%1 %. ").arg(progress.percent()) + shownUtf8(progress.sentence());
        }));
    }
    addLastRow(
        body,
        {.name = QStringLiteral("Continue"), .source = form.Continue, .clicked = [this] { form_.Continue_Click(); }},
        {.name = QStringLiteral("Cancel"), .source = form.Cancel, .clicked = [this] { form_.Cancel_Click(); }});
    setMinimumWidth(extras == Extras::Shown ? 440 : 340);
}

}  // namespace qrv
