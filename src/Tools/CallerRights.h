#pragma once

#include "Tools/Caller.h"

#include <QtGlobal>

namespace Quillmere {

/// For as long as it lives, the calling thread may reach in the file system what the caller may reach, and nothing
/// more; what it creates is the caller's. Descriptors that were opened stay open afterwards.
/// Ends the process rather than go on with rights that are not known. Does nothing where the process is the caller's.
class CallerRights final
{
public:
    explicit CallerRights(const Caller &caller);
    ~CallerRights();
    Q_DISABLE_COPY_MOVE(CallerRights)

private:
    const uid_t m_user;
    const gid_t m_group;
    const bool m_isAnother;
    std::vector<gid_t> m_groups;
};

} // namespace Quillmere
