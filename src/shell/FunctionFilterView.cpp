#include "shell/FunctionFilterView.h"

#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QShowEvent>
#include <algorithm>

namespace qrv {

namespace {

constexpr int kWordsRole = Qt::UserRole;

}  // namespace

FunctionFilterView::FunctionFilterView(QListWidget* functions, Texts texts, QWidget* parent)
    : QLineEdit(parent), functions_(functions), texts_(std::move(texts)), sentence_(new QLabel(parent)) {
    setObjectName(QStringLiteral("functionFilter"));
    setPlaceholderText(QStringLiteral("Filter functions"));
    setAccessibleName(QStringLiteral("Filter of the function list"));
    setClearButtonEnabled(true);
    sentence_->setObjectName(QStringLiteral("functionSentence"));
    sentence_->setWordWrap(true);
    sentence_->setTextFormat(Qt::PlainText);
    sentence_->setMinimumHeight(3 * fontMetrics().lineSpacing());
    sentence_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    connect(this, &QLineEdit::textChanged, this, &FunctionFilterView::narrow);
    connect(functions->model(), &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int first, int last) { explainRows(first, last); });
    connect(functions, &QListWidget::currentRowChanged, this, &FunctionFilterView::showSentence);
}

void FunctionFilterView::explainRows(int first, int last) {
    for (int row = first; row <= last; ++row) {
        QListWidgetItem* item = functions_->item(row);
        const QString name = item->text().trimmed();
        item->setToolTip(texts_.sentence(name));
        item->setData(kWordsRole, texts_.words(name));
    }
}

void FunctionFilterView::narrow(const QString& wanted) {
    const QStringList words = wanted.simplified().split(QLatin1Char(' '));
    bool isFound = false;
    for (int row = 0; row < functions_->count(); ++row) {
        QListWidgetItem* item = functions_->item(row);
        const QString all =
            QStringList{item->text(), item->toolTip(), item->data(kWordsRole).toString()}.join(QLatin1Char(' '));
        const bool hasAll =
            std::ranges::all_of(words, [&all](const QString& word) { return all.contains(word, Qt::CaseInsensitive); });
        item->setHidden(!hasAll);
        isFound = isFound || hasAll;
    }
    if (isFound) {
        showSentence();
    } else {
        sentence_->setText(QStringLiteral("No function is found by these words."));
    }
}

void FunctionFilterView::showSentence() {
    const QListWidgetItem* chosen = functions_->currentItem();
    sentence_->setText(chosen ? chosen->toolTip() : QString{});
}

/// Goes to the chosen function, or to the first one where that is hidden.
void FunctionFilterView::goToList() {
    functions_->setFocus();
    const QList<QListWidgetItem*> chosen = functions_->selectedItems();
    if (!chosen.isEmpty() && !chosen.first()->isHidden()) return;
    for (int row = 0; row < functions_->count(); ++row) {
        if (functions_->item(row)->isHidden()) continue;
        functions_->setCurrentRow(row);
        return;
    }
}

void FunctionFilterView::showEvent(QShowEvent* event) {
    QLineEdit::showEvent(event);
    if (!event->spontaneous()) setFocus();
}

void FunctionFilterView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
        clear();
        return;
    }
    if (event->key() == Qt::Key_Down) {
        goToList();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

}  // namespace qrv
