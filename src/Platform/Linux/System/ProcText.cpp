#include "Platform/Linux/System/ProcText.h"

#include <charconv>

namespace Quillmere {

QList<QByteArrayView> wholeLines(QByteArrayView text)
{
    QList<QByteArrayView> lines;
    for (qsizetype end = text.indexOf('\n'); end >= 0; end = text.indexOf('\n')) {
        lines.append(text.first(end));
        text = text.sliced(end + 1);
    }
    return lines;
}

QList<QByteArrayView> fieldsOf(QByteArrayView line)
{
    QList<QByteArrayView> fields;
    qsizetype start = -1;
    for (qsizetype at = 0; at <= line.size(); ++at) {
        const bool isBlank = at == line.size() || line[at] == ' ' || line[at] == '\t';
        if (!isBlank && start < 0)
            start = at;
        if (isBlank && start >= 0) {
            fields.append(line.sliced(start, at - start));
            start = -1;
        }
    }
    return fields;
}

std::optional<quint64> wholeNumber(QByteArrayView field)
{
    quint64 number = 0;
    const char *end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

} // namespace Quillmere
