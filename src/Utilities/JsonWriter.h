#pragma once

#include "Models/RawValue.h"
#include "Values/Result.h"

#include <QByteArrayView>
#include <QDateTime>
#include <QStringList>
#include <QUuid>

namespace Quillmere {

/// Writes JSON without blanks, in the order in which it is told. Texts are UTF-8 as they stand, with `/` escaped.
class JsonWriter
{
public:
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    /// Followed by exactly one value. @p name needs no escapes.
    void key(QByteArrayView name);

    void value(bool value);
    void value(qint64 value);
    /// Infinity and what is not a number fail the whole text.
    void value(double value);
    void value(const QString &value);
    void value(const QStringList &values);
    /// In upper case, with four dashes.
    void value(const QUuid &value);
    /// Seconds since the beginning of 2001, UTC. An invalid date fails the whole text.
    void value(const QDateTime &value);
    template<typename Enumeration>
        requires requires
        {
            RawValues<Enumeration>::cases;
        }
    void value(Enumeration value) { this->value(rawValue(value)); }
    /// Anything else would turn into one of the above unasked.
    template<typename Type>
    void value(const Type *) = delete;

    template<typename Type>
    void member(QByteArrayView name, const Type &value)
    {
        key(name);
        this->value(value);
    }

    /// The text, or Malformed when some value has no form in JSON.
    [[nodiscard]] Result<QByteArray> result() const;

private:
    void open(char bracket);
    void close(char bracket);
    void beginValue();
    void appendEscaped(QByteArrayView utf8);

    QByteArray m_text;
    bool m_needsComma = false;
    bool m_failed = false;
};

} // namespace Quillmere
