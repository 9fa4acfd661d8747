#pragma once

#include "Tools/Disks/DiskIdentity.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

namespace Quillmere {

/// What the disks were that this user has been shown, from one call of the program to the next. It lasts as long as the
/// session. Names never pass to other disks, so that a loss of it makes names unknown and never wrong.
class ListedDisks
{
public:
    /// @p runtimeFolder the user's folder for what need not outlive the session. In one that is empty, relative,
    /// another user's, or one that others may write into, nothing is kept.
    explicit ListedDisks(FilePath runtimeFolder);
    /// That of the user we run as.
    [[nodiscard]] static ListedDisks ofThisUser();

    /// Whoever looks meanwhile finds what was kept before, or this.
    [[nodiscard]] Result<void> keep(const DiskIdentity &identity) const;
    /// Fails with NotFound for a name that was not shown, and with Malformed where something else was written there.
    [[nodiscard]] Result<DiskIdentity> find(const DiskName &name) const;

private:
    [[nodiscard]] FilePath fileOf(const DiskName &name) const;

    FilePath m_runtimeFolder;
    FilePath m_folder;
};

} // namespace Quillmere
