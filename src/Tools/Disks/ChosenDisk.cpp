#include "Tools/Disks/ChosenDisk.h"

#include "Tools/Disks/Unmounting.h"

#include <algorithm>
#include <utility>

namespace Quillmere {

namespace {

Failure exchanged(const DiskIdentity &identity)
{
    return {
        Failure::Kind::NotFound,
        {},
        u"%1 is no longer the disk that was chosen: it was changed or exchanged since then. Nothing was erased."_qs.arg(
            identity.name.text())};
}

/// What has the number of @p identity now, called as it was in the session of whoever has been shown it.
std::optional<DiskIdentity> identityNow(const DiskTools &tools, const DiskObjects &objects,
                                        const DiskIdentity &identity)
{
    const std::optional<BlockDevice> disk = tools.devices.wholeDisk(identity.number);
    if (!disk || identity.name.disk < disk->sequence + DiskName::leastBegin
        || identity.name.disk > disk->sequence + DiskName::mostBegin)
        return std::nullopt;
    const DiskCatalogue catalogue(tools.devices, objects, identity.name.disk - disk->sequence);
    std::optional<DiskIdentity> now
        = identity.name.volume ? catalogue.volume(identity.number) : catalogue.wholeDisk(identity.number);
    // Which number a volume is shown under is known to the user's own programs alone.
    if (now)
        now->name.volume = identity.name.volume;
    return now;
}

Failure inUse(const DiskIdentity &identity, const QString &detail)
{
    return {Failure::Kind::Busy, {}, u"%1 is in use (%2). Nothing was erased."_qs.arg(identity.name.text(), detail)};
}

Result<void> seeThatTheSystemDoesNotNeed(const DiskTools &tools, const DiskIdentity &identity)
{
    const Result<QSet<quint64>> system = tools.systemDevices();
    if (!system) {
        const Failure &why = system.failure();
        return Failure{Failure::Kind::Protected,
                       {},
                       u"It cannot be told which disks the running system needs (%1). Nothing was erased."_qs.arg(
                           why.path.isEmpty() ? why.detail : why.path.displayText())};
    }
    const QList<quint64> foundations = tools.devices.foundations(identity.number);
    if (std::ranges::any_of(foundations, [&](quint64 number) { return system.value().contains(number); }))
        return Failure{
            Failure::Kind::Protected,
            {},
            u"%1 lies on a disk that the running system needs, and is never erased here."_qs.arg(identity.name.text())};
    return {};
}

Result<void> unmountAll(const DiskTools &tools, const DiskIdentity &identity, quint64 number)
{
    const auto tell = [&](const FilePath &place) { tools.say(u"Unmounted %1."_qs.arg(place.displayText())); };
    const Result<void> unmounted = unmountEverywhere(tools.service, number, tell);
    if (unmounted || unmounted.failure().kind == Failure::Kind::NotSupported)
        return unmounted;
    return inUse(identity, unmounted.failure().detail);
}

Result<void> lockIfUnlocked(const DiskTools &tools, const DiskIdentity &identity, quint64 number)
{
    const Result<DiskObjects> objects = tools.service.objects();
    if (!objects)
        return objects.failure();
    const DiskBlock *block = objects.value().block(number);
    if (!block || !block->isEncrypted || block->unlocked.isEmpty())
        return {};
    const Result<void> locked = tools.service.lock(block->object);
    return locked ? locked : inUse(identity, locked.failure().detail);
}

} // namespace

ChosenDisk::ChosenDisk(DiskIdentity identity, DiskBlock block, std::unique_ptr<OpenDevice> held)
    : m_identity(std::move(identity))
    , m_block(std::move(block))
    , m_held(std::move(held))
{
}

Result<ChosenDisk> ChosenDisk::choose(const DiskTools &tools, const DiskIdentity &identity)
{
    Result<std::unique_ptr<OpenDevice>> held = tools.access->open(identity.node, DeviceAccess::Way::Look);
    if (!held)
        return exchanged(identity);
    const Result<DiskObjects> objects = tools.service.objects();
    if (!objects)
        return objects.failure();
    const DiskBlock *block = objects.value().block(identity.number);
    if (!block || identityNow(tools, objects.value(), identity) != identity)
        return exchanged(identity);
    ChosenDisk disk(identity, *block, std::move(held).value());
    if (const Result<void> same = disk.seeThatItIsStillThis(); !same)
        return same.failure();
    if (const Result<void> free = seeThatTheSystemDoesNotNeed(tools, identity); !free)
        return free.failure();
    return disk;
}

Result<void> ChosenDisk::release(const DiskTools &tools) const
{
    const QList<quint64> stack = tools.devices.withAllAbove(m_identity.number);
    for (const quint64 number : stack) {
        if (const Result<void> unmounted = unmountAll(tools, m_identity, number); !unmounted)
            return unmounted;
    }
    for (const quint64 number : stack) {
        if (const Result<void> locked = lockIfUnlocked(tools, m_identity, number); !locked)
            return locked;
    }
    return {};
}

Result<std::unique_ptr<OpenDevice>> ChosenDisk::openAlone(const DiskTools &tools) const
{
    Result<std::unique_ptr<OpenDevice>> device = tools.access->open(m_identity.node, DeviceAccess::Way::Alone);
    if (!device && device.failure().kind == Failure::Kind::Busy)
        return inUse(m_identity, u"another program holds it"_qs);
    if (!device)
        return Failure{device.failure().kind,
                       {},
                       u"%1 cannot be opened: %2. Nothing was erased."_qs.arg(name(), device.failure().detail)};
    if (const Result<void> same = seeThatItIsThis(*device.value()); !same)
        return same.failure();
    return device;
}

Result<void> ChosenDisk::seeThatItIsThis(const OpenDevice &device) const
{
    const Result<DeviceFacts> facts = device.facts();
    if (!facts)
        return exchanged(m_identity);
    const bool same = facts.value().number == m_identity.number && facts.value().size == m_identity.size
        && facts.value().sequence == m_identity.sequence && facts.value().sequence != 0;
    if (!same)
        return exchanged(m_identity);
    if (facts.value().isReadOnly)
        return Failure{
            Failure::Kind::ReadOnly, {}, u"%1 is protected against writing. Nothing was erased."_qs.arg(name())};
    return {};
}

} // namespace Quillmere
