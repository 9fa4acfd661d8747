#include "Fakes/PretendDisks.h"

#include <algorithm>

namespace Quillmere {

void PretendDisks::plugIn(const PretendVolume &volume)
{
    const std::scoped_lock lock(m_mutex);
    m_volumes.append(volume);
}

void PretendDisks::pullOut(const FilePath &mountPoint)
{
    const std::scoped_lock lock(m_mutex);
    m_volumes.removeIf([&](const PretendVolume &volume) { return volume.mountPoint == mountPoint; });
}

QList<PretendVolume> PretendDisks::volumes() const
{
    const std::scoped_lock lock(m_mutex);
    return m_volumes;
}

QList<FilePath> PretendDisks::mountPoints() const
{
    QList<FilePath> mounted;
    for (const PretendVolume &volume : volumes()) {
        if (volume.isMounted)
            mounted.append(volume.mountPoint);
    }
    return mounted;
}

std::optional<PretendVolume> PretendDisks::mountedAt(const FilePath &mountPoint) const
{
    const std::scoped_lock lock(m_mutex);
    const auto found = std::ranges::find_if(
        m_volumes, [&](const PretendVolume &volume) { return volume.isMounted && volume.mountPoint == mountPoint; });
    return found == m_volumes.end() ? std::nullopt : std::optional(*found);
}

} // namespace Quillmere
