#include "Services/BundleReplacement.h"

namespace Quillmere {

Result<void> replaceBundle(const FileManager &files, const FilePath &from, const FilePath &to)
{
    // Removal refuses a location below a link, and the home may be one.
    const FilePath place = files.resolvingSymlinks(to.deletingLastPathComponent()).appending(to.lastPathComponent());
    // To replace the very bundle that is to be copied would leave nothing to copy.
    if (place == files.resolvingSymlinks(from))
        return {};
    if (files.attributesOfItem(place)) {
        if (const Result<void> removed = files.removeItemAtOnce(place); !removed)
            return removed;
    }
    return files.copyItem(from, place);
}

} // namespace Quillmere
