#include "platform/qt/Theme.h"

#include <QApplication>
#include <QCheckBox>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QRadioButton>
#include <QStyleOption>
#include <cmath>

/// Brings the icons along from the static library; the toolkit wants this outside of any namespace.
static void provideIcons() { Q_INIT_RESOURCE(art); }

namespace qrv::theme {

namespace {

constexpr double kUnitsPerPixel = 15.0;
constexpr double kLineOfUnits = 13.0;  // pixels of a text line for which the layout's units were chosen
constexpr double kFontPoints = 9.5;
constexpr double kGridFontPoints = 9.0;
constexpr double kTitleFontPoints = 13.0;

struct Shade {
    QPalette::ColorRole role;
    QRgb rgb;
};

// Dark ink on near-white: every pair of text and ground has a contrast of 7 to 1 or more.
constexpr Shade kShades[] = {
    {QPalette::Window, 0xFFEDF1F4},      {QPalette::WindowText, 0xFF17222C},
    {QPalette::Base, 0xFFFFFFFF},        {QPalette::AlternateBase, 0xFFF5F8FA},
    {QPalette::Text, 0xFF17222C},        {QPalette::Button, 0xFFE3E9EE},
    {QPalette::ButtonText, 0xFF17222C},  {QPalette::BrightText, 0xFFFFFFFF},
    {QPalette::Highlight, 0xFF1F5F8B},   {QPalette::HighlightedText, 0xFFFFFFFF},
    {QPalette::ToolTipBase, 0xFFFFFBE8}, {QPalette::ToolTipText, 0xFF17222C},
    {QPalette::Link, 0xFF1F5F8B},        {QPalette::PlaceholderText, 0xFF5B6B79},
};

/// Fusion frames a check box or option that has the focus only behind a Tab, and not in the window that comes up with
/// it.
class Style final : public QProxyStyle {
 public:
    Style() : QProxyStyle(QStringLiteral("Fusion")) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        const bool isBox = qobject_cast<const QCheckBox*>(widget) || qobject_cast<const QRadioButton*>(widget);
        if (element != PE_FrameFocusRect || !isBox) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
            return;
        }
        painter->setPen(accent());
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    }
};

}  // namespace

QColor accent() { return QColor(0xFF1F5F8B); }
QColor selectedCell() { return QColor(0xFFD6E8F5); }
QColor heading() { return QColor(0xFFDFE6EC); }
QColor markedHeading() { return QColor(0xFFB9D3E6); }
QColor line() { return QColor(0xFFC2CCD5); }
QColor faintText() { return QColor(0xFF93A1AD); }
QColor warning() { return QColor(0xFFB3261E); }

void drawFocus(QPainter& painter, const QRect& around) {
    painter.setPen(QPen(accent(), 2));
    painter.drawRect(QRectF(around).adjusted(1, 1, -1, -1));
}

void apply(QApplication& application) {
    provideIcons();
    QApplication::setStyle(new Style);
    QApplication::setWindowIcon(icon(QStringLiteral("app")));
    QPalette palette;
    for (const Shade& shade : kShades) palette.setColor(shade.role, QColor(shade.rgb));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(0xFF7C8A96));
    }
    application.setPalette(palette);
    QFont::insertSubstitution(QStringLiteral("Courier New"), QStringLiteral("Liberation Mono"));
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPointSizeF(kFontPoints);
    application.setFont(font);
}

QFont fixedFont() {
    QFont font(QStringLiteral("Courier New"));
    font.setStyleHint(QFont::Monospace);
    font.setPointSizeF(kFontPoints + 0.5);
    return font;
}

QFont gridFont() {
    QFont font = QApplication::font();
    font.setPointSizeF(kGridFontPoints);
    return font;
}

QFont headingFont() {
    QFont font = QApplication::font();
    font.setBold(true);
    font.setPointSizeF(kGridFontPoints);
    return font;
}

QFont titleFont() {
    QFont font = QApplication::font();
    font.setBold(true);
    font.setPointSizeF(kTitleFontPoints);
    return font;
}

QSize sizeOfText(int columns, int lines) {
    const QFontMetrics metrics(fixedFont());
    return {columns * metrics.horizontalAdvance(QLatin1Char('0')), lines * metrics.lineSpacing()};
}

int pixelsOf(int units) {
    // Grids ask for each of their rows, and the font stays.
    static const double scale = std::max(1.0, QFontMetrics(gridFont()).height() / kLineOfUnits);
    return static_cast<int>(std::lround(units / kUnitsPerPixel * scale));
}

QIcon icon(const QString& name) { return QIcon(QStringLiteral(":/icons/%1.svg").arg(name)); }

}  // namespace qrv::theme
