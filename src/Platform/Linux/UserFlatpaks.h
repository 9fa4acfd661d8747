#pragma once

#include "Platform/FileManager.h"
#include "Platform/InstalledApplications.h"
#include "Platform/Linux/BaseDirectories.h"
#include "Platform/ProcessRunner.h"

namespace Quillmere {

/// The user's own Flatpaks, which only their tool knows and removes. Empty where the tool is missing or fails.
[[nodiscard]] QList<ListedApplication> userFlatpaks(const ProcessRunner &processes, const FilePath &dataHome);

/// Lines of identifier, name and version, with tabs between. A line of another shape, and an identifier that is none,
/// says nothing.
[[nodiscard]] QList<ListedApplication> parseFlatpaks(const QByteArray &text, const FilePath &dataHome);

/// Has the tool remove the application @p id, and nothing else of the user's.
[[nodiscard]] Result<void> uninstallFlatpak(const ProcessRunner &processes, const ListedApplication &application);

} // namespace Quillmere
