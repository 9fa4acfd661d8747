#pragma once

#include "Tools/ToolEnd.h"
#include "Values/Result.h"

#include <QDBusConnection>

namespace Quillmere {

/// Installs the driver for NTFS disks from the system's own sources of packages.
class DriverInstallation final
{
public:
    /// @p driver the program that the package brings.
    explicit DriverInstallation(const QDBusConnection &systemBus, QString driver = u"/usr/bin/ntfs-3g"_qs);

    /// Needs root, whom PackageKit does not ask.
    [[nodiscard]] ToolEnd run() const;

private:
    [[nodiscard]] bool isInstalled() const;
    [[nodiscard]] Result<QString> findPackage() const;
    [[nodiscard]] Result<void> install(const QString &package) const;

    QDBusConnection m_bus;
    QString m_driver;
};

} // namespace Quillmere
