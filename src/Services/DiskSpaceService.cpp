#include "Services/DiskSpaceService.h"

#include "Utilities/ByteCountFormatter.h"
#include "Utilities/Diagnostics.h"

namespace Quillmere {

namespace {

Result<VolumeCapacity> ask(const FileManager &files, const FilePath &path, CapacityKeys keys)
{
    const Result<VolumeCapacity> capacity = files.capacityOfVolume(path, keys);
    if (!capacity)
        printDiagnostic(u"Error retrieving disk space: "_qs, capacity.failure());
    return capacity;
}

DiskSpaceService::DiskSpaceInfo infoOf(qint64 total, qint64 free)
{
    DiskSpaceService::DiskSpaceInfo info;
    info.totalSpace = total;
    info.freeSpace = free;
    info.usedSpace = total - free;
    if (total >= 1)
        info.usagePercentage = static_cast<double>(info.usedSpace) / static_cast<double>(total);
    info.freeFormatted = formatByteCount(info.freeSpace);
    info.usedFormatted = formatByteCount(info.usedSpace);
    info.totalFormatted = formatByteCount(info.totalSpace);
    return info;
}

} // namespace

DiskSpaceService::DiskSpaceInfo DiskSpaceService::getDiskSpace(const FilePath &path, const FileManager &files)
{
    const Result<VolumeCapacity> first = ask(files, path, CapacityKey::Total | CapacityKey::AvailableForImportantUsage);
    if (!first)
        return infoOf(0, 0);
    qint64 free = first.value().availableForImportantUsage.value_or(0);
    if (free == 0) {
        const Result<VolumeCapacity> second = ask(files, path, CapacityKey::Available);
        free = second ? second.value().available.value_or(0) : 0;
    }
    return infoOf(first.value().total.value_or(0), free);
}

} // namespace Quillmere
