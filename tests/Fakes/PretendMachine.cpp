#include "Fakes/PretendMachine.h"

namespace Quillmere {

void PretendDesktopAppearance::set(ColorScheme scheme, bool reducedMotion)
{
    m_scheme = scheme;
    m_reducedMotion = reducedMotion;
    if (m_changed)
        m_changed();
}

std::optional<QString> PretendPlaces::reasonToKeep(const FilePath &item) const
{
    const auto found = m_kept.constFind(item);
    return found == m_kept.constEnd() ? std::nullopt : std::optional(*found);
}

} // namespace Quillmere
