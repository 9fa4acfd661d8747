#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"

#include <QByteArray>

namespace Quillmere {

/// A folder that a walk has open.
struct WalkFolder
{
    FileDescriptor descriptor;
    QByteArray path; ///< Without a slash at its end. Null in a walk that names nothing.

    [[nodiscard]] int number() const { return descriptor.number(); }
    /// The path of @p name in it; null in a walk that names nothing, which then spends nothing on it.
    [[nodiscard]] QByteArray pathOf(const char *name) const { return path.isNull() ? path : path + '/' + name; }
};

} // namespace Quillmere
