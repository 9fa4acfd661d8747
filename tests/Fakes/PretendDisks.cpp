#include "Fakes/PretendDisks.h"

#include <algorithm>

namespace Quillmere {

namespace {

ProcessOutcome refused(const QByteArray &why)
{
    return {1, why + '\n'};
}

QString withoutFolder(const QString &device)
{
    return device.startsWith(u"/dev/") ? device.sliced(5) : device;
}

/// disk4 of disk4s2.
QString diskOf(const QString &device)
{
    return device.left(device.indexOf(u's', 4));
}

} // namespace

void PretendDisks::plugIn(const PretendVolume &volume)
{
    const std::scoped_lock lock(m_mutex);
    m_volumes.append(volume);
}

void PretendDisks::pullOut(const FilePath &mountPoint)
{
    const std::scoped_lock lock(m_mutex);
    m_volumes.removeIf([&](const PretendVolume &volume) { return volume.mountPoint == mountPoint; });
}

QList<PretendVolume> PretendDisks::volumes() const
{
    const std::scoped_lock lock(m_mutex);
    return m_volumes;
}

QList<FilePath> PretendDisks::mountPoints() const
{
    QList<FilePath> mounted;
    for (const PretendVolume &volume : volumes()) {
        if (volume.isMounted)
            mounted.append(volume.mountPoint);
    }
    return mounted;
}

std::optional<PretendVolume> PretendDisks::mountedAt(const FilePath &mountPoint) const
{
    const std::scoped_lock lock(m_mutex);
    const auto found = std::ranges::find_if(
        m_volumes, [&](const PretendVolume &volume) { return volume.isMounted && volume.mountPoint == mountPoint; });
    return found == m_volumes.end() ? std::nullopt : std::optional(*found);
}

ProcessOutcome PretendDisks::diskutil(const QStringList &arguments, bool isAdministrator)
{
    const std::scoped_lock lock(m_mutex);
    const QString verb = arguments.value(0);
    if (verb == u"info" && arguments.size() == 2)
        return info(arguments[1]);
    if ((verb == u"mount" || verb == u"unmount") && arguments.size() == 2)
        return setMounted(arguments[1], verb == u"mount");
    const bool isFormat = verb == u"eraseVolume" && arguments.size() == 4;
    const bool isOverwrite = verb == u"secureErase" && arguments.size() == 3 && arguments[1] == u"0";
    if (!isFormat && !isOverwrite)
        return refused("Usage: diskutil info | mount | unmount | eraseVolume | secureErase");
    if (!isAdministrator)
        return refused("Only the administrator may erase a disk.");
    return isFormat ? eraseVolume(arguments[1], arguments[2], arguments[3]) : secureErase(arguments[2]);
}

PretendVolume *PretendDisks::find(const QString &place)
{
    const auto found = std::ranges::find_if(m_volumes, [&](const PretendVolume &volume) {
        const bool isDevice = !volume.device.isEmpty() && volume.device == withoutFolder(place);
        return isDevice || (volume.isMounted && volume.mountPoint.bytes() == place.toUtf8());
    });
    return found == m_volumes.end() ? nullptr : &*found;
}

ProcessOutcome PretendDisks::info(const QString &place)
{
    const PretendVolume *volume = find(place);
    if (!volume || volume->device.isEmpty())
        return refused("Could not find disk: " + place.toUtf8());
    const QString device = volume->device;
    QByteArray lines = "   Device Identifier:         " + device.toUtf8() + '\n';
    lines += "   Device Node:               /dev/" + device.toUtf8() + '\n';
    if (!volume->fileSystem.isEmpty())
        lines += "   File System Personality:   " + volume->fileSystem.toUtf8() + '\n';
    return {0, lines};
}

ProcessOutcome PretendDisks::setMounted(const QString &place, bool isMounted)
{
    PretendVolume *volume = find(place);
    if (!volume)
        return refused("Unable to find disk for " + place.toUtf8());
    volume->isMounted = isMounted;
    return {0, "Volume " + volume->device.toUtf8() + (isMounted ? " mounted\n" : " unmounted\n")};
}

ProcessOutcome PretendDisks::eraseVolume(const QString &format, const QString &name, const QString &device)
{
    PretendVolume *volume = find(device);
    if (!volume || volume->device.isEmpty())
        return refused("Unable to find disk for " + device.toUtf8());
    volume->mountPoint = volume->mountPoint.deletingLastPathComponent().appending(name.toUtf8());
    VolumeValues values = volume->values.valueOr({});
    values.name = name;
    volume->values = values;
    volume->fileSystem.clear();
    volume->capacity.available = volume->capacity.total;
    volume->capacity.availableForImportantUsage = volume->capacity.total;
    return {0,
            "Started erase on " + device.toUtf8() + "\nUnmounting disk\nErasing\nFormatting " + device.toUtf8() + " as "
                + format.toUtf8() + " with name " + name.toUtf8() + "\nMounting disk\nFinished erase on "
                + device.toUtf8() + '\n'};
}

ProcessOutcome PretendDisks::secureErase(const QString &disk)
{
    const qsizetype erased = m_volumes.removeIf([&](const PretendVolume &volume) {
        return !volume.device.isEmpty() && diskOf(volume.device) == withoutFolder(disk);
    });
    if (erased == 0)
        return refused("Unable to find disk for " + disk.toUtf8());
    return {0, "Started erase on " + disk.toUtf8() + "\nFinished erase on " + disk.toUtf8() + '\n'};
}

} // namespace Quillmere
