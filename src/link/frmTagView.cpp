#include "link/frmTagView.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <algorithm>

namespace qrv {

namespace {

constexpr int kBoxWidth = 32;  // pixels
constexpr int kBoxHeight = 26;

/// Picture1: the boxes of the colours side by side.
class ColourStrip final : public QWidget {
 public:
    using Press = std::function<void(double x, double width)>;

    ColourStrip(const frmTag& form, Press press, QWidget* parent)
        : QWidget(parent), form_(form), press_(std::move(press)) {
        setObjectName(QStringLiteral("Picture1"));
        setAccessibleName(QStringLiteral("Colour of the label"));
        setFixedSize(kBoxWidth * static_cast<int>(frmTag::kColours.size()), kBoxHeight);
        setFocusPolicy(Qt::StrongFocus);
    }

 protected:
    void paintEvent(QPaintEvent*) override {
        if (!form_.isPicture1Painted) return;
        QPainter painter(this);
        for (int left = 0; const std::int32_t colour : frmTag::kColours) {
            painter.fillRect(left, 0, kBoxWidth, height(), boardColour(colour));
            left += kBoxWidth;
        }
        if (hasFocus()) paintFocus(painter);
    }
    void mousePressEvent(QMouseEvent* event) override { press_(event->position().x(), width()); }
    void keyPressEvent(QKeyEvent* event) override {
        const int step = event->key() == Qt::Key_Right ? 1 : event->key() == Qt::Key_Left ? -1 : 0;
        if (step == 0) return QWidget::keyPressEvent(event);
        press_((chosenBox() + step + 0.5) * kBoxWidth, width());
        update();
    }

 private:
    [[nodiscard]] int chosenBox() const {
        const auto* const chosen = std::ranges::find(frmTag::kColours, form_.color);
        return static_cast<int>(chosen - frmTag::kColours.begin());
    }
    /// Around the chosen box, to be seen on each of the colours.
    void paintFocus(QPainter& painter) const {
        const QRect box(chosenBox() * kBoxWidth, 0, kBoxWidth, height());
        painter.setPen(QPen(Qt::white, 2));
        painter.drawRect(box.adjusted(2, 2, -2, -2));
        painter.setPen(Qt::black);
        painter.drawRect(box.adjusted(3, 3, -4, -4));
    }

    const frmTag& form_;
    Press press_;
};

}  // namespace

QColor boardColour(std::int32_t blueGreenRed) {
    return QColor(blueGreenRed & 0xFF, blueGreenRed >> 8 & 0xFF, blueGreenRed >> 16 & 0xFF);
}

frmTagView::frmTagView(frmTag& form, DesktopHost& host) : FormView(form, host), form_(form) {
    auto* grid = new QGridLayout;
    QLineEdit* tag = addLine(QStringLiteral("Text1"), form.Text1, [] {});
    QLineEdit* block = addLine(QStringLiteral("Text2"), form.Text2, [] {});
    nameAfter(tag, form.Label1);
    nameAfter(block, form.Label2);
    grid->addWidget(addLabel(QStringLiteral("Label1"), form.Label1), 0, 0);
    grid->addWidget(tag, 0, 1);
    grid->addWidget(addLabel(QStringLiteral("Label2"), form.Label2), 1, 0);
    grid->addWidget(block, 1, 1);
    auto* colours = new QHBoxLayout;
    const auto press = [this](double x, double width) {
        tell([this, x, width] { form_.Picture1_MouseDown(x, width); });
    };
    colours->addWidget(new ColourStrip(form, press, this));
    colours->addWidget(makeSample(), 1);
    QBoxLayout* body = makeBody();
    body->addLayout(grid);
    body->addLayout(colours);
    body->addStretch(1);
    body->addWidget(addButton(QStringLiteral("Command1"), form.Command1, [this] { form_.Command1_Click(); }), 0,
                    Qt::AlignRight);
    tag->setFocus();
    tag_ = tag;
}

/// The tag that stands there as the window comes up is only proposed: what is typed takes its place.
void frmTagView::showEvent(QShowEvent* event) {
    FormView::showEvent(event);
    if (!event->spontaneous()) tag_->selectAll();
}

/// Label3: the chosen colour.
QLabel* frmTagView::makeSample() {
    auto* sample = new QLabel(this);
    sample->setObjectName(QStringLiteral("Label3"));
    sample->setAccessibleName(QStringLiteral("Chosen colour"));
    sample->setMinimumWidth(kBoxWidth);
    sample->setAutoFillBackground(true);
    addMirror([this, sample] {
        QPalette palette = sample->palette();
        palette.setColor(QPalette::Window, boardColour(form_.Label3BackColor));
        sample->setPalette(palette);
    });
    return sample;
}

}  // namespace qrv
