#pragma once

#include "Platform/SystemExtensionManager.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QHash>
#include <QObject>

namespace Quillmere {

/// One request to have the traffic filter running and filtering.
///
/// The filter is a program of the system's, started by its unit `quillmere-filter.service`. On the system bus it is
/// `com.veltrane.quillmere.Filter`; its object `/com/veltrane/quillmere/Filter` has the interface
/// `com.veltrane.quillmere.Filter` with the Boolean property `Active`: it filters by its policy now.
///
/// The filter is asked first. Where it does not answer that it is active, the system's manager of services is asked to
/// start it, which may raise a password dialog, and then the filter is asked once more.
class FilterActivation final : public QObject
{
    Q_OBJECT

public:
    static constexpr auto filterService = "com.veltrane.quillmere.Filter";
    static constexpr auto filterObject = "/com/veltrane/quillmere/Filter";
    static constexpr auto filterInterface = "com.veltrane.quillmere.Filter";
    static constexpr auto filterUnit = "quillmere-filter.service";

    /// Answers @p delegate once, later, and deletes itself.
    FilterActivation(const QDBusConnection &bus, SystemExtensionRequestDelegate &delegate, QObject *parent);

private Q_SLOTS:
    void takeEndOfJob(uint number, const QDBusObjectPath &job, const QString &unit, const QString &result);

private:
    void askFilter(bool wasStarted);
    void startFilter();
    void takeRefusal(const QDBusError &error);
    void finishJob();
    void finish();
    void fail(const QString &description);

    QDBusConnection m_bus;
    SystemExtensionRequestDelegate &m_delegate;
    QString m_job; ///< Path of the job that starts the filter; empty until there is one.
    QHash<QString, QString> m_endedJobs; ///< Results by path: a job may end before its path is known here.
};

} // namespace Quillmere
