#include "Platform/Linux/Applications/ApplicationIndex.h"

#include "Platform/Linux/Applications/ApplicationData.h"

#include <QFile>
#include <QFileInfo>

namespace Quillmere {

ApplicationIndex::ApplicationIndex(QList<DesktopEntry> entries, FilePath home)
    : m_entries(std::move(entries))
    , m_home(std::move(home))
{
    for (qsizetype place = 0; place < m_entries.size(); ++place) {
        const DesktopEntry &entry = m_entries.at(place);
        m_byId.insert(entry.id, place);
        m_byFile.insert(entry.file, place);
        if (entry.executable.isEmpty())
            continue;
        m_byExecutable[entry.executable].append(place);
        const FilePath folder = ApplicationData::builtIn().installFolderOf(entry.executable, m_home);
        if (!folder.isEmpty())
            m_byFolder[folder].append(place);
    }
}

const DesktopEntry *ApplicationIndex::byId(const QByteArray &id) const
{
    const auto found = m_byId.constFind(id);
    return found == m_byId.constEnd() ? nullptr : &m_entries.at(*found);
}

const DesktopEntry *ApplicationIndex::byFile(const FilePath &file) const
{
    const auto found = m_byFile.constFind(file);
    return found == m_byFile.constEnd() ? nullptr : &m_entries.at(*found);
}

const DesktopEntry *ApplicationIndex::only(const Places &places, const FilePath &path) const
{
    const QList<qsizetype> candidates = places.value(path);
    if (candidates.size() == 1)
        return &m_entries.at(candidates.first());
    const DesktopEntry *plain = nullptr;
    for (const qsizetype place : candidates) {
        if (!m_entries.at(place).isPlain)
            continue;
        if (plain)
            return nullptr;
        plain = &m_entries.at(place);
    }
    return plain;
}

const DesktopEntry *ApplicationIndex::byProgram(const FilePath &program) const
{
    if (const DesktopEntry *entry = only(m_byExecutable, program))
        return entry;
    if (const ApplicationData::Identity *identity = ApplicationData::builtIn().identityOfExecutable(program)) {
        for (const QByteArray &id : identity->desktopIds) {
            if (const DesktopEntry *entry = byId(id))
                return entry;
        }
    }
    for (FilePath folder = program.deletingLastPathComponent(); folder != FilePath("/");
         folder = folder.deletingLastPathComponent()) {
        if (m_byFolder.contains(folder))
            return only(m_byFolder, folder);
    }
    return nullptr;
}

const DesktopEntry *ApplicationIndex::byScript(const FilePath &script) const
{
    if (const DesktopEntry *entry = only(m_byExecutable, script))
        return entry;
    const QString target = QFileInfo(QFile::decodeName(script.bytes())).canonicalFilePath();
    return target.isEmpty() ? nullptr : only(m_byExecutable, FilePath(QFile::encodeName(target)));
}

FilePath ApplicationIndex::locationOf(const FilePath &program) const
{
    const FilePath folder = ApplicationData::builtIn().installFolderOf(program, m_home);
    return folder.isEmpty() ? program : folder;
}

} // namespace Quillmere
