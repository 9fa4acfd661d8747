#include "Utilities/JsonEncoding.h"

#include <QStringConverter>

namespace Quillmere {

namespace {

/// By the zero bytes among the first four, for a text without a mark.
QStringConverter::Encoding encodingByZeros(const QByteArray &bytes)
{
    const auto isZero = [&](qsizetype index) { return index >= bytes.size() || bytes.at(index) == '\0'; };
    if (bytes.size() < 2)
        return QStringConverter::Utf8;
    if (isZero(0))
        return isZero(1) ? QStringConverter::Utf32BE : QStringConverter::Utf16BE;
    if (!isZero(1))
        return QStringConverter::Utf8;
    return bytes.size() >= 4 && isZero(2) && isZero(3) ? QStringConverter::Utf32LE : QStringConverter::Utf16LE;
}

} // namespace

std::optional<QByteArray> jsonTextAsUtf8(const QByteArray &bytes)
{
    const QStringConverter::Encoding encoding
        = QStringConverter::encodingForData(bytes).value_or(encodingByZeros(bytes));
    if (encoding == QStringConverter::Utf8)
        return bytes.startsWith("\xEF\xBB\xBF") ? bytes.sliced(3) : bytes;

    const qsizetype unit = encoding == QStringConverter::Utf16LE || encoding == QStringConverter::Utf16BE ? 2 : 4;
    QStringDecoder decoder(encoding);
    const QString text = decoder(bytes);
    if (decoder.hasError() || bytes.size() % unit != 0 || !text.isValidUtf16())
        return std::nullopt;
    return text.toUtf8();
}

} // namespace Quillmere
