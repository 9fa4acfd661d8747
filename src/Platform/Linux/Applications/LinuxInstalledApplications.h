#pragma once

#include "Platform/FileManager.h"
#include "Platform/InstalledApplications.h"
#include "Platform/Linux/Applications/ApplicationLeftovers.h"
#include "Platform/Linux/Applications/OwnApplications.h"
#include "Platform/Linux/Applications/SystemPackages.h"
#include "Platform/ProcessRunner.h"

#include <memory>

namespace Quillmere {

/// What is installed beside bundles, in this order: AppImages in the folders where they are usually put, the user's own
/// Flatpaks, applications of the user's own desktop entries, and those that the system's packages bring. What a package
/// brings stays the system's where the user has an entry of their own for it.
class LinuxInstalledApplications final : public InstalledApplications
{
public:
    /// The folders of desktop entries, the user's own first.
    LinuxInstalledApplications(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                               std::shared_ptr<const ProcessRunner> processes, QList<FilePath> entryFolders,
                               const BaseDirectories::Environment &environment = qgetenv);

    [[nodiscard]] QList<ListedApplication> applications() const override;
    [[nodiscard]] QList<FilePath> leftoversOf(const ListedApplication &application) const override;
    [[nodiscard]] Result<void> uninstall(const ListedApplication &application) const override;

private:
    struct Entries;

    [[nodiscard]] Entries readEntries() const;
    [[nodiscard]] static QList<ListedApplication> appImagesOf(const Entries &entries, const OwnApplications &own);
    /// The own entries of programs that neither a tool nor the system looks after by their ids.
    [[nodiscard]] static QList<DesktopEntry> programsOf(const Entries &entries, const OwnApplications &own);
    /// All entries that may be a package's, @p programs by what they start.
    [[nodiscard]] QList<PackagedEntry> packagedOf(const Entries &entries, const QList<DesktopEntry> &programs) const;
    [[nodiscard]] Result<void> trash(const FilePath &part) const;
    /// False also where that cannot be told, on a volume that does not answer.
    [[nodiscard]] bool isGone(const FilePath &part) const;

    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const ProcessRunner> m_processes;
    QList<FilePath> m_entryFolders;
    FilePath m_home;
    FilePath m_flatpaks; ///< The user's own installation, as the tool finds it.
    ApplicationLeftovers m_leftovers;
};

} // namespace Quillmere
