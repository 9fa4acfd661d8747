#pragma once

#include "Platform/Linux/Removal/TrashFolder.h"

namespace Quillmere {

/// Takes an item into a trash on another volume: copies it, sees the copy safely onto disk, and only then deletes the
/// item, of which nothing goes that was not copied. Answers with the name under which it lies in the trash.
/// A kill in between leaves the item, or the whole copy, or both. Fails with NoSpace before it begins when there is no
/// room. What cannot be deleted stays beside its copy, and that is a failure; when all of it stays, the copy goes.
/// @p item is the item as an O_PATH descriptor.
[[nodiscard]] Result<QByteArray> trashByCopy(const ItemPlace &place, const FileDescriptor &item,
                                             const TrashFolder &trash);

} // namespace Quillmere
