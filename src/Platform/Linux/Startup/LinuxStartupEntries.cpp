#include "Platform/Linux/Startup/LinuxStartupEntries.h"

#include <glib.h>

namespace Quillmere {

LinuxStartupEntries::LinuxStartupEntries(const std::shared_ptr<const FileManager> &files,
                                         const BaseDirectories::Environment &environment,
                                         const QDBusConnection &sessionBus, const QList<QByteArray> &languages,
                                         const QList<FilePath> &unitFolders)
    : m_autostart(files, environment, languages)
    , m_units({files, BaseDirectories::of(files->homeDirectory(), environment).config.appending("systemd/user"),
               unitFolders},
              files->homeDirectory(), sessionBus)
{
}

QList<StartupEntry> LinuxStartupEntries::entries() const
{
    return m_autostart.entries() + m_units.entries();
}

bool LinuxStartupEntries::owns(const FilePath &path) const
{
    return m_autostart.owns(path) || UserUnits::owns(path);
}

Result<void> LinuxStartupEntries::setEnabled(const FilePath &path, bool enabled) const
{
    return m_autostart.owns(path) ? m_autostart.setEnabled(path, enabled) : m_units.setEnabled(path, enabled);
}

QList<QByteArray> LinuxStartupEntries::languagesOfDesktop()
{
    QList<QByteArray> languages;
    for (const char *const *name = g_get_language_names(); *name; ++name)
        languages.append(*name);
    return languages;
}

QList<FilePath> LinuxStartupEntries::systemUnitFolders()
{
    return {FilePath("/etc/systemd/user"), FilePath("/usr/local/lib/systemd/user"), FilePath("/usr/lib/systemd/user")};
}

} // namespace Quillmere
