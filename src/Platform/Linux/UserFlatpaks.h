#pragma once

#include "Platform/FileManager.h"
#include "Platform/InstalledApplications.h"
#include "Platform/ProcessRunner.h"

#include <QSet>

namespace Quillmere {

/// The user's own Flatpaks, which only their tool knows and removes. Empty where the tool is missing or fails; where
/// the user has none it is not asked, since asking alone makes it set up an installation in @p dataHome. One that is
/// installed for all users too, or where that cannot be told, shares its data.
[[nodiscard]] QList<ListedApplication> userFlatpaks(const FileManager &files, const ProcessRunner &processes,
                                                    const FilePath &dataHome);

/// Lines of identifier, name and version, with tabs between. A line of another shape, and an identifier that is none,
/// says nothing.
[[nodiscard]] QList<ListedApplication> parseFlatpaks(const QByteArray &text, const FilePath &dataHome);

/// The identifiers of what is not, or not only, in the user's own installation, of lines of identifier and
/// installation.
[[nodiscard]] QSet<QByteArray> parseInstalledElsewhere(const QByteArray &text);

/// Has the tool remove @p application, and nothing else of the user's.
[[nodiscard]] Result<void> uninstallFlatpak(const ProcessRunner &processes, const ListedApplication &application);

} // namespace Quillmere
