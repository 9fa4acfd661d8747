#include "Tools/NameCache.h"

#include "Tools/ChildStep.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFileInfo>

#include <utility>

namespace Quillmere {

namespace {

constexpr int milliseconds = 25000;

const QString resolved = u"org.freedesktop.resolve1"_qs;

const QString noCache = u"This machine keeps no cache of names from the network: nothing to do here."_qs;
const QString noResponder = u"Neither a cache nor a finder of names runs on this machine: nothing to do here."_qs;

} // namespace

NameCache::NameCache(const QDBusConnection &systemBus, bool isRoot, ProgramFolders programs, FilePath nscdSocket)
    : m_bus(systemBus)
    , m_isRoot(isRoot)
    , m_programs(std::move(programs))
    , m_nscdSocket(std::move(nscdSocket))
{
}

QList<ToolStep> NameCache::flush() const
{
    const ToolStep step = flushResolved();
    if (step.kind == ToolStep::Kind::Done && !m_isRoot)
        return {step};
    return {step, flushNscd()};
}

ToolStep NameCache::flushResolved() const
{
    // One that does not run keeps nothing, and is not to be started for it.
    if (!m_bus.isConnected() || !m_bus.interface()->isServiceRegistered(resolved))
        return {};
    const QDBusMessage question = QDBusMessage::createMethodCall(
        resolved, u"/org/freedesktop/resolve1"_qs, u"org.freedesktop.resolve1.Manager"_qs, u"FlushCaches"_qs);
    const QDBusMessage answer = m_bus.call(question, QDBus::Block, milliseconds);
    if (answer.type() == QDBusMessage::ReplyMessage)
        return {ToolStep::Kind::Done, u"The DNS cache of systemd-resolved was flushed."_qs};
    return {ToolStep::Kind::Failed,
            u"The DNS cache of systemd-resolved was not flushed: %1"_qs.arg(answer.errorMessage())};
}

ToolStep NameCache::flushNscd() const
{
    const QString nscd = m_programs.find({u"nscd"_qs});
    if (nscd.isEmpty() || !QFileInfo::exists(m_nscdSocket.displayText()))
        return {};
    return stepOf(runChild({nscd, {u"-i"_qs, u"hosts"_qs}}), u"The host cache of nscd was flushed."_qs,
                  u"The host cache of nscd was not flushed: "_qs);
}

ToolStep NameCache::reloadDiscovery() const
{
    const QString avahi = m_programs.find({u"avahi-daemon"_qs});
    if (avahi.isEmpty())
        return {};
    const Result<ChildEnd> running = runChild({avahi, {u"--check"_qs}});
    if (running && running.value().status != 0)
        return {};
    return stepOf(runChild({avahi, {u"--reload"_qs}}), u"Avahi was reloaded."_qs, u"Avahi was not reloaded: "_qs);
}

ToolEnd NameCache::restart() const
{
    return endOf(flush() + QList<ToolStep>{reloadDiscovery()}, noResponder);
}

ToolEnd runDscacheutil(const QStringList &arguments, const NameCache &cache)
{
    if (arguments != QStringList{u"-flushcache"_qs})
        return {ToolEnd::wrongUse, u"usage: dscacheutil -flushcache"_qs};
    return endOf(cache.flush(), noCache);
}

ToolEnd runKillall(const QStringList &arguments, const NameCache &cache)
{
    if (arguments != QStringList{u"-HUP"_qs, u"mDNSResponder"_qs})
        return {ToolEnd::wrongUse, u"usage: killall -HUP mDNSResponder"_qs};
    if (!cache.isRoot())
        return {ToolEnd::needsRoot, u"killall: Only root can use this."_qs};
    return cache.restart();
}

} // namespace Quillmere
