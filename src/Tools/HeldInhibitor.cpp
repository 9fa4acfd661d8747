#include "Tools/HeldInhibitor.h"

#include <utility>

namespace Quillmere {

HeldInhibitor::HeldInhibitor(HolderLock lock, QDBusUnixFileDescriptor inhibitor)
    : m_lock(std::move(lock))
    , m_inhibitor(std::move(inhibitor))
{
}

QByteArray HeldInhibitor::isHeld()
{
    return "held\n";
}

Result<HeldInhibitor> HeldInhibitor::take(const FilePath &runFolder, const LidInhibitors &inhibitors)
{
    Result<HolderLock> lock = HolderLock::open(runFolder);
    if (!lock)
        return lock.failure();
    if (const Result<void> taken = lock.value().take(); !taken)
        return taken.failure();
    const Result<QDBusUnixFileDescriptor> inhibitor = inhibitors.take();
    if (!inhibitor)
        return inhibitor.failure();
    return HeldInhibitor(std::move(lock).value(), inhibitor.value());
}

} // namespace Quillmere
