#include "Utilities/JsonValue.h"

#include "Utilities/JsonNumber.h"

namespace Quillmere {

std::optional<bool> JsonValue::boolean() const
{
    if (type() != JsonType::Boolean)
        return std::nullopt;
    return token().length == 1;
}

std::optional<qint64> JsonValue::integer() const
{
    return type() == JsonType::Number ? integerFromJson(text(token())) : std::nullopt;
}

std::optional<double> JsonValue::number() const
{
    return type() == JsonType::Number ? doubleFromJson(text(token())) : std::nullopt;
}

std::optional<QString> JsonValue::string() const
{
    if (type() != JsonType::String)
        return std::nullopt;
    return QString::fromUtf8(text(token()));
}

std::optional<QList<JsonValue>> JsonValue::elements() const
{
    if (type() != JsonType::Array)
        return std::nullopt;
    QList<JsonValue> values;
    values.reserve(token().length);
    for (quint32 index = m_index + 1; index < token().end; index = m_tape->tokens[index].end)
        values.append({*m_tape, index});
    return values;
}

std::optional<JsonValue> JsonValue::member(QByteArrayView key) const
{
    if (type() != JsonType::Object)
        return std::nullopt;
    quint32 index = m_index + 1;
    while (index < token().end) {
        const quint32 value = index + 1;
        if (text(m_tape->tokens[index]) == key)
            return JsonValue(*m_tape, value);
        index = m_tape->tokens[value].end;
    }
    return std::nullopt;
}

QByteArrayView JsonValue::text(const JsonToken &token) const
{
    return QByteArrayView(m_tape->texts).sliced(token.offset, token.length);
}

} // namespace Quillmere
