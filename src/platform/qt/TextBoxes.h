// The boxes that a form's texts are typed into. A box that comes up shows another text than it did, so there is nothing
// left to undo in it; and it gives its characters back as they are.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

class QMimeData;
class QShowEvent;

namespace qrv {

class LineBox final : public QLineEdit {
 public:
    using QLineEdit::QLineEdit;

 protected:
    void showEvent(QShowEvent* event) override;
};

class PageBox final : public QPlainTextEdit {
 public:
    using QPlainTextEdit::QPlainTextEdit;

    /// With a plain line break between the lines; the toolkit's own would give a no-break space as a blank.
    [[nodiscard]] QString exactText() const;

 protected:
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;
    void showEvent(QShowEvent* event) override;
};

}  // namespace qrv
