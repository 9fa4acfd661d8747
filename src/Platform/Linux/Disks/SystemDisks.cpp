#include "Platform/Linux/Disks/SystemDisks.h"

#include "Platform/Linux/Files/LinkResolution.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <string_view>

namespace Quillmere {

namespace {

constexpr std::array<std::string_view, 9> systemFolders
    = {"/", "/boot", "/efi", "/etc", "/home", "/nix", "/opt", "/root", "/usr"};

// Those of them below which more of the system may be mounted.
constexpr std::array<std::string_view, 6> deepFolders = {"/efi", "/etc", "/nix", "/opt", "/usr", "/var"};

// In memory, or on other machines.
constexpr std::array<std::string_view, 12> typesOnNoDisk
    = {"9p", "afs", "ceph", "cifs", "devtmpfs", "nfs", "nfs4", "ramfs", "rootfs", "smb3", "tmpfs", "virtiofs"};

template<typename Names>
bool holds(const Names &names, const QByteArray &name)
{
    return std::ranges::find(names, std::string_view(name.constData(), static_cast<size_t>(name.size())))
        != names.end();
}

/// autofs(5): a folder in which each name is mounted by itself, so that nothing is in use while nothing is mounted.
bool isFolderOfTriggers(const MountEntry &mount)
{
    return mount.options.split(',').contains("indirect");
}

bool isSystemPlace(const FilePath &location)
{
    return holds(systemFolders, location.bytes()) || location == FilePath("/var")
        || location.isWithin(FilePath("/boot")) || location.deletingLastPathComponent() == FilePath("/home");
}

bool isBelowSystemPlace(const FilePath &location)
{
    return std::ranges::any_of(deepFolders, [&](std::string_view folder) {
        return location.isWithin(FilePath(QByteArray(folder.data(), qsizetype(folder.size()))));
    });
}

/// Collects devices, and remembers the first thing of which it cannot be told where it lies.
class Collection
{
public:
    Collection(const SystemPlaces &places, const BlockDevices &devices)
        : m_places(places)
        , m_devices(devices)
    {
    }

    [[nodiscard]] Result<QSet<quint64>> collect()
    {
        for (const MountEntry &mount : m_places.mounts) {
            if (isSystemPlace(mount.location))
                addMount(mount);
        }
        addPath(m_places.program);
        for (const FilePath &home : m_places.homes)
            addPath(home);
        for (const QByteArray &line : m_places.swaps.split('\n').mid(1)) {
            if (!line.isEmpty())
                addSwap(FilePath(withoutEscapes(line.left(line.indexOf(' ')))));
        }
        const FilePath unknown = m_unknown;
        // Behind all that must be known: what was seen to is not looked at again.
        for (const MountEntry &mount : m_places.mounts) {
            if (isBelowSystemPlace(mount.location) || isBelowTrigger(mount.location))
                addMount(mount);
        }
        if (!unknown.isEmpty())
            return Failure{Failure::Kind::NotSupported, unknown, u"It cannot be told on which disk this lies."_qs};
        return m_found;
    }

private:
    void addMount(const MountEntry &mount)
    {
        if (m_mounts.contains(mount))
            return;
        m_mounts.append(mount);
        if (isTrigger(mount))
            addTrigger(mount);
        else if (const auto number = m_devices.numberOfMount(mount.device, FilePath(mount.source)))
            addMembers(*number);
        else if (mount.type == "overlay")
            addLayers(mount);
        else if (mount.source.startsWith('/') && !mount.source.startsWith("/dev/"))
            addPath(FilePath(mount.source));
        else if (!holds(typesOnNoDisk, mount.type))
            fail(mount.location);
    }

    /// What mounts at the first touch holds nothing itself, once something has been mounted there. Before that nobody
    /// can tell what it will be, and its source is but a list of what may be; what is in use has been mounted.
    void addTrigger(const MountEntry &mount)
    {
        const QList<MountEntry> later = m_places.mounts.mid(m_places.mounts.indexOf(mount) + 1);
        const bool isTouched = std::ranges::any_of(
            later, [&](const MountEntry &other) { return other.location.isWithin(mount.location); });
        if (isTouched)
            m_triggers.append(mount.location);
        else if (!isFolderOfTriggers(mount) || isOfBootLoader(mount.location))
            fail(mount.location);
    }

    [[nodiscard]] bool isBelowTrigger(const FilePath &location) const
    {
        return std::ranges::any_of(m_triggers, [&](const FilePath &each) { return location.isWithin(each); });
    }

    void addLayers(const MountEntry &mount)
    {
        // Its layers lie in what was mounted before it, and what came later over them is of no account.
        const QList<MountEntry> earlier = m_places.mounts.first(m_places.mounts.indexOf(mount));
        int layers = 0;
        for (const QByteArray &option : mount.options.split(',')) {
            const qsizetype equals = option.indexOf('=');
            if (!option.startsWith("lowerdir") && !option.startsWith("upperdir"))
                continue;
            for (const QByteArray &layer : option.mid(equals + 1).split(':')) {
                const auto holder = mountThatHolds(FilePath(layer), earlier);
                // None for a folder that only another namespace sees.
                if (layer.startsWith('/') && holder)
                    addMount(*holder);
                else
                    fail(mount.location);
                ++layers;
            }
        }
        if (layers == 0)
            fail(mount.location);
    }

    void addNode(const FilePath &node)
    {
        if (const auto number = m_devices.numberOfNode(node))
            addDevice(*number);
        else
            fail(node);
    }

    void addMembers(quint64 number)
    {
        for (const quint64 member : m_devices.btrfsMembers(number))
            addDevice(member);
    }

    void addDevice(quint64 number)
    {
        if (m_found.contains(number))
            return;
        m_found.insert(number);
        const std::optional<BlockDevice> device = m_devices.device(number);
        if (!device || (device->partition != 0 && !device->disk)) {
            fail(FilePath("/dev/block/" + textOfDeviceNumber(number)));
            return;
        }
        if (device->disk)
            addDevice(*device->disk);
        for (const quint64 below : device->below)
            addDevice(below);
        if (!device->backingFile.isEmpty())
            addPath(device->backingFile);
    }

    void addPath(const FilePath &path)
    {
        const auto holder = mountThatHolds(path, m_places.mounts);
        // What a trigger will mount for this path is yet to be seen.
        if (holder && !isTrigger(*holder))
            addMount(*holder);
        else
            fail(path);
    }

    void addSwap(const FilePath &place)
    {
        if (place.isWithin(FilePath("/dev")))
            addNode(place);
        else
            addPath(place);
    }

    void fail(const FilePath &what)
    {
        if (m_unknown.isEmpty())
            m_unknown = what;
    }

    const SystemPlaces &m_places;
    const BlockDevices &m_devices;
    QSet<quint64> m_found;
    QList<FilePath> m_triggers; ///< Where something has been mounted at the first touch.
    QList<MountEntry> m_mounts; ///< Seen to already, so that no ring goes round for ever.
    FilePath m_unknown;
};

} // namespace

Result<SystemPlaces> SystemPlaces::ofThisMachine(const FilePath &home)
{
    QFile swaps(u"/proc/swaps"_qs);
    SystemPlaces places;
    const Result<QList<MountEntry>> mounts = mountTable();
    if (!mounts)
        return mounts.failure();
    places.mounts = mounts.value();
    // Kernels without swap have no such table.
    if (swaps.open(QFile::ReadOnly))
        places.swaps = swaps.readAll();
    else if (QFile::exists(swaps.fileName()))
        return Failure{Failure::Kind::NoPermission, FilePath("/proc/swaps"), swaps.errorString()};
    places.program = FilePath(QFile::encodeName(QFile::symLinkTarget(u"/proc/self/exe"_qs)));
    // Such as "/nonexistent", of those who are nobody.
    if (home.bytes().startsWith('/'))
        places.homes = {home.standardized(), resolveLinks(home).value_or(home.standardized())};
    if (places.mounts.isEmpty() || places.program.isEmpty())
        return Failure{Failure::Kind::NotFound, FilePath("/proc"), u"The mounts of this machine cannot be read."_qs};
    return places;
}

Result<QSet<quint64>> systemDevices(const SystemPlaces &places, const BlockDevices &devices)
{
    return Collection(places, devices).collect();
}

} // namespace Quillmere
