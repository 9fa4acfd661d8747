#pragma once

#include "Tools/Disks/DiskCatalogue.h"
#include "Tools/Disks/DiskTools.h"

namespace Quillmere {

/// A disk or a volume that is to be erased, seen to be the one that the user was shown, and not one that the system
/// needs. While it lives the kernel gives its name and its number to no other. Failures say in whole sentences why not.
class ChosenDisk
{
public:
    /// Whatever anybody has confirmed, what carries the system is refused with Protected.
    [[nodiscard]] static Result<ChosenDisk> choose(const DiskTools &tools, const DiskIdentity &identity);

    [[nodiscard]] const DiskIdentity &identity() const { return m_identity; }
    /// As it was when it was chosen.
    [[nodiscard]] const DiskBlock &block() const { return m_block; }
    [[nodiscard]] QString name() const { return m_identity.name.text(); }

    /// Unmounts and locks all that is on it. Nothing that is in use is forced; then it fails with Busy.
    [[nodiscard]] Result<void> release(const DiskTools &tools) const;
    /// Opens it for writing, and sees once more that it is the one.
    [[nodiscard]] Result<std::unique_ptr<OpenDevice>> openAlone(const DiskTools &tools) const;
    /// Fails when it is another by now, or none.
    [[nodiscard]] Result<void> seeThatItIsThis(const OpenDevice &device) const;
    [[nodiscard]] Result<void> seeThatItIsStillThis() const { return seeThatItIsThis(*m_held); }

private:
    ChosenDisk(DiskIdentity identity, DiskBlock block, std::unique_ptr<OpenDevice> held);

    DiskIdentity m_identity;
    DiskBlock m_block;
    std::unique_ptr<OpenDevice> m_held;
};

} // namespace Quillmere
