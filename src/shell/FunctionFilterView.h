// An addition to the function list: a box that narrows it as the user types, and the chosen function's sentence.
#pragma once

#include <QLineEdit>
#include <functional>

class QLabel;
class QListWidget;

namespace qrv {

class FunctionFilterView final : public QLineEdit {
 public:
    /// By a function's name.
    struct Texts {
        std::function<QString(const QString&)> sentence;  ///< what it does
        std::function<QString(const QString&)> words;     ///< what else it is looked for by
    };

    /// The list's rows stay the rows they are: those that lack one of the typed words, in name, sentence and words, are
    /// hidden.
    FunctionFilterView(QListWidget* functions, Texts texts, QWidget* parent);

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
    Texts texts_;
    QLabel* sentence_;
};

}  // namespace qrv
