#include "Utilities/JsonDecoding.h"

#include "Utilities/JsonDate.h"

namespace Quillmere {

namespace {

template<typename Type>
bool assign(const std::optional<Type> &found, Type &target)
{
    if (found)
        target = *found;
    return found.has_value();
}

bool isCanonicalUuid(const QString &text)
{
    if (text.size() != 36)
        return false;
    for (qsizetype index = 0; index < text.size(); ++index) {
        const char16_t code = text.at(index).unicode();
        const bool isDashPlace = index == 8 || index == 13 || index == 18 || index == 23;
        const bool isHex
            = (code >= u'0' && code <= u'9') || (code >= u'a' && code <= u'f') || (code >= u'A' && code <= u'F');
        if (isDashPlace ? code != u'-' : !isHex)
            return false;
    }
    return true;
}

} // namespace

bool decodeJson(const JsonValue &value, bool &target)
{
    return assign(value.boolean(), target);
}

bool decodeJson(const JsonValue &value, qint64 &target)
{
    return assign(value.integer(), target);
}

bool decodeJson(const JsonValue &value, QString &target)
{
    return assign(value.string(), target);
}

bool decodeJson(const JsonValue &value, QStringList &target)
{
    const std::optional<QList<JsonValue>> elements = value.elements();
    if (!elements)
        return false;
    QStringList texts;
    texts.reserve(elements->size());
    for (const JsonValue &element : *elements) {
        const std::optional<QString> text = element.string();
        if (!text)
            return false;
        texts.append(*text);
    }
    target = texts;
    return true;
}

bool decodeJson(const JsonValue &value, QUuid &target)
{
    const std::optional<QString> text = value.string();
    if (!text || !isCanonicalUuid(*text))
        return false;
    target = QUuid::fromString(*text);
    return true;
}

bool decodeJson(const JsonValue &value, QDateTime &target)
{
    const std::optional<double> seconds = value.number();
    if (seconds)
        target = dateFromReferenceSeconds(*seconds);
    return seconds.has_value();
}

} // namespace Quillmere
