#include "Services/BundleReplacement.h"

#include "Utilities/RemovableLocation.h"

namespace Quillmere {

Result<void> replaceBundle(const FileManager &files, const FilePath &from, const FilePath &to)
{
    const FilePath place = removableLocation(files, to);
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
