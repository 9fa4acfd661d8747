#include "Platform/Linux/Removal/CopiedEntries.h"

namespace Quillmere {

void CopiedEntries::add(const struct stat &status)
{
    m_states.insert({status.st_dev, status.st_ino}, {status.st_size, status.st_mtim});
}

bool CopiedEntries::contains(const struct stat &status) const
{
    const auto found = m_states.constFind({status.st_dev, status.st_ino});
    return found != m_states.cend() && found->size == status.st_size && found->modified.tv_sec == status.st_mtim.tv_sec
        && found->modified.tv_nsec == status.st_mtim.tv_nsec;
}

} // namespace Quillmere
