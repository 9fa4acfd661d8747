#include "Tools/Caller.h"

#include <array>
#include <cstdlib>

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr size_t longestRecord = 16384;
constexpr int mostGroups = 65536;

std::vector<gid_t> groupsOf(const char *name, gid_t group)
{
    int count = 64;
    std::vector<gid_t> groups(static_cast<size_t>(count));
    while (::getgrouplist(name, group, groups.data(), &count) < 0 && count <= mostGroups)
        groups.resize(static_cast<size_t>(count));
    groups.resize(static_cast<size_t>(std::min(count, mostGroups)));
    return groups;
}

} // namespace

Result<Caller> Caller::ofThisProcess()
{
    const QByteArray raisedFor = qgetenv("PKEXEC_UID");
    if (raisedFor.isEmpty())
        return ofUser(::getuid());
    bool isNumber = false;
    const uid_t user = raisedFor.toUInt(&isNumber);
    // setresuid(2) takes the highest number for "leave it as it is".
    if (!isNumber || user == static_cast<uid_t>(-1))
        return Failure{Failure::Kind::Malformed, {}, u"Nobody can tell whom this works for."_qs};
    return ofUser(user);
}

Result<Caller> Caller::ofUser(uid_t user)
{
    passwd record = {};
    passwd *found = nullptr;
    std::array<char, longestRecord> texts;
    if (::getpwuid_r(user, &record, texts.data(), texts.size(), &found) != 0 || !found)
        return Failure{Failure::Kind::NotFound, {}, u"User %1 has no account here."_qs.arg(user)};
    return Caller{user, found->pw_gid, groupsOf(found->pw_name, found->pw_gid), found->pw_name,
                  FilePath(QByteArray(found->pw_dir))};
}

} // namespace Quillmere
