#pragma once

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Services/DeveloperStorageService.h"

#include <gtest/gtest.h>

namespace Quillmere {

/// A developer's machine that exists only in memory.
class DeveloperStorageFixture : public testing::Test
{
protected:
    [[nodiscard]] DeveloperStorageLookup lookup() const { return {machine.files, machine.machine().environment}; }
    [[nodiscard]] DeveloperStorageService service() const
    {
        return {machine.files, machine.places, machine.processes, machine.machine().environment};
    }

    /// A folder with one file of @p bytes in it.
    void addTree(const FilePath &folder, qint64 bytes) { machine.files->addFile(folder.appending("data"), bytes); }

    void addProgram(const FilePath &program, const QByteArray &output = {})
    {
        machine.files->addFile(program, 50);
        machine.files->makeExecutable(program);
        machine.processes->answer(program.displayText(), output);
    }

    [[nodiscard]] QList<CleanupCategory> scan() { return service().scanCleanupCategories(scanner); }

    [[nodiscard]] static QStringList names(const QList<CleanupCategory> &categories)
    {
        QStringList names;
        for (const CleanupCategory &category : categories)
            names.append(category.name);
        return names;
    }

    [[nodiscard]] static QStringList itemNames(const CleanupCategory &category)
    {
        QStringList names;
        for (const CleanupItem &item : category.items)
            names.append(item.name);
        return names;
    }

    [[nodiscard]] static QList<FilePath> paths(const CleanupCategory &category)
    {
        QList<FilePath> paths;
        for (const CleanupItem &item : category.items)
            paths.append(item.path);
        return paths;
    }

    /// The names of what is installed.
    [[nodiscard]] QStringList inventory()
    {
        const std::optional<CleanupCategory> category = service().scanInstalledTools(scanner);
        return category ? itemNames(*category) : QStringList();
    }

    const FilePath home{"/home/ada"};
    const FilePath library{"/home/ada/Library"};
    InstalledLocalizer localizer;
    PretendMachine machine;
    ScannerService scanner{machine.files, machine.places};
};

} // namespace Quillmere
