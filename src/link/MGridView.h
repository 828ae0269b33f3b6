// The window of MGrid, "View All Block Outputs".
#pragma once

#include "link/MGrid.h"
#include "platform/qt/FormView.h"

namespace qrv {

class MGridView final : public FormView {
 public:
    MGridView(MGrid& form, DesktopHost& host);

 private:
    QBoxLayout* makeButtons();
    void nameCells(GridView& grid);

    MGrid& form_;
};

}  // namespace qrv
