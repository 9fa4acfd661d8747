#include "Platform/Linux/Programs/UserEnvironment.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

namespace Quillmere {

namespace {

FilePath homeInUserDatabase(uid_t user)
{
    std::vector<char> texts(16 * 1024);
    passwd entry = {};
    passwd *found = nullptr;
    ::getpwuid_r(user, &entry, texts.data(), texts.size(), &found);
    return found && QByteArray(found->pw_dir).startsWith('/') ? FilePath(found->pw_dir) : FilePath("/");
}

} // namespace

UserEnvironment UserEnvironment::of(uid_t user, const BaseDirectories::Environment &variables)
{
    UserEnvironment environment;
    environment.user = user;
    environment.home = BaseDirectories::location(variables, "HOME", {});
    if (environment.home.isEmpty())
        environment.home = homeInUserDatabase(user).standardized();
    environment.dataHome = BaseDirectories::of(environment.home, variables).data;
    environment.temporary = BaseDirectories::location(variables, "TMPDIR", FilePath("/tmp"));
    return environment;
}

UserEnvironment UserEnvironment::current()
{
    return of(::geteuid());
}

bool UserEnvironment::hasHome() const
{
    struct stat status = {};
    return home != FilePath("/") && ::stat(home.bytes().constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace Quillmere
