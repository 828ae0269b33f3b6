// An addition to the function list: a box that narrows it as the user types, and the chosen function's sentence.
#pragma once

#include <QLineEdit>
#include <functional>

class QLabel;
class QListWidget;

namespace qrv {

class FunctionFilterView final : public QLineEdit {
 public:
    /// The list's rows stay the rows they are: those that lack one of the typed words, in name and sentence, are
    /// hidden.
    /// @param sentenceOf  what a function does, by its name
    FunctionFilterView(QListWidget* functions, std::function<QString(const QString&)> sentenceOf, QWidget* parent);

    /// A label with the chosen function's sentence, for the caller's layout.
    [[nodiscard]] QLabel* sentence() const { return sentence_; }

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// Comes up with the list, and takes the focus: what is typed then narrows it.
    void showEvent(QShowEvent* event) override;

 private:
    void explainRows(int first, int last);
    void narrow(const QString& wanted);
    void goToList();
    void showSentence();

    QListWidget* functions_;
    std::function<QString(const QString&)> sentenceOf_;
    QLabel* sentence_;
};

}  // namespace qrv
