#pragma once

#include "Platform/Linux/Startup/AutostartEntries.h"
#include "Platform/Linux/Startup/UserUnits.h"

namespace Quillmere {

/// What the desktop starts at login, and behind it the units of the user's systemd.
class LinuxStartupEntries final : public StartupEntries
{
public:
    explicit LinuxStartupEntries(const std::shared_ptr<const FileManager> &files,
                                 const BaseDirectories::Environment &environment = qgetenv,
                                 const QDBusConnection &sessionBus = QDBusConnection::sessionBus(),
                                 const QList<QByteArray> &languages = languagesOfDesktop(),
                                 const QList<FilePath> &unitFolders = systemUnitFolders());

    [[nodiscard]] QList<StartupEntry> entries() const override;
    [[nodiscard]] bool owns(const FilePath &path) const override;
    [[nodiscard]] Result<void> setEnabled(const FilePath &path, bool enabled) const override;

    /// As desktop entries call them, the dearest first.
    [[nodiscard]] static QList<QByteArray> languagesOfDesktop();
    /// Where the system keeps the units of all users, the most important first.
    [[nodiscard]] static QList<FilePath> systemUnitFolders();

private:
    AutostartEntries m_autostart;
    UserUnits m_units;
};

} // namespace Quillmere
