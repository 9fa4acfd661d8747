#pragma once

#include <QUrl>

namespace Quillmere {

/// Workspace::openURL() on this system. The settings of another system have addresses of their own, which lead to the
/// settings of this desktop.
void openURL(const QUrl &url);

} // namespace Quillmere
