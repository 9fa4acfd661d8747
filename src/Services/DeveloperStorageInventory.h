#pragma once

#include "Services/DeveloperStorageLookup.h"

#include "Platform/Places.h"

#include <QStringList>

namespace Quillmere {

/// A place where a tool, an SDK or several versions of one are installed.
struct InstalledRoot
{
    QString name;
    FilePath location; ///< It need not exist.

    bool operator==(const InstalledRoot &) const = default;
};

/// A language's program.
struct Runtime
{
    QString name;
    FilePath executable;
    QStringList arguments; ///< They have it print its version.

    bool operator==(const Runtime &) const = default;
};

/// The program's own places in their order, and behind them what this platform adds under "Installed Developer Tools
/// and SDKs".
[[nodiscard]] QList<InstalledRoot> installedRoots(const DeveloperStorageLookup &lookup, const Places &places);
/// For each language the first of its programs that the user may run: the program's own candidates come before those
/// that this platform adds under the language's name followed by " Runtime".
[[nodiscard]] QList<Runtime> detectedRuntimes(const DeveloperStorageLookup &lookup, const Places &places);

} // namespace Quillmere
