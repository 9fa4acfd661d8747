#pragma once

#include "Platform/InstalledApplications.h"
#include "Platform/Linux/Applications/DesktopEntry.h"
#include "Platform/ProcessRunner.h"

#include <QHash>

namespace Quillmere {

/// A package as its manager knows it.
struct SystemPackage
{
    QString version;
    qint64 size = 0; ///< Bytes that it takes up when installed, as its maker reckoned.

    bool operator==(const SystemPackage &) const = default;
};

/// An application that a package may own, and the file by which that shows.
struct PackagedEntry
{
    DesktopEntry entry;
    FilePath owned;
};

/// The applications of @p entries that packages of the system own. Only asks, and changes nothing. Empty where there is
/// no such manager.
[[nodiscard]] QList<ListedApplication> systemApplications(const ProcessRunner &processes,
                                                          const QList<PackagedEntry> &entries);

/// Which package owns a file, of lines `package[:architecture][, ...]: file`. Of several owners the first.
[[nodiscard]] QHash<FilePath, QString> parseOwners(const QByteArray &text);
/// By their names, of lines of name, version and size in KiB with tabs between.
[[nodiscard]] QHash<QString, SystemPackage> parsePackages(const QByteArray &text);

} // namespace Quillmere
