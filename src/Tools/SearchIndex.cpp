#include "Tools/SearchIndex.h"

#include "Tools/ChildStep.h"

#include <array>
#include <utility>

namespace Quillmere {

namespace {

struct UsersIndex
{
    QString name;
    QStringList keepers; ///< What fills it; without one there is none, though the other program may be here.
    QStringList programs;
    QStringList arguments;
};

const std::array usersIndexes = {
    UsersIndex{u"Tracker"_qs, {u"tracker-miner-fs-3"_qs}, {u"tracker3"_qs}, {u"reset"_qs, u"--filesystem"_qs}},
    UsersIndex{u"Baloo"_qs, {u"baloo_file"_qs}, {u"balooctl6"_qs, u"balooctl"_qs}, {u"purge"_qs}},
};

const QString noIndex = u"This machine keeps no index of its files: nothing to do here."_qs;

} // namespace

SearchIndex::SearchIndex(ProgramFolders programs)
    : m_programs(std::move(programs))
{
}

QList<ToolStep> SearchIndex::reset(const Caller &caller) const
{
    QList<ToolStep> steps;
    const QString user = QString::fromUtf8(caller.name);
    for (const UsersIndex &index : usersIndexes) {
        const QString program = m_programs.find(index.programs);
        if (program.isEmpty() || m_programs.find(index.keepers).isEmpty())
            continue;
        steps.append(stepOf(runChildAs(caller, {program, index.arguments}),
                            u"The index of %1 for %2 was reset."_qs.arg(index.name, user),
                            u"The index of %1 for %2 was not reset: "_qs.arg(index.name, user)));
    }
    const QString updatedb = m_programs.find({u"updatedb"_qs});
    if (!updatedb.isEmpty())
        steps.append(stepOf(runChild({updatedb, {}}), u"The index of file names was rebuilt."_qs,
                            u"The index of file names was not rebuilt: "_qs));
    return steps;
}

ToolEnd SearchIndex::run(const Result<Caller> &caller) const
{
    if (!caller)
        return {1, caller.failure().detail};
    return endOf(reset(caller.value()), noIndex);
}

ToolEnd runMdutil(const QStringList &arguments, const SearchIndex &index, const Result<Caller> &caller, bool isRoot)
{
    if (arguments != QStringList{u"-E"_qs, u"/"_qs})
        return {ToolEnd::wrongUse, u"usage: mdutil -E /"_qs};
    if (!isRoot)
        return {ToolEnd::needsRoot, u"mdutil: Only root can use this."_qs};
    return index.run(caller);
}

} // namespace Quillmere
