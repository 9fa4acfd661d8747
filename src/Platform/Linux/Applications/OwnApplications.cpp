#include "Platform/Linux/Applications/OwnApplications.h"

#include "Platform/Linux/Applications/ApplicationData.h"
#include "Values/FileName.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

constexpr std::array appImageFolders = {"Applications", ".local/bin", "bin"};
// Where tools keep data, so that a folder with programs in it may be a whole collection of them.
constexpr auto dataFolder = ".local/share";
// Folders below the home in which each application has one of its own.
constexpr std::array installRoots = {"Applications", ".local/lib", ".local/opt", dataFolder, ".opt", "Apps", "opt"};
// Folders below the home that hold programs of many applications, each a file.
constexpr std::array programFolders = {".local/bin", "bin"};

bool isAppImage(const FilePath &file)
{
    return file.pathExtension().toLower() == "appimage";
}

} // namespace

ListedApplication applicationOf(const DesktopEntry &entry)
{
    ListedApplication application;
    application.id = entry.id;
    application.name = entry.name;
    application.identifier = QString::fromUtf8(ApplicationData::builtIn().identifierOf(entry.id));
    application.icon = entry.icon;
    return application;
}

OwnApplications::OwnApplications(std::shared_ptr<const FileManager> files, FilePath home, QList<DesktopEntry> entries)
    : m_files(std::move(files))
    , m_home(std::move(home))
    , m_entries(std::move(entries))
{
}

QList<ListedApplication> OwnApplications::appImages() const
{
    QList<ListedApplication> found;
    for (const FilePath &image : images())
        found.append(imageAt(image));
    return found;
}

QList<FilePath> OwnApplications::images() const
{
    QList<FilePath> images;
    const auto add = [&images](const FilePath &image) {
        if (!images.contains(image))
            images.append(image);
    };
    for (const char *name : appImageFolders) {
        const FilePath folder = m_files->resolvingSymlinks(m_home.appending(name));
        for (const DirectoryEntry &file : m_files->contentsOfDirectory(folder, HiddenFiles::Skip).valueOr({})) {
            if (file.type == EntryKind::Regular && isAppImage(file.path))
                add(file.path);
        }
    }
    for (const DesktopEntry &entry : m_entries) {
        if (startsAppImage(entry))
            add(entry.executable);
    }
    return images;
}

bool OwnApplications::startsAppImage(const DesktopEntry &entry) const
{
    if (!isAppImage(entry.executable) || !entry.executable.isWithin(m_home))
        return false;
    const Result<FileAttributes> image = m_files->attributesOfItem(entry.executable);
    return image && image.value().type == EntryKind::Regular;
}

ListedApplication OwnApplications::imageAt(const FilePath &image) const
{
    ListedApplication application;
    QList<FilePath> parts = {image};
    for (const DesktopEntry &entry : m_entries) {
        if (entry.executable != image)
            continue;
        if (parts.size() == 1)
            application = applicationOf(entry);
        parts.append(entry.file);
    }
    if (parts.size() == 1) {
        application.id = nameWithoutExtension(image);
        application.name = FilePath::displayText(application.id);
        application.identifier = QString::fromUtf8(application.id);
    }
    application.location = image;
    application.parts = parts;
    return application;
}

ListedApplication OwnApplications::programOf(const DesktopEntry &entry) const
{
    ListedApplication application = applicationOf(entry);
    const FilePath folder = ownFolderOf(entry);
    if (!folder.isEmpty())
        application.parts.append(folder);
    else if (isOwnProgram(entry))
        application.parts.append(entry.executable);
    application.parts.append(entry.file);
    application.location = application.parts.first();
    return application;
}

FilePath OwnApplications::ownFolderOf(const DesktopEntry &entry) const
{
    const ApplicationData &data = ApplicationData::builtIn();
    if (entry.executable.isEmpty() || data.isSharedProgram(entry.executable))
        return {};
    const FilePath folder = data.installFolderOf(entry.executable, m_home);
    const FilePath above = folder.deletingLastPathComponent();
    const auto isAt = [&](const char *root) { return above == m_files->resolvingSymlinks(m_home.appending(root)); };
    if (folder.isEmpty() || std::ranges::none_of(installRoots, isAt) || data.isSharedName(folder.lastPathComponent()))
        return {};
    if (isAt(dataFolder) && holdsOtherPrograms(folder.appending("bin"), entry.executable))
        return {};
    const auto isInIt = [&](const DesktopEntry &other) {
        return other.file.isWithin(folder) || (other.id != entry.id && other.executable.isWithin(folder));
    };
    return std::ranges::any_of(m_entries, isInIt) ? FilePath() : folder;
}

bool OwnApplications::holdsOtherPrograms(const FilePath &folder, const FilePath &program) const
{
    const QList<DirectoryEntry> files = m_files->contentsOfDirectory(folder, HiddenFiles::Skip).valueOr({});
    return std::ranges::any_of(files, [&](const DirectoryEntry &file) {
        return file.path != program && file.type != EntryKind::Directory && m_files->isExecutableFile(file.path);
    });
}

bool OwnApplications::isOwnProgram(const DesktopEntry &entry) const
{
    const FilePath &program = entry.executable;
    const bool isAmongPrograms = std::ranges::any_of(programFolders, [&](const char *folder) {
        return program.deletingLastPathComponent() == m_files->resolvingSymlinks(m_home.appending(folder));
    });
    const bool isStartedByOthers = std::ranges::any_of(
        m_entries, [&](const DesktopEntry &other) { return other.id != entry.id && other.executable == program; });
    return isAmongPrograms && !isStartedByOthers && !ApplicationData::builtIn().isSharedProgram(program);
}

} // namespace Quillmere
