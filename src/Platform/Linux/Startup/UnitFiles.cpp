#include "Platform/Linux/Startup/UnitFiles.h"

#include "Platform/Linux/Startup/KeptLinks.h"

#include <QSet>

#include <algorithm>

namespace Quillmere {

namespace {

// A unit's file takes up a few kilobytes.
constexpr qsizetype mostBytesOfAUnit = 1024 * 1024;

bool holdsLinks(const FilePath &folder)
{
    return folder.pathExtension() == "wants" || folder.pathExtension() == "requires";
}

} // namespace

UnitFiles::UnitFiles(std::shared_ptr<const FileManager> files, FilePath own, QList<FilePath> systems)
    : m_files(std::move(files))
    , m_own(std::move(own))
    , m_systems(std::move(systems))
{
}

QList<StartupEntry> UnitFiles::entries() const
{
    QSet<QByteArray> linked;
    for (const FilePath &folder : QList<FilePath>{m_own} + m_systems) {
        for (const QByteArray &name : linkedIn(folder))
            linked.insert(name);
    }
    QList<StartupEntry> found;
    QSet<QByteArray> own;
    for (const DirectoryEntry &file : m_files->contentsOfDirectory(m_own, HiddenFiles::Skip).valueOr({})) {
        const QByteArray name = file.path.lastPathComponent();
        if (file.type == EntryKind::Directory || !isUnit(file.path) || isTemplate(name) || isMasked(name))
            continue;
        own.insert(name);
        if (linked.contains(name) || canBeEnabled(file.path))
            found.append({file.path, FilePath::displayText(name), StartupEntry::Scope::User, linked.contains(name)});
    }
    for (const QByteArray &name : std::as_const(linked)) {
        const FilePath file = own.contains(name) ? FilePath() : systemFile(name);
        if (!file.isEmpty())
            found.append({file, FilePath::displayText(name), StartupEntry::Scope::AllUsers, !isMasked(name)});
    }
    sortUnits(found);
    return found;
}

QList<QByteArray> UnitFiles::linkedIn(const FilePath &folder) const
{
    QList<QByteArray> names;
    for (const DirectoryEntry &entry : m_files->contentsOfDirectory(folder, HiddenFiles::Skip).valueOr({})) {
        if (!holdsLinks(entry.path))
            continue;
        for (const DirectoryEntry &link : m_files->contentsOfDirectory(entry.path, HiddenFiles::Skip).valueOr({})) {
            if (isUnit(link.path))
                names.append(link.path.lastPathComponent());
        }
    }
    return names;
}

bool UnitFiles::isMasked(const QByteArray &name) const
{
    return m_files->resolvingSymlinks(m_own.appending(name)) == FilePath("/dev/null");
}

Result<void> UnitFiles::keepingOwnLink(const QByteArray &name, const std::function<Result<void>()> &switchOff) const
{
    return isMasked(name) ? switchOff() : keepingLink(m_own, name, switchOff);
}

void UnitFiles::giveBackOwnLinks() const
{
    if (m_files->isAnswering(m_own))
        giveBackOwedLinks(m_own);
}

FilePath UnitFiles::systemFile(const QByteArray &name) const
{
    for (const FilePath &folder : m_systems) {
        if (m_files->fileExists(folder.appending(name)))
            return folder.appending(name);
    }
    return {};
}

FilePath UnitFiles::fileOf(const FilePath &path) const
{
    const FilePath known = systemFile(path.lastPathComponent());
    const auto folderOf
        = [this](const FilePath &file) { return m_files->resolvingSymlinks(file.deletingLastPathComponent()); };
    return !known.isEmpty() && folderOf(known) == folderOf(path) ? known : path;
}

bool UnitFiles::canBeEnabled(const FilePath &file) const
{
    const QList<QByteArray> lines = m_files->contentsOfFile(file, mostBytesOfAUnit).valueOr({}).split('\n');
    return std::ranges::any_of(lines, [](const QByteArray &line) { return line.trimmed() == "[Install]"; });
}

bool isUnit(const FilePath &path)
{
    static const QList<QByteArray> types = {"service", "socket", "timer", "path", "target", "mount", "automount"};
    return types.contains(path.pathExtension());
}

bool isTemplate(const QByteArray &unit)
{
    return unit.contains("@.");
}

void sortUnits(QList<StartupEntry> &entries)
{
    std::ranges::sort(entries, {},
                      [](const StartupEntry &entry) { return std::pair(entry.scope, entry.path.lastPathComponent()); });
}

} // namespace Quillmere
