#include "Tools/ProgramFolders.h"

#include <QStandardPaths>

#include <utility>

namespace Quillmere {

ProgramFolders::ProgramFolders(QStringList folders)
    : m_folders(std::move(folders))
{
}

ProgramFolders ProgramFolders::ofSystem()
{
    return ProgramFolders({u"/usr/bin"_qs, u"/usr/sbin"_qs, u"/bin"_qs, u"/sbin"_qs, u"/usr/libexec"_qs});
}

ProgramFolders ProgramFolders::ofUser()
{
    return ProgramFolders(qEnvironmentVariable("PATH").split(u':', Qt::SkipEmptyParts));
}

QString ProgramFolders::find(const QStringList &names) const
{
    for (const QString &name : names) {
        QString program = QStandardPaths::findExecutable(name, m_folders);
        if (!program.isEmpty())
            return program;
    }
    return {};
}

} // namespace Quillmere
