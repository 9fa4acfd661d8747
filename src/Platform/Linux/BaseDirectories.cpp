#include "Platform/Linux/BaseDirectories.h"

namespace Quillmere {

BaseDirectories BaseDirectories::of(const FilePath &home, const Environment &environment)
{
    const auto folder = [&](const char *name, const char *usual) {
        return location(environment, name, home.appending(usual).standardized());
    };
    return {
        folder("XDG_CACHE_HOME", ".cache"),
        folder("XDG_CONFIG_HOME", ".config"),
        folder("XDG_DATA_HOME", ".local/share"),
        folder("XDG_STATE_HOME", ".local/state"),
    };
}

FilePath BaseDirectories::location(const Environment &environment, const char *name, const FilePath &usual)
{
    const QByteArray value = environment(name);
    return value.startsWith('/') ? FilePath(value).standardized() : usual;
}

} // namespace Quillmere
