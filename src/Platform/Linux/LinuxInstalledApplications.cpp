#include "Platform/Linux/LinuxInstalledApplications.h"

#include "Platform/Linux/ApplicationData.h"
#include "Platform/Linux/SystemPackages.h"
#include "Platform/Linux/UserFlatpaks.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

constexpr std::array appImageFolders = {"Applications", ".local/bin", "bin"};
// Folders below the home in which each application has one of its own.
constexpr std::array installRoots = {"Applications", ".local/lib", ".local/opt", ".local/share", ".opt", "Apps", "opt"};
// Folders below the home that hold programs of many applications, each a file.
constexpr std::array programFolders = {".local/bin", "bin"};

bool isAppImage(const FilePath &file)
{
    return file.pathExtension().toLower() == "appimage";
}

ListedApplication applicationOf(const DesktopEntry &entry)
{
    ListedApplication application;
    application.id = entry.id;
    application.name = entry.name;
    application.identifier = QString::fromUtf8(ApplicationData::builtIn().identifierOf(entry.id));
    application.icon = entry.icon;
    return application;
}

} // namespace

LinuxInstalledApplications::LinuxInstalledApplications(std::shared_ptr<const FileManager> files,
                                                       std::shared_ptr<const Places> places,
                                                       std::shared_ptr<const ProcessRunner> processes,
                                                       QList<FilePath> entryFolders,
                                                       const BaseDirectories::Environment &environment)
    : m_files(files)
    , m_processes(std::move(processes))
    , m_entryFolders(std::move(entryFolders))
    , m_home(files->resolvingSymlinks(files->homeDirectory()))
    , m_leftovers(std::move(files), std::move(places), environment)
{
}

QList<ListedApplication> LinuxInstalledApplications::applications() const
{
    const FilePath ownFolder = m_files->resolvingSymlinks(m_entryFolders.value(0));
    QList<DesktopEntry> own;
    QList<DesktopEntry> others;
    for (DesktopEntry &entry : readDesktopEntries(m_entryFolders)) {
        const bool isOwn = entry.file.isWithin(m_entryFolders.value(0));
        entry.file = m_files->resolvingSymlinks(entry.file.deletingLastPathComponent())
                         .appending(entry.file.lastPathComponent());
        (isOwn && entry.file.isWithin(ownFolder) ? own : others).append(entry);
    }
    const FilePath dataHome = ownFolder.deletingLastPathComponent();
    QList<ListedApplication> found = appImages(own) + userFlatpaks(*m_processes, dataHome);
    const auto isKnown = [&found](const QByteArray &id) {
        return std::ranges::any_of(found, [&](const ListedApplication &each) { return each.id == id; });
    };
    own.removeIf([&](const DesktopEntry &entry) { return isKnown(entry.id) || isAppImage(entry.executable); });
    others.removeIf([&](const DesktopEntry &entry) { return isKnown(entry.id); });
    return found + ownEntries(own) + systemApplications(*m_processes, others);
}

QList<ListedApplication> LinuxInstalledApplications::appImages(const QList<DesktopEntry> &own) const
{
    QList<ListedApplication> found;
    for (const char *name : appImageFolders) {
        const FilePath folder = m_files->resolvingSymlinks(m_home.appending(name));
        for (const DirectoryEntry &file : m_files->contentsOfDirectory(folder, HiddenFiles::Skip).valueOr({})) {
            if (file.type != EntryKind::Regular || !isAppImage(file.path))
                continue;
            const auto entry = std::ranges::find(own, file.path, &DesktopEntry::executable);
            const QByteArray plain = file.path.lastPathComponent().chopped(file.path.pathExtension().size() + 1);
            ListedApplication application;
            if (entry != own.end())
                application = applicationOf(*entry);
            else
                application = {plain, FilePath::displayText(plain), QString::fromUtf8(plain), {}, {}, {}, {}, {}, {}};
            application.location = file.path;
            application.parts = {file.path};
            if (entry != own.end())
                application.parts.append(entry->file);
            const bool isKnown
                = std::ranges::any_of(found, [&](const ListedApplication &each) { return each.location == file.path; });
            if (!isKnown)
                found.append(application);
        }
    }
    return found;
}

QList<ListedApplication> LinuxInstalledApplications::ownEntries(const QList<DesktopEntry> &own) const
{
    QList<ListedApplication> found;
    for (const DesktopEntry &entry : own) {
        ListedApplication application = applicationOf(entry);
        const FilePath folder = ownFolderOf(entry, own);
        if (!folder.isEmpty())
            application.parts.append(folder);
        else if (isOwnProgram(entry.executable))
            application.parts.append(entry.executable);
        application.parts.append(entry.file);
        application.location = application.parts.first();
        found.append(application);
    }
    return found;
}

FilePath LinuxInstalledApplications::ownFolderOf(const DesktopEntry &entry, const QList<DesktopEntry> &own) const
{
    const ApplicationData &data = ApplicationData::builtIn();
    if (entry.executable.isEmpty() || data.isSharedProgram(entry.executable))
        return {};
    const FilePath folder = data.installFolderOf(entry.executable, m_home);
    const FilePath above = folder.deletingLastPathComponent();
    const bool isInstalled = !folder.isEmpty() && std::ranges::any_of(installRoots, [&](const char *root) {
        return above == m_files->resolvingSymlinks(m_home.appending(root));
    });
    if (!isInstalled || data.isSharedName(folder.lastPathComponent()))
        return {};
    const auto isInIt = [&](const DesktopEntry &other) {
        return other.file.isWithin(folder) || (other.id != entry.id && other.executable.isWithin(folder));
    };
    return std::ranges::any_of(own, isInIt) ? FilePath() : folder;
}

bool LinuxInstalledApplications::isOwnProgram(const FilePath &program) const
{
    const bool isAmongPrograms = std::ranges::any_of(programFolders, [&](const char *folder) {
        return program.deletingLastPathComponent() == m_files->resolvingSymlinks(m_home.appending(folder));
    });
    return isAmongPrograms && !ApplicationData::builtIn().isSharedProgram(program);
}

QList<FilePath> LinuxInstalledApplications::leftoversOf(const ListedApplication &application) const
{
    QList<FilePath> found = m_leftovers.of(application.id);
    found.removeIf([&](const FilePath &leftover) {
        return std::ranges::any_of(application.parts, [&](const FilePath &part) {
            return part.isWithin(leftover) || leftover.isWithin(part);
        });
    });
    return found;
}

Result<void> LinuxInstalledApplications::uninstall(const ListedApplication &application) const
{
    if (application.removal == ApplicationRemoval::System)
        return Failure{Failure::Kind::NotSupported, application.location, {}};
    if (application.removal == ApplicationRemoval::Command)
        return uninstallFlatpak(*m_processes, application);
    for (const FilePath &part : application.parts) {
        if (const Result<void> done = trash(part); !done)
            return done;
    }
    return {};
}

Result<void> LinuxInstalledApplications::trash(const FilePath &part) const
{
    if (!m_files->attributesOfItem(part))
        return {};
    const Result<FilePath> trashed = m_files->trashItem(part);
    return trashed || !m_files->attributesOfItem(part) ? Result<void>() : Result<void>(trashed.failure());
}

} // namespace Quillmere
