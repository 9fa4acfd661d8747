#include "Tools/Disks/DiskMounts.h"

namespace Quillmere {

namespace {

QString mountAgain(const DiskBlock &before, const DiskBlock *now, const DiskService &service)
{
    const FilePath place = before.mountPoints.first();
    const bool isStillThat = now && now->isFileSystem && now->type == before.type && now->uuid == before.uuid;
    const Result<FilePath> mounted = isStillThat
        ? service.mount(now->object)
        : Failure{Failure::Kind::NotFound, {}, u"What was mounted there is not to be seen."_qs};
    if (!mounted)
        return u"%1 stays unmounted: %2"_qs.arg(place.displayText(), mounted.failure().detail);
    return mounted.value() == place
        ? u"Mounted %1 again."_qs.arg(place.displayText())
        : u"Mounted again at %2 what was at %1."_qs.arg(place.displayText(), mounted.value().displayText());
}

} // namespace

DiskMounts DiskMounts::of(quint64 number, const DiskService &service, const BlockDevices &devices)
{
    DiskMounts mounts;
    const DiskObjects objects = service.objects().valueOr({});
    for (const quint64 one : devices.withAllAbove(number)) {
        const DiskBlock *block = objects.block(one);
        if (block && !block->mountPoints.isEmpty())
            mounts.m_mounted.append(*block);
    }
    return mounts;
}

QStringList DiskMounts::restore(const DiskService &service) const
{
    QStringList sentences;
    const DiskObjects objects = service.objects().valueOr({});
    for (const DiskBlock &before : m_mounted) {
        const DiskBlock *now = objects.block(before.number);
        if (!now || now->mountPoints.isEmpty())
            sentences.append(mountAgain(before, now, service));
    }
    return sentences;
}

} // namespace Quillmere
