// Texts between the program and the toolkit: data texts are code page 1252, one byte a character; captions, paths and
// message boxes are UTF-8.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace qrv {

/// A data text as it is shown. CR+LF becomes a plain line break.
[[nodiscard]] QString shownText(std::string_view codePageText);
/// A typed text as data; a character outside the code page becomes "?".
[[nodiscard]] std::string typedText(const QString& text);
/// The same for a text of one line: line breaks at its end, which a copied cell brings along, go; each other break, and
/// each other control character, becomes a blank.
[[nodiscard]] std::string typedLine(const QString& text);
/// With "\n" for each kind of line break that the toolkit and other programs use.
[[nodiscard]] QString withPlainBreaks(QString text);

[[nodiscard]] inline QString shownUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
/// A text that comes from the toolkit and is no data: a path, a caption.
[[nodiscard]] inline std::string typedUtf8(const QString& text) { return text.toStdString(); }

}  // namespace qrv
