// The window of frmTag, "Enter Block Number And Tag".
#pragma once

#include "link/frmTag.h"
#include "platform/qt/FormView.h"

namespace qrv {

class frmTagView final : public FormView {
 public:
    frmTagView(frmTag& form, DesktopHost& host);

 protected:
    void showEvent(QShowEvent* event) override;

 private:
    QLabel* makeSample();

    frmTag& form_;
    QLineEdit* tag_ = nullptr;
};

/// A colour as the board keeps it: blue, green and red from the highest byte down.
[[nodiscard]] QColor boardColour(std::int32_t blueGreenRed);

}  // namespace qrv
