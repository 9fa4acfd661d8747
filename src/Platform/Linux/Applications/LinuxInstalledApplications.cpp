#include "Platform/Linux/Applications/LinuxInstalledApplications.h"

#include "Platform/Linux/Applications/UserFlatpaks.h"
#include "Utilities/RemovableLocation.h"

#include <algorithm>

namespace Quillmere {

namespace {

FilePath installationOfFlatpaks(const FilePath &home, const BaseDirectories::Environment &environment)
{
    const FilePath usual = BaseDirectories::of(home, environment).data.appending("flatpak");
    return BaseDirectories::location(environment, "FLATPAK_USER_DIR", usual);
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
    , m_flatpaks(installationOfFlatpaks(files->homeDirectory(), environment))
    , m_leftovers(std::move(files), std::move(places), m_entryFolders.mid(1), environment)
{
}

/// The entries that the desktop shows, by whose they are.
struct LinuxInstalledApplications::Entries
{
    QList<DesktopEntry> own; ///< Of the user's folder.
    QList<DesktopEntry> others;
    QHash<QByteArray, FilePath> ownFiles; ///< By their ids, those not shown included; free of links up to their folder.
    QHash<QByteArray, FilePath> systemFiles; ///< The same of all other folders.
    QSet<QByteArray> flatpaks; ///< The ids of the user's own, which their tool looks after.
};

LinuxInstalledApplications::Entries LinuxInstalledApplications::readEntries() const
{
    const auto filesIn = [this](const QList<FilePath> &folders) {
        QHash<QByteArray, FilePath> files = desktopEntryFiles(folders);
        for (FilePath &file : files)
            file = removableLocation(*m_files, file);
        return files;
    };
    Entries entries{{}, {}, filesIn(m_entryFolders.first(1)), filesIn(m_entryFolders.mid(1)), {}};
    const FilePath ownFolder = m_files->resolvingSymlinks(m_entryFolders.first());
    for (DesktopEntry &entry : readDesktopEntries(m_entryFolders)) {
        const bool isOwn = entry.file.isWithin(m_entryFolders.first());
        entry.file = (isOwn ? entries.ownFiles : entries.systemFiles).value(entry.id);
        (isOwn && entry.file.isWithin(ownFolder) ? entries.own : entries.others).append(entry);
    }
    return entries;
}

QList<ListedApplication> LinuxInstalledApplications::applications() const
{
    Entries entries = readEntries();
    const QList<ListedApplication> flatpaks
        = userFlatpaks(*m_files, *m_processes, m_files->resolvingSymlinks(m_flatpaks));
    for (const ListedApplication &flatpak : flatpaks)
        entries.flatpaks.insert(flatpak.id);
    const OwnApplications own(m_files, m_home, entries.own);
    QList<DesktopEntry> programs = programsOf(entries, own);
    const QList<ListedApplication> system = systemApplications(*m_processes, packagedOf(entries, programs));
    programs.removeIf([&](const DesktopEntry &entry) {
        return std::ranges::any_of(system, [&](const ListedApplication &each) { return each.id == entry.id; });
    });

    QList<ListedApplication> found = appImagesOf(entries, own) + flatpaks;
    for (const DesktopEntry &entry : std::as_const(programs))
        found.append(own.programOf(entry));
    return found + system;
}

QList<ListedApplication> LinuxInstalledApplications::appImagesOf(const Entries &entries, const OwnApplications &own)
{
    QList<ListedApplication> images = own.appImages();
    QHash<QByteArray, int> imagesOfName;
    for (const ListedApplication &image : std::as_const(images))
        ++imagesOfName[image.id];
    for (ListedApplication &image : images) {
        const bool isByFileName = image.parts.size() == 1;
        const FilePath ownFile = entries.ownFiles.value(image.id);
        const bool isAnotherOwnEntrys = !ownFile.isEmpty() && !image.parts.contains(ownFile);
        image.sharesData = entries.systemFiles.contains(image.id) || entries.flatpaks.contains(image.id)
            || isAnotherOwnEntrys || imagesOfName[image.id] > 1;
        if (isByFileName && image.sharesData)
            image.identifier.clear();
    }
    return images;
}

QList<DesktopEntry> LinuxInstalledApplications::programsOf(const Entries &entries, const OwnApplications &own)
{
    QList<DesktopEntry> programs = entries.own;
    programs.removeIf([&](const DesktopEntry &entry) {
        return entries.flatpaks.contains(entry.id) || entries.systemFiles.contains(entry.id)
            || own.startsAppImage(entry);
    });
    return programs;
}

QList<PackagedEntry> LinuxInstalledApplications::packagedOf(const Entries &entries,
                                                            const QList<DesktopEntry> &programs) const
{
    QList<PackagedEntry> packaged;
    for (DesktopEntry entry : entries.own + entries.others) {
        // Menu editors leave a copy of the system's entry behind: the application stays the system's all the same.
        const FilePath systemFile = entries.systemFiles.value(entry.id);
        if (systemFile.isEmpty() || entries.flatpaks.contains(entry.id))
            continue;
        entry.file = systemFile;
        packaged.append({entry, systemFile});
    }
    for (const DesktopEntry &entry : programs) {
        if (!entry.executable.isEmpty() && !entry.executable.isWithin(m_home))
            packaged.append({entry, entry.executable});
    }
    return packaged;
}

QList<FilePath> LinuxInstalledApplications::leftoversOf(const ListedApplication &application) const
{
    if (application.sharesData)
        return {};
    using Packaging = ApplicationLeftovers::Packaging;
    const bool isFlatpak = application.removal == ApplicationRemoval::Command;
    QList<FilePath> found = m_leftovers.of(application.id, isFlatpak ? Packaging::Flatpak : Packaging::Any);
    found.removeIf([&](const FilePath &leftover) {
        const auto isOfTheApplicationItself
            = [&](const FilePath &part) { return part.isWithin(leftover) || leftover.isWithin(part); };
        return leftover == application.location || std::ranges::any_of(application.parts, isOfTheApplicationItself);
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
    if (isGone(part))
        return {};
    const Result<FilePath> trashed = m_files->trashItem(part);
    return trashed || isGone(part) ? Result<void>() : Result<void>(trashed.failure());
}

bool LinuxInstalledApplications::isGone(const FilePath &part) const
{
    return m_files->isAnswering(part) && !m_files->attributesOfItem(part);
}

} // namespace Quillmere
