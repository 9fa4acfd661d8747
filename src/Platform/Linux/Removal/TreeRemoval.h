#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/Linux/Files/ItemPlace.h"
#include "Platform/Linux/Removal/FolderEmptying.h"
#include "Platform/Linux/Removal/RemovalRecord.h"

namespace Quillmere {

/// Deletes an item for good, with all that is in it. Every folder is opened relative to the one above it: a link put in
/// its place at any moment is deleted itself, and nothing behind it is touched.
class TreeRemoval
{
public:
    explicit TreeRemoval(int threads = 4);

    /// @p item is the item as an O_PATH descriptor, looked at before; only that very folder is emptied.
    /// After a failure everything beside it is deleted all the same.
    void remove(const ItemPlace &place, const FileDescriptor &item, RemovalRecord &record,
                const MayRemove &mayRemove = {}) const;

private:
    int m_threads;
};

} // namespace Quillmere
