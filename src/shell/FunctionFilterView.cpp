#include "shell/FunctionFilterView.h"

#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>

namespace qrv {

FunctionFilterView::FunctionFilterView(QListWidget* functions, std::function<QString(const QString&)> sentenceOf,
                                       QWidget* parent)
    : QLineEdit(parent), functions_(functions), sentenceOf_(std::move(sentenceOf)), sentence_(new QLabel(parent)) {
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
        item->setToolTip(sentenceOf_(item->text().trimmed()));
    }
}

void FunctionFilterView::narrow(const QString& wanted) {
    for (int row = 0; row < functions_->count(); ++row) {
        QListWidgetItem* item = functions_->item(row);
        const bool fits =
            item->text().contains(wanted, Qt::CaseInsensitive) || item->toolTip().contains(wanted, Qt::CaseInsensitive);
        item->setHidden(!fits);
    }
}

void FunctionFilterView::showSentence() {
    const QListWidgetItem* chosen = functions_->currentItem();
    sentence_->setText(chosen ? chosen->toolTip() : QString{});
}

void FunctionFilterView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
        clear();
        return;
    }
    if (event->key() == Qt::Key_Down) {
        functions_->setFocus();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

}  // namespace qrv
