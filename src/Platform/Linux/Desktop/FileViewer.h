#pragma once

#include "Values/FilePath.h"

#include <QDBusConnection>
#include <QList>

namespace Quillmere {

/// Workspace::revealInFileViewer() on this system: the file manager of the desktop is asked over @p sessionBus. Where
/// there is none that answers, whatever the desktop opens folders with is started for each folder of @p files.
void revealInFileViewer(const QList<FilePath> &files, const QDBusConnection &sessionBus);

} // namespace Quillmere
