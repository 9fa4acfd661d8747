#pragma once

#include "Platform/Linux/Startup/UnitFiles.h"

#include <QDBusConnection>

#include <chrono>
#include <optional>

namespace Quillmere {

/// The units that systemd starts for this user, asked of the user's own manager on the session bus, where there is one.
/// A manager that looks after another home than this is left alone. Where none answers, what lies on disk is listed and
/// cannot be switched. Any thread.
class UserUnits
{
public:
    UserUnits(UnitFiles files, FilePath home, const QDBusConnection &sessionBus,
              std::chrono::milliseconds patience = std::chrono::seconds(3));

    /// First those of the home, then those of the system, each by name. Left out is what nobody enables by itself:
    /// templates, units without a place to be installed to, those that somebody else than the user masks, and those
    /// that are made while running. Mends first what a switching that was killed has left undone.
    [[nodiscard]] QList<StartupEntry> entries() const;
    [[nodiscard]] static bool owns(const FilePath &path);
    /// What can be switched off can be switched on again: a link of the user's own in the place of a unit stays, one of
    /// the system's that no enabling would bring back is masked for this user, as is one that is enabled for all, and
    /// the user's own without such a way is refused, and so is one that would no longer be listed once it is masked.
    /// Fails also where the manager leaves it as it was.
    [[nodiscard]] Result<void> setEnabled(const FilePath &path, bool enabled) const;

private:
    [[nodiscard]] std::optional<StartupEntry> entryOf(const FilePath &path, const QString &state) const;
    [[nodiscard]] Result<void> enable(const FilePath &path) const;
    [[nodiscard]] Result<void> disable(const FilePath &path) const;
    [[nodiscard]] Result<void> mask(const FilePath &path) const;
    [[nodiscard]] Result<void> change(const QString &method, const FilePath &path, const QVariantList &how) const;
    /// Fails for one that the manager does not know.
    [[nodiscard]] Result<QString> stateOf(const FilePath &path) const;
    [[nodiscard]] bool isOn(const FilePath &path) const { return stateOf(path).valueOr({}) == u"enabled"; }
    [[nodiscard]] bool hasManager() const;
    [[nodiscard]] QDBusMessage ask(const QString &interface, const QString &method,
                                   const QVariantList &arguments) const;

    UnitFiles m_files;
    FilePath m_home;
    const QDBusConnection m_sessionBus;
    std::chrono::milliseconds m_patience;
};

} // namespace Quillmere
