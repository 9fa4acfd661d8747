#pragma once

#include "Platform/Linux/Disks/Mount.h"
#include "Platform/Linux/Disks/VolumeCapacities.h"

namespace Quillmere {

/// Keeps whoever looks at files from waiting for a volume that does not answer. Volumes that always answer, and what
/// the whole home depends on, are known by the table of mounts and not asked. Safe to call from any thread.
class VolumeGuard
{
public:
    /// A server may have to be mounted first, or a disk to be set in motion.
    static constexpr std::chrono::milliseconds usualPatience = std::chrono::seconds(3);

    explicit VolumeGuard(const FilePath &home, std::chrono::milliseconds patience = usualPatience);

    /// FileManager::isAnswering().
    [[nodiscard]] bool isAnswering(const FilePath &path) const;
    /// The same of what stands at @p path itself: a link there is not followed.
    [[nodiscard]] bool isItemAnswering(const FilePath &path) const;
    /// Whether what is mounted at @p mountPoint may be looked into. What mounts at the first touch is not touched.
    [[nodiscard]] bool mayEnter(const FilePath &mountPoint) const;
    /// As resolveLinks(), with nothing asked of a volume that does not answer.
    [[nodiscard]] std::optional<FilePath> resolve(const FilePath &path) const;
    /// Where the item at @p path itself stands, links above it followed as by resolved().
    [[nodiscard]] FilePath placeOf(const FilePath &path) const;
    /// The location of what @p path leads to; behind a volume that does not answer, and where nothing is, as written.
    [[nodiscard]] FilePath resolved(const FilePath &path) const;
    /// As VolumeCapacities::ask().
    [[nodiscard]] Result<VolumeCapacity> capacity(const FilePath &path, CapacityKeys keys) const;

private:
    enum class FinalLink { Follow, Leave };

    /// Asking it waits for no server or program, or for the one that the whole home depends on.
    [[nodiscard]] bool isRelied(const MountEntry &mount) const;
    /// No more than relied volumes stand above @p path or at it, and no link: most places are known so at one look.
    [[nodiscard]] bool isPlainlyRelied(const FilePath &path, FinalLink link) const;
    [[nodiscard]] bool isHolderAnswering(const FilePath &actual) const;
    [[nodiscard]] bool answers(const FilePath &path) const;

    FilePath m_home; ///< With its links followed.
    std::chrono::milliseconds m_patience;
    VolumeCapacities m_capacities;
};

} // namespace Quillmere
