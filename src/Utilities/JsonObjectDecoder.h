#pragma once

#include "Utilities/JsonDecoding.h"
#include "Values/Failure.h"

namespace Quillmere {

/// Reads the fields of a record out of an object and remembers the first that would not be read. Keys that nobody asks
/// for do not matter.
class JsonObjectDecoder
{
public:
    explicit JsonObjectDecoder(const JsonValue &object);

    /// A missing key, null or a value of another kind fails the record.
    template<typename Type>
    void required(QByteArrayView key, Type &target)
    {
        const std::optional<JsonValue> value = m_object.member(key);
        if (!value || !decodeJson(*value, target))
            fail(key);
    }

    /// A missing key and null leave @p target as it was; a value of another kind fails the record.
    template<typename Type>
    void optional(QByteArrayView key, Type &target)
    {
        const std::optional<JsonValue> value = m_object.member(key);
        if (value && !value->isNull() && !decodeJson(*value, target))
            fail(key);
    }

    /// Malformed, naming the first field that failed. Nothing when all were read.
    [[nodiscard]] const std::optional<Failure> &failure() const { return m_failure; }

private:
    void fail(QByteArrayView key);

    JsonValue m_object;
    std::optional<Failure> m_failure;
};

} // namespace Quillmere
