#pragma once

#include "ViewModels/CleanupFixture.h"
#include "ViewModels/ProfessionalCleanupViewModel.h"

namespace Quillmere {

/// The Professional Cleanup screen on a pretend machine.
class ProfessionalCleanupFixture : public CleanupFixture
{
protected:
    /// A folder with one file of @p bytes in it, below the home unless @p path says otherwise.
    void addTree(const QByteArray &path, qint64 bytes)
    {
        const FilePath folder = path.startsWith('/') ? FilePath(path) : FilePath("/home/ada").appending(path);
        machine.files->addFile(folder.appending("data"), bytes);
    }

    void addEverything()
    {
        addTree(".gradle/caches", 7);
        addTree("Library/Application Support/Code/Cache", 5);
        addTree(".nvm", 100);
        addTree("/Library/Caches/com.example.daemon", 11);
        addTree("Library/Containers/com.apple.mail/Data/Library/Mail Downloads/one", 13);
    }

    [[nodiscard]] const QList<CleanupCategory> &found() const
    {
        return std::as_const(*model).categories()->categories();
    }
    [[nodiscard]] QStringList foundNames() const
    {
        QStringList names;
        for (const CleanupCategory &category : found())
            names.append(category.name);
        return names;
    }
    [[nodiscard]] QStringList selectedNames() const
    {
        QStringList names;
        for (const CleanupCategory &category : found()) {
            if (category.isSelected)
                names.append(category.name);
        }
        return names;
    }

    const FilePath systemCaches{"/Library/Caches"};
    std::unique_ptr<ProfessionalCleanupViewModel> model = std::make_unique<ProfessionalCleanupViewModel>(
        scanner,
        DeveloperStorageService(machine.files, machine.places, machine.processes, machine.machine().environment),
        CleanupService(machine.files, machine.places), history, machine.files, machine.clock);
};

} // namespace Quillmere
