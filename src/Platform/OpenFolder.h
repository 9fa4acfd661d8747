#pragma once

#include "Platform/EntryKind.h"

#include <QByteArray>

#include <functional>
#include <memory>

namespace Quillmere {

/// A folder held open, to look through it and what lies below without ever being led out of it: a link and a mount
/// point lead nowhere. What cannot be read holds nothing. For one thread.
class OpenFolder
{
public:
    /// Given each name and what it is; the name stands for the length of the call. False: no more is wanted.
    using Take = std::function<bool(QByteArrayView name, EntryKind kind)>;

    OpenFolder() = default;
    virtual ~OpenFolder() = default;
    Q_DISABLE_COPY_MOVE(OpenFolder)

    /// Whether anything of this name stands directly in it, a dangling link too.
    [[nodiscard]] virtual bool holds(const QByteArray &name) const = 0;
    /// The folder of this name directly in it; none for anything that is no folder of its own file system.
    [[nodiscard]] virtual std::unique_ptr<OpenFolder> enter(const QByteArray &name) const = 0;
    /// Shows what stands directly in it, hidden names too, as it is read: the memory that takes does not depend on how
    /// much that is. Once for each opening.
    virtual void forEach(const Take &take) = 0;
};

} // namespace Quillmere
