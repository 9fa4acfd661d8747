#pragma once

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Services/ScannerService.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace Quillmere {

/// A scanner on a pretend machine that has nothing yet, and what it reports.
class ScannerFixture : public testing::Test
{
protected:
    using Reports = std::vector<std::pair<double, QString>>;

    QList<CleanupCategory> scan(const std::stop_token &task = {})
    {
        return scanner.scanSafeCategories(
            [this](double fraction, const QString &text) { reports.emplace_back(fraction, text); }, task);
    }

    /// Folder @p path with one file of @p bytes in it.
    void addTree(const FilePath &path, qint64 bytes) { machine.files->addFile(path.appending("data"), bytes); }

    QStringList names(const CleanupCategory &category) const
    {
        QStringList names;
        for (const CleanupItem &item : category.items)
            names.append(item.name);
        return names;
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    ScannerService scanner{machine.files, machine.places};
    const FilePath caches{"/home/ada/Library/Caches"};
    const FilePath logs{"/home/ada/Library/Logs"};
    const FilePath containers{"/home/ada/Library/Containers"};
    Reports reports;
};

} // namespace Quillmere
