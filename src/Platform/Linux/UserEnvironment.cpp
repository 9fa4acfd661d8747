#include "Platform/Linux/UserEnvironment.h"

#include <pwd.h>
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

UserEnvironment UserEnvironment::of(uid_t user, const Variables &variables)
{
    const auto location = [&](const char *name, const FilePath &usual) {
        const QByteArray value = variables(name);
        return value.startsWith('/') ? FilePath(value).standardized() : usual;
    };
    UserEnvironment environment;
    environment.user = user;
    environment.home = location("HOME", {});
    if (environment.home.isEmpty())
        environment.home = homeInUserDatabase(user).standardized();
    environment.dataHome = location("XDG_DATA_HOME", environment.home.appending(".local/share"));
    environment.temporary = location("TMPDIR", FilePath("/tmp"));
    return environment;
}

UserEnvironment UserEnvironment::current()
{
    return of(::geteuid());
}

} // namespace Quillmere
