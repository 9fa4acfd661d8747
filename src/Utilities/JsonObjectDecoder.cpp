#include "Utilities/JsonObjectDecoder.h"

namespace Quillmere {

JsonObjectDecoder::JsonObjectDecoder(const JsonValue &object)
    : m_object(object)
{
    if (object.type() != JsonType::Object)
        m_failure = Failure{Failure::Kind::Malformed, {}, u"The record is not an object."_qs};
}

void JsonObjectDecoder::fail(QByteArrayView key)
{
    if (!m_failure)
        m_failure = Failure{Failure::Kind::Malformed,
                            {},
                            u"The field \"%1\" is missing or of another type."_qs.arg(QString::fromUtf8(key))};
}

} // namespace Quillmere
