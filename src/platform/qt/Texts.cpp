#include "platform/qt/Texts.h"

#include <algorithm>

#include "platform/CodePage.h"

namespace qrv {

namespace {

/// Code page 1252 and Latin 1 differ from 0x80 to 0x9F only.
bool isLatin1(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code >= 0x80 && code <= 0x9F;
    });
}

}  // namespace

QString shownText(std::string_view codePageText) {
    QString text = isLatin1(codePageText)
                       ? QString::fromLatin1(codePageText.data(), static_cast<qsizetype>(codePageText.size()))
                       : shownUtf8(toUtf8(codePageText));
    if (text.contains(QLatin1Char('\r'))) text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return text;
}

std::string typedText(const QString& text) { return fromUtf8(typedUtf8(text)); }

std::string typedLine(const QString& text) {
    QString line = withPlainBreaks(text);
    while (line.endsWith(QLatin1Char('\n'))) line.chop(1);
    return inOneLine(typedText(line));
}

QString withPlainBreaks(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (const QChar mark :
         {QChar(QChar::CarriageReturn), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        text.replace(mark, QLatin1Char('\n'));
    return text;
}

}  // namespace qrv
