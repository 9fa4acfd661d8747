#include "Tools/LidInhibitors.h"

#include <QDBusArgument>
#include <QDBusMessage>

#include <algorithm>

namespace Quillmere {

namespace {

struct Inhibitor
{
    QString what;
    QString who;
    QString why;
    QString mode;
    uint user = 0;
    uint process = 0;
};

const QDBusArgument &operator>>(const QDBusArgument &argument, Inhibitor &inhibitor)
{
    argument.beginStructure();
    argument >> inhibitor.what >> inhibitor.who >> inhibitor.why >> inhibitor.mode >> inhibitor.user
        >> inhibitor.process;
    argument.endStructure();
    return argument;
}

// logind gives the same things back in an order of its own.
QStringList things(const QString &what)
{
    QStringList list = what.split(u':');
    list.sort();
    return list;
}

bool isOurs(const Inhibitor &inhibitor)
{
    return inhibitor.who == LidInhibitors::who() && inhibitor.why == LidInhibitors::why()
        && inhibitor.mode == LidInhibitors::mode() && things(inhibitor.what) == things(LidInhibitors::what());
}

Failure::Kind kindOf(const QDBusMessage &error)
{
    if (error.errorName() == u"org.freedesktop.DBus.Error.AccessDenied")
        return Failure::Kind::NoPermission;
    return Failure::Kind::NotSupported;
}

} // namespace

LidInhibitors::LidInhibitors(const QDBusConnection &systemBus, int milliseconds)
    : m_bus(systemBus)
    , m_milliseconds(milliseconds)
{
}

QString LidInhibitors::what()
{
    return u"sleep:handle-lid-switch"_qs;
}

QString LidInhibitors::who()
{
    return u"Quillmere"_qs;
}

QString LidInhibitors::why()
{
    return u"Keep Awake Mode"_qs;
}

QString LidInhibitors::mode()
{
    return u"block"_qs;
}

Result<bool> LidInhibitors::isListed() const
{
    const Result<QVariant> answer = call(u"ListInhibitors"_qs, {});
    if (!answer)
        return answer.failure();
    QList<Inhibitor> list;
    answer.value().value<QDBusArgument>() >> list;
    return std::ranges::any_of(list, isOurs);
}

Result<QDBusUnixFileDescriptor> LidInhibitors::take() const
{
    const Result<QVariant> answer = call(u"Inhibit"_qs, {what(), who(), why(), mode()});
    if (!answer)
        return answer.failure();
    return answer.value().value<QDBusUnixFileDescriptor>();
}

Result<QVariant> LidInhibitors::call(const QString &method, const QVariantList &arguments) const
{
    if (!m_bus.isConnected())
        return Failure{Failure::Kind::NotSupported, {}, u"There is no system bus."_qs};
    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_qs, u"/org/freedesktop/login1"_qs,
                                                           u"org.freedesktop.login1.Manager"_qs, method);
    question.setArguments(arguments);
    const QDBusMessage answer = m_bus.call(question, QDBus::Block, m_milliseconds);
    if (answer.type() != QDBusMessage::ReplyMessage)
        return Failure{kindOf(answer), {}, answer.errorMessage()};
    if (answer.arguments().size() != 1)
        return Failure{Failure::Kind::Malformed, {}, u"logind answered something else."_qs};
    return answer.arguments().first();
}

} // namespace Quillmere
