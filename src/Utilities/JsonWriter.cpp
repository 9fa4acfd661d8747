#include "Utilities/JsonWriter.h"

#include "Utilities/JsonDate.h"
#include "Utilities/JsonNumber.h"

#include <cmath>

namespace Quillmere {

namespace {

/// The letter behind the backslash; zero where there is no short escape.
char shortEscape(char character)
{
    switch (character) {
    case '"':
    case '\\':
    case '/':
        return character;
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return '\0';
    }
}

} // namespace

void JsonWriter::key(QByteArrayView name)
{
    beginValue();
    m_text.append('"').append(name).append("\":");
    m_needsComma = false;
}

void JsonWriter::value(bool value)
{
    beginValue();
    m_text.append(value ? "true" : "false");
}

void JsonWriter::value(qint64 value)
{
    beginValue();
    m_text.append(QByteArray::number(value));
}

void JsonWriter::value(double value)
{
    beginValue();
    if (std::isfinite(value))
        m_text.append(jsonFromDouble(value));
    else
        m_failed = true;
}

void JsonWriter::value(const QString &value)
{
    beginValue();
    appendEscaped(value.toUtf8());
}

void JsonWriter::value(const QStringList &values)
{
    beginArray();
    for (const QString &text : values)
        value(text);
    endArray();
}

void JsonWriter::value(const QUuid &value)
{
    beginValue();
    m_text.append('"').append(value.toByteArray(QUuid::WithoutBraces).toUpper()).append('"');
}

void JsonWriter::value(const QDateTime &value)
{
    if (!value.isValid())
        m_failed = true;
    this->value(referenceSeconds(value));
}

Result<QByteArray> JsonWriter::result() const
{
    if (m_failed)
        return Failure{Failure::Kind::Malformed, {}, u"A value has no form in JSON."_qs};
    return m_text;
}

void JsonWriter::open(char bracket)
{
    beginValue();
    m_text.append(bracket);
    m_needsComma = false;
}

void JsonWriter::close(char bracket)
{
    m_text.append(bracket);
    m_needsComma = true;
}

void JsonWriter::beginValue()
{
    if (m_needsComma)
        m_text.append(',');
    m_needsComma = true;
}

void JsonWriter::appendEscaped(QByteArrayView utf8)
{
    m_text.append('"');
    for (const char character : utf8) {
        if (const char letter = shortEscape(character))
            m_text.append('\\').append(letter);
        else if (static_cast<uchar>(character) < 0x20)
            m_text.append("\\u00").append(QByteArray::number(character, 16).rightJustified(2, '0'));
        else
            m_text.append(character);
    }
    m_text.append('"');
}

} // namespace Quillmere
