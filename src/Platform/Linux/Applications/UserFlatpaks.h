#pragma once

#include "Platform/FileManager.h"
#include "Platform/InstalledApplications.h"
#include "Platform/ProcessRunner.h"

#include <QSet>

namespace Quillmere {

/// The user's own Flatpaks, which only their tool knows and removes. Empty where the tool is missing or fails; where
/// the user has none it is not asked, since asking alone makes it set up an @p installation. One that is installed for
/// all users too, or in several branches, or where that cannot be told, shares its data.
[[nodiscard]] QList<ListedApplication> userFlatpaks(const FileManager &files, const ProcessRunner &processes,
                                                    const FilePath &installation);

/// Lines of identifier, name, version and what the tool calls a ref, with tabs between. A line of another shape, and an
/// identifier that is none, says nothing. Of one in several branches the branch stands behind the name.
[[nodiscard]] QList<ListedApplication> parseFlatpaks(const QByteArray &text, const FilePath &installation);

/// The identifiers of what is not, or not only, in the user's own installation, of lines of identifier and
/// installation.
[[nodiscard]] QSet<QByteArray> parseInstalledElsewhere(const QByteArray &text);

/// Has the tool remove @p application, the one branch of it that its location names, and nothing else of the user's.
[[nodiscard]] Result<void> uninstallFlatpak(const ProcessRunner &processes, const ListedApplication &application);

} // namespace Quillmere
