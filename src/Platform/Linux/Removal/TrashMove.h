#pragma once

#include "Platform/Linux/Removal/TrashReservation.h"

namespace Quillmere {

/// Moves the entry @p name of @p folder into @p trash of the same volume, under the first name that is free, with
/// @p origin in its info file. When it fails, everything is as before; NotSupported means that the two lie on
/// different volumes after all. @p trash must outlive the answer.
[[nodiscard]] Result<TrashReservation> moveIntoTrash(int folder, const QByteArray &name, const FilePath &origin,
                                                     const TrashFolder &trash);

} // namespace Quillmere
