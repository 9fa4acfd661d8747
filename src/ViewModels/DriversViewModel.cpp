#include "ViewModels/DriversViewModel.h"

#include "Utilities/LocalizationManager.h"

#include <QHash>
#include <QPointer>

namespace Quillmere {

namespace {

/// A line of the helper that is not among these stands as it is.
QString localizedDriverStatus(const QString &status)
{
    static const QHash<QString, QString> keys = {
        {u"starting"_qs, u"drivers.starting"_qs},
        {u"Requesting administrator privileges..."_qs, u"drivers.requesting"_qs},
        {u"Installing drivers in background..."_qs, u"drivers.installing"_qs},
        {u"success"_qs, u"drivers.success"_qs},
        {u"failure"_qs, u"drivers.failure"_qs},
    };
    const auto key = keys.constFind(status);
    return key == keys.constEnd() ? status : localized(*key);
}

} // namespace

DriversViewModel::DriversViewModel(DiskDriverHelper helper, First first, QObject *parent)
    : QObject(parent)
    , m_helper(std::move(helper))
    , m_first(first)
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &DriversViewModel::changed);
}

QString DriversViewModel::driverInstallStatus() const
{
    return localizedDriverStatus(m_status);
}

void DriversViewModel::check()
{
    m_areDriversInstalled = m_helper.checkDriversInstalled();
    Q_EMIT changed();
}

QCoro::Task<> DriversViewModel::runDriverInstallation()
{
    if (m_isInstallingDrivers)
        co_return;
    const QPointer self(this);
    m_isInstallingDrivers = true;
    setStatus(u"starting"_qs);
    const auto showStatus = [self](const QString &status) {
        if (self)
            self->setStatus(status);
    };
    QCoro::Task<bool> installing = m_helper.installDrivers(showStatus);
    const bool isInstalled = co_await installing;
    if (!self)
        co_return;
    m_isInstallingDrivers = false;
    if (m_first == First::Look)
        check();
    setStatus(isInstalled ? u"success"_qs : u"failure"_qs);
    if (m_first == First::Outcome)
        check();
}

void DriversViewModel::setStatus(const QString &status)
{
    m_status = status;
    Q_EMIT changed();
}

} // namespace Quillmere
