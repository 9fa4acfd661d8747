#include "Tools/Administrator.h"

#include "Tools/Purge.h"
#include "Tools/SleepSetting.h"

#include <utility>

namespace Quillmere {

namespace {

constexpr QLatin1String filterPolicy("filter-policy");

QString usage()
{
    return DiskAdministrator::usage()
        + u"\n       quillmere-admin keep-awake on|off\n"
          "       quillmere-admin purge\n"
          "       quillmere-admin reset-index\n"
          "       quillmere-admin flush-names\n"
          "       quillmere-admin install-bundle BUNDLE\n"
          "       quillmere-admin install-drivers\n"
          "       quillmere-admin filter-policy <RECORD"_qs;
}

// pkexec(1): 126 the dialog was dismissed, 127 not authorized.
bool isSaidByElevation(int status)
{
    return status == 126 || status == 127;
}

} // namespace

AdministratorMeans AdministratorMeans::ofThisMachine(const QString &programs, const Result<Caller> &caller)
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    return {KeepAwake::ofThisMachine(programs),
            dropCachesFile(),
            SearchIndex(),
            NameCache(bus, true),
            BundleInstallation(),
            DriverInstallation(bus),
            DiskAdministrator(DiskTools::ofThisMachine(caller)),
            FilterPolicy()};
}

Administrator::Administrator(AdministratorMeans means, Result<Caller> caller, bool isRoot)
    : m_means(std::move(means))
    , m_caller(std::move(caller))
    , m_isRoot(isRoot)
{
}

bool Administrator::readsInput(QLatin1String verb)
{
    return verb == filterPolicy;
}

ToolEnd Administrator::carryOut(const QStringList &words) const
{
    if (!m_isRoot)
        return {ToolEnd::needsRoot, u"quillmere-admin: Only root can use this."_qs};
    if (words.isEmpty())
        return {ToolEnd::wrongUse, usage()};
    ToolEnd end = act(words.first(), words.sliced(1));
    if (isSaidByElevation(end.status))
        end.status = 1;
    return end;
}

ToolEnd Administrator::act(const QString &verb, const QStringList &arguments) const
{
    if (verb == u"install-bundle")
        return m_means.bundles.run(arguments, m_caller);
    if (verb == u"keep-awake" && arguments == QStringList{u"on"_qs})
        return setSleepDisabled(m_means.keepAwake, true);
    if (verb == u"keep-awake" && arguments == QStringList{u"off"_qs})
        return setSleepDisabled(m_means.keepAwake, false);
    if (const auto end = m_means.disks.carryOut(verb, arguments))
        return *end;
    if (!arguments.isEmpty())
        return {ToolEnd::wrongUse, usage()};
    if (verb == u"purge")
        return runPurge({}, m_means.dropCaches);
    if (verb == u"reset-index")
        return m_means.index.run(m_caller);
    if (verb == u"flush-names")
        return m_means.names.restart();
    if (verb == u"install-drivers")
        return m_means.drivers.run();
    if (verb == filterPolicy)
        return m_means.policy.run({});
    return {ToolEnd::wrongUse, usage()};
}

} // namespace Quillmere
