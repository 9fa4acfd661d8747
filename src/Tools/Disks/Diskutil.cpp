#include "Tools/Disks/Diskutil.h"

#include "Tools/Disks/Unmounting.h"

#include <QFile>

#include <sys/sysmacros.h>

#include <utility>

namespace Quillmere {

namespace {

const QString diskutilUsage = u"usage: diskutil info PLACE|VOLUME\n"
                              "       diskutil mount VOLUME\n"
                              "       diskutil unmount PLACE|VOLUME"_qs;

ToolEnd failed(const QString &reason)
{
    return {1, u"diskutil: "_qs + reason};
}

/// Empty for those that have no name in this language.
QString personalityOf(const QString &type)
{
    if (type == u"ntfs")
        return u"NTFS"_qs;
    if (type == u"vfat")
        return u"MS-DOS"_qs;
    return type == u"exfat" ? u"ExFAT"_qs : QString();
}

QString line(const QString &name, const QString &value)
{
    constexpr int columnOfValues = 26;
    return u"   "_qs + (name + u':').leftJustified(columnOfValues) + value;
}

} // namespace

Diskutil::Diskutil(DiskService service, BlockDevices devices, ListedDisks listed,
                   std::function<QList<MountEntry>()> mounts, std::function<void(const QString &line)> say)
    : m_service(std::move(service))
    , m_devices(std::move(devices))
    , m_listed(std::move(listed))
    , m_mounts(std::move(mounts))
    , m_say(std::move(say))
{
}

ToolEnd Diskutil::run(const QStringList &arguments) const
{
    const QString verb = arguments.value(0);
    const bool isKnown = verb == u"info" || verb == u"mount" || verb == u"unmount";
    if (arguments.size() != 2 || !isKnown)
        return {ToolEnd::wrongUse, diskutilUsage};
    const Result<Target> target = find(arguments.at(1));
    if (!target)
        return failed(target.failure().detail);
    if (verb == u"info")
        return info(target.value());
    return verb == u"mount" ? mount(target.value()) : unmount(target.value());
}

Result<Diskutil::Target> Diskutil::find(const QString &argument) const
{
    const QString device = u"/dev/"_qs;
    const auto name = DiskName::parse(argument.startsWith(device) ? argument.mid(device.size()) : argument);
    const auto number = name ? std::nullopt : mountedAt(FilePath(QFile::encodeName(argument)));
    if (!number && (!name || !name->volume))
        return Failure{Failure::Kind::NotFound, {}, u"No volume of a disk is mounted at %1."_qs.arg(argument)};
    const Result<DiskObjects> objects = m_service.objects();
    if (!objects)
        return objects.failure();
    const DiskCatalogue catalogue(m_devices, objects.value(), m_listed.numbersBegin());
    const auto volume = number ? catalogue.volume(*number) : named(catalogue, *name);
    if (!volume || !catalogue.objects().block(volume->number))
        return Failure{Failure::Kind::NotFound, {}, u"There is no disk %1."_qs.arg(argument)};
    return Target{catalogue, *volume};
}

std::optional<quint64> Diskutil::mountedAt(const FilePath &place) const
{
    std::optional<quint64> number;
    for (const MountEntry &mount : m_mounts()) {
        // What is mounted later over the same place hides what was there.
        if (mount.location == place.standardized())
            number = m_devices.numberOfMount(mount.device, FilePath(mount.source));
    }
    return number;
}

std::optional<DiskIdentity> Diskutil::named(const DiskCatalogue &catalogue, const DiskName &name) const
{
    const Result<DiskIdentity> shown = m_listed.find(name);
    if (!shown)
        return catalogue.named(name);
    std::optional<DiskIdentity> now = catalogue.volume(shown.value().number);
    if (!now || now->name.ofWholeDisk() != name.ofWholeDisk())
        return std::nullopt;
    now->name = name;
    return now == shown.value() ? now : std::nullopt;
}

// Nothing that somebody else has made up, such as the volume's name or its place, is among the lines: it might look
// like one of them.
ToolEnd Diskutil::info(const Target &target) const
{
    const std::optional<DiskIdentity> disk = target.catalogue.wholeDisk(target.volume.number);
    const DiskBlock *block = target.catalogue.objects().block(target.volume.number);
    if (!disk || !block)
        return failed(u"The disk has gone."_qs);
    const Result<DiskIdentity> volume = m_listed.keepVolume(target.volume);
    // What cannot be kept is shown all the same, and is not erased.
    if (!volume || !m_listed.keep(*disk))
        m_say(line(u"Erasable"_qs, u"No"_qs));
    m_say(line(u"Device Identifier"_qs, volume.valueOr(target.volume).name.text()));
    m_say(line(u"Device Node"_qs, nodeOf(target.volume.node).displayText()));
    m_say(line(u"Part of Whole"_qs, disk->name.text()));
    if (const QString personality = personalityOf(block->type); !personality.isEmpty())
        m_say(line(u"File System Personality"_qs, personality));
    m_say(line(u"Disk Size"_qs, u"%1 Bytes"_qs.arg(target.volume.size)));
    return {};
}

ToolEnd Diskutil::mount(const Target &target) const
{
    const Result<FilePath> mounted = m_service.mount(target.catalogue.objects().block(target.volume.number)->object);
    if (!mounted && mounted.failure().kind != Failure::Kind::AlreadyExists)
        return failed(mounted.failure().detail);
    m_say(u"%1 is mounted."_qs.arg(target.volume.name.text()));
    return {};
}

ToolEnd Diskutil::unmount(const Target &target) const
{
    if (const Result<void> unmounted = unmountEverywhere(m_service, target.volume.number); !unmounted)
        return failed(unmounted.failure().detail);
    m_say(u"%1 is not mounted."_qs.arg(target.volume.name.text()));
    return {};
}

} // namespace Quillmere
