#include "Tools/ApplicationDatabases.h"

#include "Platform/Linux/Places/BaseDirectories.h"
#include "Tools/ChildStep.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace Quillmere {

namespace {

const QString noDatabase = u"This machine keeps no database of applications for this user: nothing to do here."_qs;

QList<FilePath> dataFolders()
{
    const BaseDirectories user = BaseDirectories::of(FilePath(QFile::encodeName(QDir::homePath())));
    return QList<FilePath>{user.data} + BaseDirectories::systemData();
}

bool isWritableFolder(const FilePath &folder)
{
    const QFileInfo information(argumentOf(folder));
    return information.isDir() && information.isWritable();
}

} // namespace

ApplicationDatabases::ApplicationDatabases(ProgramFolders programs, QList<FilePath> dataFolders)
    : m_programs(std::move(programs))
    , m_dataFolders(std::move(dataFolders))
{
}

ApplicationDatabases ApplicationDatabases::ofUser()
{
    return {ProgramFolders::ofUser(), dataFolders()};
}

QList<ToolStep> ApplicationDatabases::rebuild() const
{
    QList<ToolStep> steps;
    for (const FilePath &folder : m_dataFolders) {
        if (isWritableFolder(folder.appending("applications")))
            steps.append(rebuildWith(u"update-desktop-database"_qs, folder.appending("applications"),
                                     u"The database of applications in %1"_qs));
        // The descriptions stand in there; without any the program fails.
        if (isWritableFolder(folder.appending("mime")) && isWritableFolder(folder.appending("mime/packages")))
            steps.append(rebuildWith(u"update-mime-database"_qs, folder.appending("mime"),
                                     u"The database of file types in %1"_qs));
    }
    steps.append(rebuildCacheOfPlasma());
    return steps;
}

ToolStep ApplicationDatabases::rebuildWith(const QString &program, const FilePath &folder, const QString &what) const
{
    const QString path = m_programs.find({program});
    if (path.isEmpty())
        return {};
    const QString subject = what.arg(folder.displayText());
    return stepOf(runChild({path, {argumentOf(folder)}}), subject + u" was rebuilt."_qs,
                  subject + u" was not rebuilt: "_qs);
}

ToolStep ApplicationDatabases::rebuildCacheOfPlasma() const
{
    const QString program = m_programs.find({u"kbuildsycoca6"_qs, u"kbuildsycoca5"_qs});
    if (program.isEmpty())
        return {};
    return stepOf(runChild({program, {u"--noincremental"_qs}}), u"The service cache of Plasma was rebuilt."_qs,
                  u"The service cache of Plasma was not rebuilt: "_qs);
}

ToolEnd runLsregister(const QStringList &arguments, const ApplicationDatabases &databases)
{
    const QStringList known
        = {u"-kill"_qs, u"-r"_qs, u"-domain"_qs, u"local"_qs, u"-domain"_qs, u"system"_qs, u"-domain"_qs, u"user"_qs};
    if (arguments != known)
        return {ToolEnd::wrongUse, u"usage: lsregister -kill -r -domain local -domain system -domain user"_qs};
    return endOf(databases.rebuild(), noDatabase);
}

} // namespace Quillmere
