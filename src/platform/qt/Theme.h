// The tool's own calm look over the toolkit's Fusion style: colours, fonts and icons in one place.
#pragma once

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QSize>

class QApplication;
class QPainter;
class QRect;

namespace qrv::theme {

/// Sets style, palette, fonts and the mapping of "Courier New" to a fixed-width font that is there everywhere.
void apply(QApplication& application);

[[nodiscard]] QColor accent();
[[nodiscard]] QColor selectedCell();
[[nodiscard]] QColor heading();
[[nodiscard]] QColor markedHeading();
[[nodiscard]] QColor line();
[[nodiscard]] QColor faintText();
[[nodiscard]] QColor warning();

/// The frame of a cell, or of what else the keys go to.
void drawFocus(QPainter& painter, const QRect& around);

/// "Courier New" in the size of the forms' texts.
[[nodiscard]] QFont fixedFont();
/// The font of all grids.
[[nodiscard]] QFont gridFont();

/// Captions over a part of a window, and the title of what a window shows.
[[nodiscard]] QFont headingFont();
[[nodiscard]] QFont titleFont();
/// Room for so many characters and lines of the fixed-width font.
[[nodiscard]] QSize sizeOfText(int columns, int lines);

/// Pixels of a length in the forms' layout units (15 a pixel), scaled to the size of the grids' font.
[[nodiscard]] int pixelsOf(int units);

/// One of our own drawings by name, as "save".
[[nodiscard]] QIcon icon(const QString& name);

}  // namespace qrv::theme
