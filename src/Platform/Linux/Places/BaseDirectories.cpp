#include "Platform/Linux/Places/BaseDirectories.h"

namespace Quillmere {

namespace {

/// Without those that are not absolute, and each once.
QList<FilePath> foldersIn(const QByteArray &variable, const QByteArray &usual)
{
    QList<FilePath> folders;
    for (const QByteArray &each : (variable.isEmpty() ? usual : variable).split(':')) {
        const FilePath folder = FilePath(each).standardized();
        if (each.startsWith('/') && !folders.contains(folder))
            folders.append(folder);
    }
    return folders;
}

} // namespace

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

QList<FilePath> BaseDirectories::systemConfig(const Environment &environment)
{
    return foldersIn(environment("XDG_CONFIG_DIRS"), "/etc/xdg");
}

QList<FilePath> BaseDirectories::systemData(const Environment &environment)
{
    return foldersIn(environment("XDG_DATA_DIRS"), "/usr/local/share:/usr/share");
}

FilePath BaseDirectories::location(const Environment &environment, const char *name, const FilePath &usual)
{
    const QByteArray value = environment(name);
    return value.startsWith('/') ? FilePath(value).standardized() : usual;
}

} // namespace Quillmere
