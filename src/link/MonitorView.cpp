#include "link/MonitorView.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

#include "link/frmTagView.h"
#include "platform/qt/Texts.h"
#include "platform/qt/Theme.h"

namespace qrv {

namespace {

// The designed window, in form units; its buttons stand above the board.
constexpr int kBoardTop = 1050;
constexpr int kBoardWidth = 10200;
constexpr int kBoardHeight = 5400;
constexpr int kLabelWidth = 1850;
constexpr int kLabelHeight = 700;
constexpr int kLabelMargin = 3;  // pixels
constexpr QRgb kBoardColour = 0xFFC0C0C0;
constexpr QRgb kStaleColour = 0xFF969696;

int unitsOf(int pixels) {
    constexpr int kMeasure = 15000;
    return qRound(static_cast<double>(pixels) * kMeasure / theme::pixelsOf(kMeasure));
}

void fill(QWidget* widget, QRgb colour) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, QColor(colour));
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

/// In columns and rows of the board's places.
QPoint stepOf(int key) {
    switch (key) {
        case Qt::Key_Left: return {-1, 0};
        case Qt::Key_Right: return {1, 0};
        case Qt::Key_Up: return {0, -1};
        case Qt::Key_Down: return {0, 1};
        default: return {};
    }
}

/// A label that goes with the mouse until it is dropped, and with the arrow keys from place to place.
class DraggedLabel final : public QLabel {
 public:
    using Move = std::function<void(QPoint)>;

    /// @param drop  takes the place, in pixels
    /// @param step  takes columns and rows
    DraggedLabel(Move drop, Move step, QWidget* parent)
        : QLabel(parent), drop_(std::move(drop)), step_(std::move(step)) {
        setFocusPolicy(Qt::StrongFocus);
    }
    [[nodiscard]] bool isDragged() const { return grip_.has_value(); }

 protected:
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() != Qt::LeftButton) return;
        grip_ = event->position().toPoint();
        start_ = pos();
        raise();
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (grip_) move(mapToParent(event->position().toPoint()) - *grip_);
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (event->button() != Qt::LeftButton || !grip_) return;
        grip_.reset();
        if (pos() != start_) drop_(pos());
    }
    void keyPressEvent(QKeyEvent* event) override {
        const QPoint step = stepOf(event->key());
        if (step.isNull() || isDragged()) return QLabel::keyPressEvent(event);
        step_(step);
    }
    void paintEvent(QPaintEvent* event) override {
        QLabel::paintEvent(event);
        QPainter painter(this);
        if (hasFocus()) theme::drawFocus(painter, rect());
    }

 private:
    Move drop_;
    Move step_;
    std::optional<QPoint> grip_;
    QPoint start_;
};

}  // namespace

MonitorView::MonitorView(Monitor& form, DesktopHost& host) : FormView(form, host), form_(form) {
    addDone(QStringLiteral("munexit"), shownUtf8(form.munexitEntry.caption), [this] { form_.munexit(); });
    QBoxLayout* body = makeBody();
    body->addLayout(makeButtons());
    body->addWidget(makeBoard(), 1);
    addTimer(form.tmrShow, [this] { form_.tmrShow_Timer(); });
}

QBoxLayout* MonitorView::makeButtons() {
    auto* row = new QHBoxLayout;
    row->addWidget(addButton(QStringLiteral("Command1"), form_.Command1, [this] { form_.Command1_Click(); }));
    row->addWidget(addButton(QStringLiteral("Command2"), form_.Command2, [this] { form_.Command2_Click(); }));
    row->addWidget(addButton(QStringLiteral("Command3"), form_.Command3, [this] { form_.Command3_Click(); }));
    row->addWidget(addButton(QStringLiteral("Command4"), form_.Command4, [this] { form_.Command4_Click(); }));
    row->addWidget(addButton(QStringLiteral("Command5"), form_.Command5, [this] { form_.Command5_Click(); }));
    row->addWidget(addButton(QStringLiteral("Command6"), form_.Command6, [this] { form_.Command6_Click(); }));
    row->addStretch(1);
    row->addWidget(addLabel(QStringLiteral("lblRate"), form_.lblRate));
    return row;
}

QWidget* MonitorView::makeBoard() {
    auto* board = new QWidget(this);
    board->setMinimumSize(theme::pixelsOf(kBoardWidth), theme::pixelsOf(kBoardHeight));
    fill(board, kBoardColour);
    for (int index = 1; index <= static_cast<int>(kMonitorSlots); ++index) makeLabel(board, index);
    return board;
}

void MonitorView::makeLabel(QWidget* board, int index) {
    const auto drop = [this, index](QPoint place) {
        // By its middle, the label takes the place that is nearest.
        const int x = unitsOf(place.x()) + Monitor::kPlaceWidth / 2;
        const int y = unitsOf(place.y()) + kBoardTop + Monitor::kPlaceHeight / 2;
        tell([this, index, x, y] { form_.drop(index, x, y); });
    };
    const auto step = [this, index](QPoint places) {
        tell([this, index, places] { form_.step(index, places.x(), places.y()); });
    };
    auto* label = new DraggedLabel(drop, step, board);
    label->setObjectName(QStringLiteral("analog%1").arg(index));
    label->setTextFormat(Qt::PlainText);
    label->setFont(theme::gridFont());
    label->setCursor(Qt::SizeAllCursor);
    label->setFrameStyle(QFrame::Panel | QFrame::Raised);
    label->setMargin(kLabelMargin);
    label->setFixedSize(theme::pixelsOf(kLabelWidth), theme::pixelsOf(kLabelHeight));
    addMirror([this, label, index] {
        const BoardLabel& source = form_.label(index);
        label->setText(shownText(source.caption));
        addTip(label, source.silentSince ? shownUtf8(silenceText(*source.silentSince)) : QString());
        fill(label, source.silentSince ? kStaleColour : kBoardColour);
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, boardColour(source.color));
        label->setPalette(palette);
        if (!label->isDragged()) {
            label->move(theme::pixelsOf(source.left), theme::pixelsOf(source.top - kBoardTop));
        }
        label->setVisible(source.visible);
    });
}

}  // namespace qrv
