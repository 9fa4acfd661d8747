#include "Tools/Disks/Unmounting.h"

namespace Quillmere {

namespace {

constexpr int mostMounts = 64;

} // namespace

Result<void> unmountEverywhere(const DiskService &service, quint64 number,
                               const std::function<void(const FilePath &place)> &unmounted)
{
    for (int mount = 0; mount < mostMounts; ++mount) {
        const Result<DiskObjects> objects = service.objects();
        if (!objects)
            return objects.failure();
        const DiskBlock *block = objects.value().block(number);
        if (!block || block->mountPoints.isEmpty())
            return {};
        const Result<void> done = service.unmount(block->object);
        // Somebody else may have been quicker.
        if (!done && done.failure().kind != Failure::Kind::NotFound)
            return done.failure();
        if (done && unmounted)
            unmounted(block->mountPoints.first());
    }
    return Failure{Failure::Kind::Busy, {}, u"it is mounted again and again"_qs};
}

} // namespace Quillmere
