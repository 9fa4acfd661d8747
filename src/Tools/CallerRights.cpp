#include "Tools/CallerRights.h"

#include <cstdlib>

#include <sys/fsuid.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Quillmere {

namespace {

// The C library's own calls change every thread of the process; the kernel's change the calling one.
void setGroupsOfThread(const std::vector<gid_t> &groups)
{
    if (::syscall(SYS_setgroups, groups.size(), groups.data()) != 0)
        std::abort();
}

// setfsuid(2): "there is no direct way of determining whether the call has failed" but to ask again.
void setFileUser(uid_t user)
{
    ::setfsuid(user);
    if (static_cast<uid_t>(::setfsuid(static_cast<uid_t>(-1))) != user)
        std::abort();
}

void setFileGroup(gid_t group)
{
    ::setfsgid(group);
    if (static_cast<gid_t>(::setfsgid(static_cast<gid_t>(-1))) != group)
        std::abort();
}

std::vector<gid_t> groupsOfThread()
{
    const int count = ::getgroups(0, nullptr);
    std::vector<gid_t> groups(static_cast<size_t>(std::max(count, 0)));
    if (::getgroups(count, groups.data()) != count)
        std::abort();
    return groups;
}

} // namespace

CallerRights::CallerRights(const Caller &caller)
    : m_user(::geteuid())
    , m_group(::getegid())
    , m_isAnother(caller.user != m_user)
{
    if (!m_isAnother)
        return;
    m_groups = groupsOfThread();
    setGroupsOfThread(caller.groups);
    setFileGroup(caller.group);
    setFileUser(caller.user);
}

CallerRights::~CallerRights()
{
    if (!m_isAnother)
        return;
    setFileUser(m_user);
    setFileGroup(m_group);
    setGroupsOfThread(m_groups);
}

} // namespace Quillmere
