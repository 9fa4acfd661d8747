#pragma once

#include "Utilities/JsonTape.h"

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <optional>

namespace Quillmere {

/// A value inside a JsonDocument, looked at through strict types: nothing is converted into something else.
/// As cheap to copy as a pointer; valid while its document lives.
class JsonValue
{
public:
    /// The value that begins at token @p index of @p tape.
    JsonValue(const JsonTape &tape, quint32 index)
        : m_tape(&tape)
        , m_index(index)
    {
    }

    [[nodiscard]] JsonType type() const { return token().type; }
    [[nodiscard]] bool isNull() const { return type() == JsonType::Null; }

    /// true and false alone.
    [[nodiscard]] std::optional<bool> boolean() const;
    /// A number that is integral and fits, exactly: 1.0 and 1e3 are, 1.5 is not.
    [[nodiscard]] std::optional<qint64> integer() const;
    /// A number that is finite, and zero only where zero is written.
    [[nodiscard]] std::optional<double> number() const;
    [[nodiscard]] std::optional<QString> string() const;

    /// Of an array, in order; nothing for any other type.
    [[nodiscard]] std::optional<QList<JsonValue>> elements() const;
    /// Of an object; nothing where it has no such key, or for any other type. Of equal keys the first counts.
    [[nodiscard]] std::optional<JsonValue> member(QByteArrayView key) const;

private:
    [[nodiscard]] const JsonToken &token() const { return m_tape->tokens[m_index]; }
    [[nodiscard]] QByteArrayView text(const JsonToken &token) const;

    const JsonTape *m_tape;
    quint32 m_index;
};

} // namespace Quillmere
