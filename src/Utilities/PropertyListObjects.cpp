#include "Utilities/PropertyListObjects.h"

#include <QStringConverter>

#include <algorithm>

namespace Quillmere {

namespace {

constexpr quint64 headerBytes = 8;
constexpr quint64 trailerBytes = 32;
// A count of fifteen and more does not fit into the first byte, which says fifteen instead.
constexpr quint64 longCount = 0x0F;
constexpr quint64 mostCountBytes = 8;

bool hasCount(PropertyListObjects::Kind kind)
{
    using Kind = PropertyListObjects::Kind;
    return kind == Kind::Data || kind == Kind::AsciiText || kind == Kind::Utf16Text || kind == Kind::Array
        || kind == Kind::Dictionary;
}

} // namespace

bool PropertyListObjects::readTrailer()
{
    if (size() < headerBytes + trailerBytes)
        return false;
    const quint64 trailer = size() - trailerBytes;
    m_offsetWidth = bigEndian(trailer + 6, 1);
    m_referenceWidth = bigEndian(trailer + 7, 1);
    m_count = bigEndian(trailer + 8, 8);
    m_top = bigEndian(trailer + 16, 8);
    m_tableOffset = bigEndian(trailer + 24, 8);
    return m_offsetWidth >= 1 && m_offsetWidth <= 8 && m_referenceWidth >= 1 && m_referenceWidth <= 8
        && m_tableOffset > headerBytes && m_tableOffset < trailer && m_top < m_count
        && m_count <= (trailer - m_tableOffset) / m_offsetWidth;
}

std::optional<PropertyListObjects::Object> PropertyListObjects::object(quint64 index) const
{
    if (index >= m_count)
        return std::nullopt;
    const quint64 offset = bigEndian(m_tableOffset + index * m_offsetWidth, m_offsetWidth);
    if (offset < headerBytes || !fits(offset, 1, 1))
        return std::nullopt;
    const quint64 marker = bigEndian(offset, 1);
    Object found = {static_cast<Kind>(marker >> 4), marker & 0x0F, offset + 1};
    if (hasCount(found.kind) && found.count == longCount && !readLongCount(found))
        return std::nullopt;
    return found;
}

std::optional<quint64> PropertyListObjects::leafBytes(const Object &object) const
{
    constexpr quint64 no = 8;
    constexpr quint64 yes = 9;
    bool isKnown = false;
    quint64 bytes = object.count;
    switch (object.kind) {
    case Kind::Simple:
        isKnown = object.count == no || object.count == yes;
        bytes = 0;
        break;
    case Kind::Integer:
        isKnown = object.count <= 4;
        bytes = quint64{1} << object.count;
        break;
    case Kind::Real:
        isKnown = object.count == 2 || object.count == 3;
        bytes = quint64{1} << object.count;
        break;
    case Kind::Date:
        isKnown = object.count == 3;
        bytes = 8;
        break;
    case Kind::Data:
        isKnown = true;
        break;
    case Kind::AsciiText:
    case Kind::Utf16Text:
        isKnown = text(object).has_value();
        bytes = object.kind == Kind::Utf16Text ? object.count * 2 : object.count;
        break;
    case Kind::Identifier:
        isKnown = object.count < 8;
        bytes = object.count + 1;
        break;
    default:
        break;
    }
    return isKnown && fits(object.offset, bytes, 1) ? std::optional(bytes) : std::nullopt;
}

std::optional<QString> PropertyListObjects::text(const Object &object) const
{
    const bool isAscii = object.kind == Kind::AsciiText;
    const quint64 width = isAscii ? 1 : 2;
    if ((!isAscii && object.kind != Kind::Utf16Text) || !fits(object.offset, object.count, width))
        return std::nullopt;
    const auto contents = QByteArrayView(m_bytes).sliced(static_cast<qsizetype>(object.offset),
                                                         static_cast<qsizetype>(object.count * width));
    if (isAscii) {
        const bool isSound = std::ranges::all_of(contents, [](char byte) { return byte > 0; });
        return isSound ? std::optional(QString::fromLatin1(contents)) : std::nullopt;
    }
    QStringDecoder decoder(QStringConverter::Utf16BE, QStringConverter::Flag::ConvertInitialBom);
    const QString decoded = decoder(contents);
    return decoded.isValidUtf16() && !decoded.contains(QChar(u'\0')) ? std::optional(decoded) : std::nullopt;
}

std::optional<quint64> PropertyListObjects::references(const Object &container) const
{
    const quint64 each = container.kind == Kind::Dictionary ? 2 : 1;
    if (!fits(container.offset, container.count, each * m_referenceWidth))
        return std::nullopt;
    return container.count * each;
}

quint64 PropertyListObjects::reference(const Object &container, quint64 position) const
{
    return bigEndian(container.offset + position * m_referenceWidth, m_referenceWidth);
}

/// Only for places that were found to lie within the bytes.
quint64 PropertyListObjects::bigEndian(quint64 offset, quint64 width) const
{
    quint64 value = 0;
    for (quint64 index = 0; index < width; ++index)
        value = value << 8 | static_cast<uchar>(m_bytes.at(static_cast<qsizetype>(offset + index)));
    return value;
}

/// True when @p count things of @p width bytes at @p offset end before the table of offsets.
bool PropertyListObjects::fits(quint64 offset, quint64 count, quint64 width) const
{
    return offset <= m_tableOffset && count <= (m_tableOffset - offset) / width;
}

/// The count stands behind the first byte, as an integer object.
bool PropertyListObjects::readLongCount(Object &object) const
{
    if (!fits(object.offset, 1, 1))
        return false;
    const quint64 marker = bigEndian(object.offset, 1);
    const quint64 width = quint64{1} << (marker & 0x0F);
    if (static_cast<Kind>(marker >> 4) != Kind::Integer || width > mostCountBytes || !fits(object.offset + 1, width, 1))
        return false;
    object.count = bigEndian(object.offset + 1, width);
    object.offset += 1 + width;
    return true;
}

} // namespace Quillmere
