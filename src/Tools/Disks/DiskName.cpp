#include "Tools/Disks/DiskName.h"

#include <QRegularExpression>

namespace Quillmere {

std::optional<DiskName> DiskName::parse(const QString &text)
{
    static const QRegularExpression form(u"\\Adisk([1-9][0-9]{0,17})(?:s(0|[1-9][0-9]{0,17}))?\\z"_qs);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    DiskName name{match.captured(1).toULongLong(), std::nullopt};
    if (!match.captured(2).isEmpty())
        name.volume = match.captured(2).toULongLong();
    return name;
}

QString DiskName::text() const
{
    return volume ? u"disk%1s%2"_qs.arg(disk).arg(*volume) : u"disk%1"_qs.arg(disk);
}

} // namespace Quillmere
