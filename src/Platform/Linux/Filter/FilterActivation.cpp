#include "Platform/Linux/Filter/FilterActivation.h"

#include "Platform/Linux/System/SystemdNames.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QSet>

#include <limits>

namespace Quillmere {

namespace {

// A person at a password dialog takes the time that it takes.
constexpr int withoutLimit = std::numeric_limits<int>::max();

/// The user may allow it, but has not: the dialog was closed, the password was wrong, or nobody could be asked.
bool isWantOfApproval(const QString &error)
{
    static const QSet<QString> errors = {
        u"org.freedesktop.DBus.Error.AccessDenied"_qs,
        u"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired"_qs,
        u"org.freedesktop.PolicyKit1.Error.Cancelled"_qs,
        u"org.freedesktop.PolicyKit1.Error.NotAuthorized"_qs,
    };
    return errors.contains(error);
}

QDBusMessage activeQuestion()
{
    QDBusMessage question = QDBusMessage::createMethodCall(QLatin1String(FilterActivation::filterService),
                                                           QLatin1String(FilterActivation::filterObject),
                                                           u"org.freedesktop.DBus.Properties"_qs, u"Get"_qs);
    question << QString::fromLatin1(FilterActivation::filterInterface) << u"Active"_qs;
    // Being asked must not start it: that is for the user to allow.
    question.setAutoStartService(false);
    return question;
}

} // namespace

FilterActivation::FilterActivation(const QDBusConnection &bus, SystemExtensionRequestDelegate &delegate,
                                   QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_delegate(delegate)
{
    if (!m_bus.isConnected()) {
        QMetaObject::invokeMethod(
            this, [this] { fail(u"The system's message bus cannot be reached."_qs); }, Qt::QueuedConnection);
        return;
    }
    // QtDBus registers the type with the first message that holds one; the connection below is made before that.
    qRegisterMetaType<QDBusObjectPath>();
    m_bus.connect(SystemdNames::service, SystemdNames::object, SystemdNames::manager, u"JobRemoved"_qs, this,
                  SLOT(takeEndOfJob(uint, QDBusObjectPath, QString, QString)));
    askFilter(false);
}

void FilterActivation::askFilter(bool wasStarted)
{
    auto *asking = new QDBusPendingCallWatcher(m_bus.asyncCall(activeQuestion()), this);
    connect(asking, &QDBusPendingCallWatcher::finished, this, [this, asking, wasStarted] {
        const QDBusPendingReply<QDBusVariant> answer = *asking;
        if (answer.isValid() && answer.value().variant().toBool())
            finish();
        else if (!wasStarted)
            startFilter();
        else
            fail(answer.isError() ? answer.error().message() : u"The traffic filter was started but is not active."_qs);
    });
}

void FilterActivation::startFilter()
{
    QDBusMessage order = QDBusMessage::createMethodCall(SystemdNames::service, SystemdNames::object,
                                                        SystemdNames::manager, u"StartUnit"_qs);
    order << QString::fromLatin1(filterUnit) << u"replace"_qs;
    order.setInteractiveAuthorizationAllowed(true);
    auto *ordering = new QDBusPendingCallWatcher(m_bus.asyncCall(order, withoutLimit), this);
    connect(ordering, &QDBusPendingCallWatcher::finished, this, [this, ordering] {
        const QDBusPendingReply<QDBusObjectPath> answer = *ordering;
        if (answer.isError()) {
            takeRefusal(answer.error());
            return;
        }
        m_job = answer.value().path();
        finishJob();
    });
}

void FilterActivation::takeRefusal(const QDBusError &error)
{
    if (!isWantOfApproval(error.name())) {
        fail(error.message());
        return;
    }
    m_delegate.requestNeedsUserApproval();
    deleteLater();
}

void FilterActivation::takeEndOfJob(uint, const QDBusObjectPath &job, const QString &unit, const QString &result)
{
    // Only what may be asked for is kept; a path names its job by itself.
    if (unit != QLatin1String(filterUnit))
        return;
    m_endedJobs.insert(job.path(), result);
    finishJob();
}

void FilterActivation::finishJob()
{
    const auto ended = m_endedJobs.constFind(m_job);
    if (ended == m_endedJobs.constEnd())
        return;
    const QString result = *ended;
    m_job.clear();
    m_endedJobs.clear();
    // systemd's D-Bus interface: "skipped" is a unit whose conditions do not hold, which the filter can tell itself.
    if (result == u"done"_qs || result == u"skipped"_qs)
        askFilter(true);
    else
        fail(u"The job that starts %1 ended with the result \"%2\"."_qs.arg(QLatin1String(filterUnit), result));
}

void FilterActivation::finish()
{
    m_delegate.requestDidFinish(ActivationFinish::Completed);
    deleteLater();
}

void FilterActivation::fail(const QString &description)
{
    m_delegate.requestDidFail(description);
    deleteLater();
}

} // namespace Quillmere
