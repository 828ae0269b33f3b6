// The window of Monitor, "View Selected Block Outputs": the buttons, and below them the board whose labels the mouse
// drags.
#pragma once

#include "link/Monitor.h"
#include "platform/qt/FormView.h"

namespace qrv {

class MonitorView final : public FormView {
 public:
    MonitorView(Monitor& form, DesktopHost& host);

 private:
    QBoxLayout* makeButtons();
    QWidget* makeBoard();
    void makeLabel(QWidget* board, int index);

    Monitor& form_;
};

}  // namespace qrv
