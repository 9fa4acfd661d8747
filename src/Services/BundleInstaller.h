#pragma once

#include "Platform/Bundle.h"
#include "Platform/FileManager.h"
#include "Platform/Places.h"
#include "Platform/ProcessRunner.h"
#include "Platform/Workspace.h"
#include "Utilities/SetupReceipt.h"

#include <memory>
#include <optional>

namespace Quillmere {

/// Copies the running program's bundle to where applications belong. GUI thread only.
class BundleInstaller
{
public:
    struct Parts
    {
        std::shared_ptr<const FileManager> files;
        std::shared_ptr<const Places> places;
        std::shared_ptr<const Bundles> bundles;
        std::shared_ptr<const ProcessRunner> processes;
        std::shared_ptr<const Workspace> workspace;
        SetupReceipt receipt;
        InstallerTerms terms;
    };

    explicit BundleInstaller(Parts parts);

    /// Tries the folder of all users, then the same with the system's password dialog, then the user's own. Answers
    /// where the bundle stands now, which is where it stood if that is such a place already; nothing when nothing
    /// worked. Where it worked, the setup counts as completed. Takes as long as the copy and the dialog take.
    [[nodiscard]] std::optional<FilePath> copyToApplications() const;

private:
    [[nodiscard]] bool isInstalled(const FilePath &bundle) const;
    [[nodiscard]] bool installBundleWithAdministratorPrivileges(const FilePath &from, const FilePath &to) const;
    [[nodiscard]] std::optional<FilePath> installForUser(const FilePath &from) const;
    [[nodiscard]] FilePath installed(const FilePath &bundle) const;

    Parts m_parts;
};

} // namespace Quillmere
