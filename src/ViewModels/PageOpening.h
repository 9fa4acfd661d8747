#pragma once

#include "Platform/Workspace.h"
#include "Utilities/BackgroundWork.h"

#include <QUrl>

#include <tuple>

namespace Quillmere {

/// Opens @p page with what the desktop has for it. The desktop may be slow to answer, and nobody waits for it.
inline void openWithoutWaiting(std::shared_ptr<const Workspace> workspace, const QUrl &page)
{
    std::ignore = inBackground([workspace = std::move(workspace), page] { workspace->openURL(page); });
}

} // namespace Quillmere
