#pragma once

#include "Tools/HolderLock.h"
#include "Tools/LidInhibitors.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

namespace Quillmere {

/// What the holder process is: the lock, and the inhibitor for as long as the object lives.
class HeldInhibitor
{
public:
    /// What the holder process writes once it holds. Anything else that it writes is the reason why it does not.
    [[nodiscard]] static QByteArray isHeld();

    /// Fails with AlreadyExists where another process holds, and then asks logind for nothing.
    [[nodiscard]] static Result<HeldInhibitor> take(const FilePath &runFolder, const LidInhibitors &inhibitors);

private:
    HeldInhibitor(HolderLock lock, QDBusUnixFileDescriptor inhibitor);

    HolderLock m_lock;
    QDBusUnixFileDescriptor m_inhibitor;
};

} // namespace Quillmere
