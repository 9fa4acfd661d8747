#pragma once

#include "Platform/StartupEntries.h"

#include <QDBusConnection>

#include <chrono>

namespace Quillmere {

/// The units that systemd starts for this user, asked of the user's own manager on the session bus, where there is one.
/// A manager that looks after another home than this is left alone. Any thread.
class UserUnits
{
public:
    /// @p config is the user's folder for settings.
    UserUnits(FilePath home, const FilePath &config, const QDBusConnection &sessionBus,
              std::chrono::milliseconds patience = std::chrono::seconds(3));

    /// First those of the home, then those of the system, each by name. Left out is what nobody enables by itself:
    /// templates, units without a place to be installed to, those that are masked, and those that are made while
    /// running.
    [[nodiscard]] QList<StartupEntry> entries() const;
    [[nodiscard]] static bool owns(const FilePath &path);
    [[nodiscard]] Result<void> setEnabled(const FilePath &path, bool enabled) const;

private:
    [[nodiscard]] bool hasManager() const;
    [[nodiscard]] QDBusMessage ask(const QString &interface, const QString &method,
                                   const QVariantList &arguments) const;

    FilePath m_home;
    FilePath m_ownFolder; ///< Where the user's own units lie.
    const QDBusConnection m_sessionBus;
    std::chrono::milliseconds m_patience;
};

} // namespace Quillmere
