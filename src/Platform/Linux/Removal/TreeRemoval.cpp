#include "Platform/Linux/Removal/TreeRemoval.h"

#include "Platform/Linux/Removal/RemovalPool.h"

#include <cerrno>

namespace Quillmere {

TreeRemoval::TreeRemoval(int threads)
    : m_threads(threads)
{
}

void TreeRemoval::remove(const ItemPlace &place, const FileDescriptor &item, RemovalRecord &record,
                         const MayRemove &mayRemove) const
{
    struct stat status = {};
    if (::fstat(item.number(), &status) != 0) {
        record.addFailure(errno, place.path);
        return;
    }
    if (S_ISDIR(status.st_mode)) {
        FileDescriptor folder = openFolderToEmpty(item.number());
        if (folder.isOpen())
            RemovalPool(m_threads, mayRemove, record)
                .remove(place.folder.number(), place.name, std::move(folder), place.path);
        else
            record.addFailure(errno, place.path);
        return;
    }
    const int error = removeEntry(place.folder.number(), place.name.constData(), mayRemove);
    if (error == 0)
        record.addRemoved(1);
    else
        record.addFailure(error == EISDIR ? EBUSY : error, place.path);
}

} // namespace Quillmere
