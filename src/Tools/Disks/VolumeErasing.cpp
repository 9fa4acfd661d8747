#include "Tools/Disks/VolumeErasing.h"

#include "Tools/Disks/ChosenDisk.h"
#include "Tools/Disks/VolumeFormat.h"

namespace Quillmere {

namespace {

/// Why no such file system can be made on any disk here. Empty when it can.
QString whyNot(const DiskTools &tools, const std::optional<QString> &fileSystem, const QString &label)
{
    if (!fileSystem)
        return u"There is no such format here."_qs;
    if (const QString reason = whyNotLabel(*fileSystem, label); !reason.isEmpty())
        return reason;
    const Result<QString> missing = tools.service.missingToFormat(*fileSystem);
    if (!missing)
        return missing.failure().detail;
    return missing.value().isEmpty() ? QString()
                                     : u"%1 cannot be made here: %2 is missing."_qs.arg(*fileSystem, missing.value());
}

/// What it is must have been read from it anew since, so this is what everybody else will see.
Result<void> seeThatItIsNow(const DiskTools &tools, const ChosenDisk &disk, const QString &type, const QString &label)
{
    const Result<DiskObjects> objects = tools.service.objects();
    if (!objects)
        return objects.failure();
    const DiskBlock *block = objects.value().block(disk.identity().number);
    // vfat has capital letters alone.
    if (!block || block->type != type || block->label.compare(label, Qt::CaseInsensitive) != 0)
        return Failure{Failure::Kind::Other, {}, u"What is on it now is something else than was ordered."_qs};
    return disk.seeThatItIsStillThis();
}

ToolEnd failedHalfway(const ChosenDisk &disk, const Failure &failure)
{
    return {1, u"%1 could not be formatted: %2 What was on it may be lost."_qs.arg(disk.name(), failure.detail)};
}

} // namespace

ToolEnd eraseVolume(const DiskTools &tools, const QString &format, const QString &label, const DiskIdentity &volume)
{
    const std::optional<QString> type = fileSystemFor(format);
    if (const QString reason = whyNot(tools, type, label); !reason.isEmpty())
        return {1, reason + u" Nothing was erased."_qs};
    const Result<ChosenDisk> chosen = ChosenDisk::choose(tools, volume);
    if (!chosen)
        return ToolEnd::failed(chosen.failure());
    const ChosenDisk &disk = chosen.value();
    if (const Result<void> free = disk.release(tools); !free)
        return {ToolEnd::notBegun, free.failure().detail};
    // udisks2 takes it for itself in turn, so that it is only seen here that nobody else has it.
    if (const auto alone = disk.openAlone(tools); !alone)
        return {ToolEnd::notBegun, alone.failure().detail};
    if (const Result<void> formatted = tools.service.format(disk.block().object, *type, label); !formatted)
        return failedHalfway(disk, formatted.failure());
    if (const Result<void> seen = seeThatItIsNow(tools, disk, *type, label); !seen)
        return failedHalfway(disk, seen.failure());
    if (const Result<void> given = tools.giveToUser ? tools.giveToUser(volume.node, *type) : Result<void>(); !given)
        tools.say(u"%1 belongs to root: %2."_qs.arg(disk.name(), given.failure().detail));
    tools.say(u"Formatted %1 with %2. Its name is %3."_qs.arg(disk.name(), *type, label));
    return {};
}

} // namespace Quillmere
