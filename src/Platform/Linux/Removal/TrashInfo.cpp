#include "Platform/Linux/Removal/TrashInfo.h"

#include "Values/FilePath.h"

namespace Quillmere {

namespace {

constexpr char header[] = "[Trash Info]";
constexpr char infoExtension[] = ".trashinfo";
constexpr qsizetype longestExtensionKept = 32;

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// At most @p size bytes, and no half of a UTF-8 character unless the name is not UTF-8 at all.
QByteArray cut(const QByteArray &name, qsizetype size)
{
    if (name.size() <= size)
        return name;
    qsizetype end = size;
    while (end > 0 && size - end < 4 && continuesCharacter(name.at(end)))
        --end;
    return name.first(end > 0 && !continuesCharacter(name.at(end)) ? end : size);
}

} // namespace

QByteArray TrashInfo::toText() const
{
    return QByteArray(header) + "\nPath=" + path.toPercentEncoding("/")
        + "\nDeletionDate=" + deletionDate.toString(u"yyyy-MM-ddThh:mm:ss"_qs).toLatin1() + '\n';
}

std::optional<TrashInfo> TrashInfo::fromText(const QByteArray &text)
{
    const QList<QByteArray> lines = text.split('\n');
    if (lines.first().trimmed() != header)
        return std::nullopt;
    TrashInfo info;
    for (const QByteArray &line : lines.sliced(1)) {
        const qsizetype equals = line.indexOf('=');
        const QByteArray key = line.first(qMax(equals, 0)).trimmed();
        const QByteArray value = line.sliced(equals + 1).trimmed();
        // Of several lines the first counts, as for every other program that reads the Trash.
        if (key == "Path" && info.path.isEmpty())
            info.path = QByteArray::fromPercentEncoding(value);
        else if (key == "DeletionDate" && !info.deletionDate.isValid())
            info.deletionDate = QDateTime::fromString(QString::fromLatin1(value), Qt::ISODate);
    }
    if (info.path.isEmpty())
        return std::nullopt;
    return info;
}

QByteArray nameInTrash(const QByteArray &name, int number, qsizetype longest)
{
    QByteArray ending = FilePath(name).pathExtension();
    if (ending.size() > longestExtensionKept)
        ending.clear();
    if (!ending.isEmpty())
        ending.prepend('.');
    const QByteArray stem = name.first(name.size() - ending.size());
    if (number > 1)
        ending.prepend('.' + QByteArray::number(number));
    return cut(stem, longest - qsizetype(sizeof infoExtension) + 1 - ending.size()) + ending;
}

} // namespace Quillmere
