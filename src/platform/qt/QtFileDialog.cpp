#include "platform/qt/QtFileDialog.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QTreeView>

#include "platform/qt/Application.h"
#include "platform/qt/Texts.h"

namespace qrv {

QStringList nameFilters(const std::string& filter) {
    const QStringList parts = shownUtf8(filter).split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        filters << QStringLiteral("%1 (%2)").arg(parts[i], patterns);
    }
    return filters;
}

namespace {

constexpr QSize kLeastSize(760, 460);  // pixels

/// Size, type and date of a file are shown whole, and its name has the room that they leave.
void makeReadable(QFileDialog& dialog) {
    dialog.resize(dialog.size().expandedTo(kLeastSize));
    const auto* list = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    QHeaderView* columns = list->header();
    columns->setStretchLastSection(false);
    columns->setSectionResizeMode(QHeaderView::ResizeToContents);
    const auto fit = [columns] { columns->setSectionResizeMode(0, QHeaderView::Stretch); };
    fit();
    // What a file is, is found out in the background.
    QObject::connect(list->model(), &QAbstractItemModel::dataChanged, columns, fit);
}

}  // namespace

std::string QtFileDialog::ask(const FileQuestion& question) {
    QFileDialog dialog(Application::frontWindow());
    dialog.setObjectName(QStringLiteral("fileDialog"));
    if (!question.title.empty()) dialog.setWindowTitle(shownUtf8(question.title));
    const bool saves = question.kind == FileDialogKind::Save;
    dialog.setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    // Shows the descriptions alone, which name the patterns in their own way. Only filters set afterwards heed it.
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(nameFilters(question.filter));
    makeReadable(dialog);
    if (!question.initialName.empty()) {
        const QFileInfo initial(shownUtf8(question.initialName));
        dialog.setDirectory(initial.absolutePath());
        dialog.selectFile(initial.fileName());
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return typedUtf8(QDir::toNativeSeparators(dialog.selectedFiles().constFirst()));
}

}  // namespace qrv
