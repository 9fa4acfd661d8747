#include "Utilities/Constants.h"

namespace Quillmere::Constants {

const QSet<QByteArray> &protectedPaths()
{
    static const QSet<QByteArray> paths = {
        "/", "/System", "/bin", "/sbin", "/usr", "/private", "/private/etc", "/Library", "/Library/Preferences",
    };
    return paths;
}

const QList<QByteArray> &protectedUserDirectories()
{
    static const QList<QByteArray> names = {
        "Documents", "Desktop", "Downloads", "Pictures", "Movies", "Music", "Library",
    };
    return names;
}

} // namespace Quillmere::Constants
