#pragma once

#include "Platform/Workspace.h"
#include "Utilities/BackgroundWork.h"

#include <QUrl>

#include <tuple>

namespace Quillmere {

/// Calls @p request with the desktop on a worker thread. The desktop may be slow to answer, and nobody waits for it.
template<typename Request>
void withoutWaiting(std::shared_ptr<const Workspace> workspace, Request request)
{
    std::ignore
        = inBackground([workspace = std::move(workspace), request = std::move(request)] { request(*workspace); });
}

/// Opens @p page with what the desktop has for it.
inline void openWithoutWaiting(std::shared_ptr<const Workspace> workspace, const QUrl &page)
{
    withoutWaiting(std::move(workspace), [page](const Workspace &desktop) { desktop.openURL(page); });
}

/// Shows @p file in the desktop's file manager.
inline void revealWithoutWaiting(std::shared_ptr<const Workspace> workspace, const FilePath &file)
{
    withoutWaiting(std::move(workspace), [file](const Workspace &desktop) { desktop.revealInFileViewer({file}); });
}

} // namespace Quillmere
