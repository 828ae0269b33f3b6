#include "link/MGridView.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "platform/qt/GridView.h"
#include "platform/qt/Texts.h"

namespace qrv {

namespace {

constexpr int kWindowWidth = 900;  // pixels, without the frame

}  // namespace

MGridView::MGridView(MGrid& form, DesktopHost& host) : FormView(form, host), form_(form) {
    addDone(QStringLiteral("mnuexit"), shownUtf8(form.mnuexitEntry.caption), [this] { form_.mnuexit(); });
    GridView* grid = addGrid(form.Grid2);
    grid->setAccessibleName(QStringLiteral("Outputs of all blocks"));
    nameCells(*grid);
    // A pass reads from the first row in sight on, and as many rows as the window first shows.
    grid->setRowsInHint(MGrid::kBlocksInSight / MGrid::kBlocksPerRow);
    grid->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    QBoxLayout* body = makeBody();
    body->addWidget(grid, 1);
    body->addLayout(makeButtons());
    addTimer(form.tmrShow, [this] { form_.tmrShow_Timer(); });
    // No row in sight is one that a pass doesn't read.
    setMaximumHeight(sizeHint().height());
    resize(kWindowWidth, maximumHeight());
}

QBoxLayout* MGridView::makeButtons() {
    auto* row = new QHBoxLayout;
    row->addWidget(addButton(QStringLiteral("Command1"), form_.Command1, [this] { form_.Command1_Click(); }));
    row->addWidget(addButton(QStringLiteral("Command2"), form_.Command2, [this] { form_.Command2_Click(); }));
    row->addWidget(addButton(QStringLiteral("Command3"), form_.Command3, [this] { form_.Command3_Click(); }));
    row->addStretch(1);
    row->addWidget(addLabel(QStringLiteral("lblRate"), form_.lblRate));
    return row;
}

void MGridView::nameCells(GridView& grid) {
    grid.setAccessibleText([this](int row, int col) {
        const QString value = shownText(form_.Grid2.text(row, col));
        return QStringLiteral("block %1, %2")
            .arg((row - 1) * MGrid::kBlocksPerRow + col - 1)
            .arg(value.isEmpty() ? QStringLiteral("not read") : value);
    });
}

}  // namespace qrv
