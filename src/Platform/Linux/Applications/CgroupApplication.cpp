#include "Platform/Linux/Applications/CgroupApplication.h"

#include "Platform/Linux/System/ProcText.h"

#include <algorithm>
#include <cctype>

namespace Quillmere {

namespace {

// systemd.unit(5): what a unit's name may not hold, and each hyphen of a part, stands there as \xNN.
QByteArray withoutEscapes(QByteArrayView escaped)
{
    QByteArray plain;
    for (qsizetype at = 0; at < escaped.size(); ++at) {
        bool isHexadecimal = false;
        const int code = escaped.sliced(at).startsWith("\\x")
            ? escaped.sliced(at + 2, std::min<qsizetype>(2, escaped.size() - at - 2))
                  .toByteArray()
                  .toInt(&isHexadecimal, 16)
            : 0;
        if (isHexadecimal && at + 3 < escaped.size()) {
            plain.append(static_cast<char>(code));
            at += 3;
        } else {
            plain.append(escaped[at]);
        }
    }
    return plain;
}

bool isUuid(QByteArrayView text)
{
    constexpr qsizetype length = 36;
    return text.size() == length
        && std::ranges::all_of(text, [](char each) { return each == '-' || std::isxdigit(static_cast<uchar>(each)); });
}

/// "app[-launcher]-id-random.scope"; the parts hold no hyphens but escaped ones.
QByteArray idOfScope(QByteArrayView name)
{
    const QList<QByteArray> parts = name.toByteArray().split('-');
    return parts.size() == 3 || parts.size() == 4 ? withoutEscapes(parts.at(parts.size() - 2)) : QByteArray();
}

/// "app[-launcher]-id[@random].service"
QByteArray idOfService(QByteArrayView name)
{
    const qsizetype instance = name.indexOf('@');
    const QList<QByteArray> parts = (instance < 0 ? name : name.first(instance)).toByteArray().split('-');
    return parts.size() == 2 || parts.size() == 3 ? withoutEscapes(parts.last()) : QByteArray();
}

/// "snap.name.app-uuid.scope", or a point before the number in older ones: the desktop calls it "name_app".
QByteArray idOfSnap(QByteArrayView name)
{
    constexpr qsizetype numberAndSeparator = 37;
    if (name.size() <= numberAndSeparator || !isUuid(name.last(numberAndSeparator - 1)))
        return {};
    const QList<QByteArray> parts = withoutEscapes(name.chopped(numberAndSeparator)).split('.');
    return parts.size() == 3 ? parts.at(1) + '_' + parts.at(2) : QByteArray();
}

QByteArray idOfUnit(QByteArrayView unit)
{
    const bool isScope = unit.endsWith(".scope");
    const QByteArrayView name = unit.first(unit.lastIndexOf('.'));
    if (name.startsWith("app-"))
        return isScope ? idOfScope(name) : idOfService(name);
    return isScope && name.startsWith("snap.") ? idOfSnap(name) : QByteArray();
}

QByteArray innermostUnit(const QByteArray &path)
{
    const QList<QByteArray> names = path.split('/');
    const auto found = std::find_if(names.crbegin(), names.crend(), [](const QByteArray &name) {
        return name.endsWith(".scope") || name.endsWith(".service");
    });
    return found == names.crend() ? QByteArray() : *found;
}

} // namespace

CgroupApplication parseCgroup(QByteArrayView text)
{
    for (const QByteArrayView line : wholeLines(text)) {
        const qsizetype controllers = line.indexOf(':') + 1;
        const qsizetype path = line.indexOf(':', controllers) + 1;
        if (controllers <= 0 || path <= 0)
            continue;
        const QByteArrayView which = line.sliced(controllers, path - 1 - controllers);
        if (!which.isEmpty() && which != "name=systemd")
            continue;
        const QByteArray unit = innermostUnit(line.sliced(path).toByteArray());
        const QByteArray id = unit.isEmpty() ? QByteArray() : idOfUnit(unit);
        if (!id.isEmpty())
            return {id, unit};
    }
    return {};
}

} // namespace Quillmere
