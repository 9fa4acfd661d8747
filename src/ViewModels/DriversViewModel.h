#pragma once

#include "Utilities/DiskDriverHelper.h"

#include <QObject>

#include <QCoro/QCoroTask>

namespace Quillmere {

/// The row that offers the disk drivers: whether they are there, and their installation.
class DriversViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool areDriversInstalled READ areDriversInstalled NOTIFY changed)
    Q_PROPERTY(bool isInstallingDrivers READ isInstallingDrivers NOTIFY changed)
    Q_PROPERTY(QString driverInstallStatus READ driverInstallStatus NOTIFY changed)

public:
    /// What comes first when an installation has ended: its outcome, or the look whether the drivers are there.
    enum class First { Outcome, Look };

    DriversViewModel(DiskDriverHelper helper, First first, QObject *parent = nullptr);

    [[nodiscard]] bool areDriversInstalled() const { return m_areDriversInstalled; }
    [[nodiscard]] bool isInstallingDrivers() const { return m_isInstallingDrivers; }
    /// In the active language. Empty before the first installation.
    [[nodiscard]] QString driverInstallStatus() const;

    /// Looks whether the drivers are there. Not looked at again until somebody asks.
    void check();
    Q_INVOKABLE void install() { runDriverInstallation(); }

    // Started and left to itself by the screen; whoever wants to know when it ends awaits it.
    QCoro::Task<> runDriverInstallation();

Q_SIGNALS:
    void changed();

private:
    void setStatus(const QString &status);

    DiskDriverHelper m_helper;
    First m_first;
    bool m_areDriversInstalled = false;
    bool m_isInstallingDrivers = false;
    QString m_status; ///< As the helper words it.
};

} // namespace Quillmere
