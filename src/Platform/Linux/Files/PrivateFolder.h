#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/Linux/Files/FolderOpening.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

namespace Quillmere {

/// Opens the folder @p name in @p parent as O_PATH. One that does not exist is made for its owner alone.
/// @p path is its location, for reports.
[[nodiscard]] Result<FileDescriptor> openOrMakePrivateFolder(int parent, const QByteArray &name, FinalLink link,
                                                             const FilePath &path);

} // namespace Quillmere
