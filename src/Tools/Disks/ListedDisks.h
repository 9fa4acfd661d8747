#pragma once

#include "Platform/Linux/Files/RuntimeFolder.h"
#include "Tools/Disks/DiskIdentity.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

namespace Quillmere {

/// What the disks were that this user has been shown, from one call of the program to the next. It lasts as long as the
/// session. Names never pass to others, so that a loss of it makes names unknown.
class ListedDisks
{
public:
    explicit ListedDisks(RuntimeFolder runtimeFolder);
    /// That of the user we run as.
    [[nodiscard]] static ListedDisks ofThisUser();

    /// Where the numbers of disks begin in this session, between DiskName::leastBegin and mostBegin. Drawn by chance
    /// at the first call. Where nothing can be kept it is always the least.
    [[nodiscard]] quint64 numbersBegin() const;
    /// Whoever looks meanwhile finds nothing, or all of this. Fails with AlreadyExists where another was shown under
    /// its name: that name goes on to mean the other, which may be no more.
    [[nodiscard]] Result<void> keep(const DiskIdentity &identity) const;
    /// The same for a volume that may come to another number: where another was shown under its name, it is kept, and
    /// found again later, under the next number that is free. Answers with it as it is called now.
    [[nodiscard]] Result<DiskIdentity> keepVolume(DiskIdentity volume) const;
    /// Fails with NotFound for a name that was not shown, and with Malformed where something else was written there.
    [[nodiscard]] Result<DiskIdentity> find(const DiskName &name) const;

private:
    /// The folder, made where it is missing. Fails where others may write.
    [[nodiscard]] Result<void> prepare() const;
    [[nodiscard]] FilePath fileOf(const DiskName &name) const;

    RuntimeFolder m_runtimeFolder;
    FilePath m_folder;
};

} // namespace Quillmere
