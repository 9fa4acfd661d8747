#include "Platform/Linux/Disks/Mount.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

QByteArray withoutEscapes(const QByteArray &field)
{
    QByteArray plain;
    for (qsizetype at = 0; at < field.size(); ++at) {
        if (field.at(at) == '\\' && at + 3 < field.size()) {
            plain.append(static_cast<char>(field.sliced(at + 1, 3).toInt(nullptr, 8)));
            at += 3;
        } else {
            plain.append(field.at(at));
        }
    }
    return plain;
}

bool isTrigger(const MountEntry &mount)
{
    return mount.type == "autofs";
}

bool isOfBootLoader(const FilePath &location)
{
    return location.isWithin(FilePath("/boot")) || location.isWithin(FilePath("/efi"));
}

bool isMountRoot(int descriptor)
{
    struct statx status = {};
    return ::statx(descriptor, "", AT_EMPTY_PATH, STATX_TYPE, &status) == 0
        && (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

std::optional<quint64> mountOf(int descriptor)
{
    struct statx status = {};
    if (::statx(descriptor, "", AT_EMPTY_PATH, STATX_MNT_ID, &status) != 0 || (status.stx_mask & STATX_MNT_ID) == 0)
        return std::nullopt;
    return status.stx_mnt_id;
}

QList<MountEntry> parseMountTable(const QByteArray &text)
{
    QList<MountEntry> entries;
    for (const QByteArray &line : text.split('\n')) {
        // proc(5): optional fields of any number end with a hyphen, behind which the type stands.
        const QList<QByteArray> fields = line.split(' ');
        const qsizetype hyphen = fields.indexOf("-", 6);
        if (hyphen < 0 || hyphen + 1 >= fields.size())
            continue;
        const QByteArray options = fields.value(hyphen + 3);
        const bool isReadOnly = fields.at(5).split(',').contains("ro") || options.split(',').contains("ro");
        entries.append({FilePath(withoutEscapes(fields.at(4))), fields.at(hyphen + 1), fields.at(2),
                        FilePath(withoutEscapes(fields.at(3))), withoutEscapes(fields.value(hyphen + 2)), options,
                        isReadOnly});
    }
    return entries;
}

Result<QList<MountEntry>> mountTable()
{
    QFile table(u"/proc/self/mountinfo"_qs);
    const QByteArray text = table.open(QIODevice::ReadOnly) ? table.readAll() : QByteArray();
    if (table.error() != QFile::NoError)
        return Failure{Failure::Kind::Other, FilePath("/proc/self/mountinfo"), table.errorString()};
    return parseMountTable(text);
}

bool holdsMount(const FilePath &folder)
{
    const Result<QList<MountEntry>> table = mountTable();
    return !table
        || std::ranges::any_of(table.value(), [&](const MountEntry &mount) { return mount.location.isWithin(folder); });
}

std::optional<MountEntry> mountThatHolds(const FilePath &path, const QList<MountEntry> &table)
{
    std::optional<MountEntry> nearest;
    for (const MountEntry &mount : table) {
        // What is mounted later over the same place hides what was there.
        if (path.isWithin(mount.location) && (!nearest || mount.location.isWithin(nearest->location)))
            nearest = mount;
    }
    return nearest;
}

Result<VolumeTop> VolumeTop::of(const ItemPlace &place)
{
    VolumeTop top;
    top.path = place.path.deletingLastPathComponent();
    top.folder = openAt(place.folder.number(), ".", O_PATH | O_DIRECTORY);
    while (top.folder.isOpen() && !isMountRoot(top.folder.number()) && top.path != FilePath("/")) {
        top.folder = openAt(top.folder.number(), "..", O_PATH | O_DIRECTORY);
        top.path = top.path.deletingLastPathComponent();
    }
    if (!top.folder.isOpen())
        return failureFromErrno(errno, place.path);
    return top;
}

} // namespace Quillmere
