#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>

namespace Quillmere::Constants {

/// Folders that are never removed, whatever a scanner said. What lies in them may be. Built on first use.
[[nodiscard]] const QSet<QByteArray> &protectedPaths();

/// Folders of the user, relative to the home, that are never removed themselves. In the order of their testing.
[[nodiscard]] const QList<QByteArray> &protectedUserDirectories();

} // namespace Quillmere::Constants
