#include "Tools/Administrator.h"

#include "Tools/Purge.h"
#include "Tools/SleepSetting.h"

#include <utility>

namespace Quillmere {

namespace {

const QString usage = u"usage: quillmere-admin keep-awake on|off\n"
                      "       quillmere-admin purge"_qs;

// pkexec(1): 126 the dialog was dismissed, 127 not authorized.
bool isSaidByElevation(int status)
{
    return status == 126 || status == 127;
}

} // namespace

Administrator::Administrator(KeepAwake keepAwake, FilePath dropCaches, DiskAdministrator disks, bool isRoot)
    : m_keepAwake(std::move(keepAwake))
    , m_dropCaches(std::move(dropCaches))
    , m_disks(std::move(disks))
    , m_isRoot(isRoot)
{
}

ToolEnd Administrator::carryOut(const QStringList &words) const
{
    if (!m_isRoot)
        return {ToolEnd::needsRoot, u"quillmere-admin: Only root can use this."_qs};
    if (words.isEmpty())
        return {ToolEnd::wrongUse, usage};
    ToolEnd end = act(words.first(), words.sliced(1));
    if (isSaidByElevation(end.status))
        end.status = 1;
    return end;
}

ToolEnd Administrator::act(const QString &verb, const QStringList &arguments) const
{
    if (verb == u"keep-awake" && arguments == QStringList{u"on"_qs})
        return setSleepDisabled(m_keepAwake, true);
    if (verb == u"keep-awake" && arguments == QStringList{u"off"_qs})
        return setSleepDisabled(m_keepAwake, false);
    if (verb == u"purge" && arguments.isEmpty())
        return runPurge({}, m_dropCaches);
    return m_disks.carryOut(verb, arguments).value_or(ToolEnd{ToolEnd::wrongUse, usage});
}

} // namespace Quillmere
